#include "platform/macos/cf_text.h"

#include <cstddef>
#include <cstdint>

namespace lumbrine {

CFHolder<CFStringRef> cfString(std::string_view utf8) {
    return CFHolder<CFStringRef>::takingOver(
        CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const std::uint8_t*>(utf8.data()),
                                static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, false));
}

std::string utf8Of(CFStringRef string) {
    const CFRange all = CFRangeMake(0, CFStringGetLength(string));
    CFIndex size = 0; // the first call only computes it
    CFStringGetBytes(string, all, kCFStringEncodingUTF8, '?', false, nullptr, 0, &size);
    std::string text(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(string, all, kCFStringEncodingUTF8, '?', false, reinterpret_cast<std::uint8_t*>(text.data()), size,
                     nullptr);
    return text;
}

} // namespace lumbrine
