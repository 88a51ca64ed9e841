#include "platform/macos/cf_text.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lumbrine {

CFHolder<CFStringRef> cfString(std::string_view utf8) {
    return CFHolder<CFStringRef>::takingOver(
        CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const std::uint8_t*>(utf8.data()),
                                static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, false));
}

CFHolder<CFArrayRef> cfStrings(std::span<const std::string_view> utf8) {
    std::vector<CFHolder<CFStringRef>> strings;
    std::vector<const void*> values;
    for (const std::string_view text : utf8) {
        strings.push_back(cfString(text));
        if (!strings.back()) return {};
        values.push_back(strings.back().get());
    }
    return CFHolder<CFArrayRef>::takingOver(
        CFArrayCreate(kCFAllocatorDefault, values.data(), static_cast<CFIndex>(values.size()), &kCFTypeArrayCallBacks));
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
