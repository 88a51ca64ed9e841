// Converts between UTF-8 text and CoreFoundation strings.
#pragma once

#include "platform/macos/cf_holder.h"

#include <span>
#include <string>
#include <string_view>

namespace lumbrine {

// Holds nothing when the text is not UTF-8.
CFHolder<CFStringRef> cfString(std::string_view utf8);

// Holds nothing when one of the texts is not UTF-8.
CFHolder<CFArrayRef> cfStrings(std::span<const std::string_view> utf8);

// A lone UTF-16 surrogate, which UTF-8 cannot express, becomes "?".
std::string utf8Of(CFStringRef string);

} // namespace lumbrine
