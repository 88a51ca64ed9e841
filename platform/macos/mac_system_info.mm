#include "platform/macos/mac_system_info.h"

#include "platform/macos/foundation_text.h"
#include "platform/posix/primary_ipv4.h"

#include <cstdlib>

namespace lumbrine {

std::optional<std::string> MacSystemInfo::environment(const std::string& name) const {
    const char* const value = std::getenv(name.c_str());
    if (value == nullptr) return std::nullopt;
    return value;
}

std::vector<std::string> MacSystemInfo::preferredLanguages() const {
    @autoreleasepool {
        std::vector<std::string> languages;
        for (NSString* language in NSLocale.preferredLanguages)
            languages.push_back(utf8Of(language));
        return languages;
    }
}

std::optional<std::string> MacSystemInfo::computerName() const {
    @autoreleasepool {
        std::string name = utf8Of(NSHost.currentHost.localizedName);
        if (name.empty()) return std::nullopt;
        return name;
    }
}

std::optional<std::string> MacSystemInfo::primaryIPv4() const {
    return choosePrimaryIPv4(listIPv4Interfaces());
}

std::optional<std::string> MacSystemInfo::stateFolder() const {
    @autoreleasepool {
        NSString* const support =
            NSSearchPathForDirectoriesInDomains(NSApplicationSupportDirectory, NSUserDomainMask, YES).firstObject;
        if (support == nil) return std::nullopt;
        return utf8Of(support) + "/Lumbrine";
    }
}

} // namespace lumbrine
