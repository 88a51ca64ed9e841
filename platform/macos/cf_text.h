// UTF-8 text to CoreFoundation's strings and back.
#pragma once

#include "platform/macos/cf_holder.h"

#include <string>
#include <string_view>

namespace lumbrine {

// None when the text is not UTF-8.
CFHolder<CFStringRef> cfString(std::string_view utf8);

// What cannot be said in UTF-8 (half of a pair of UTF-16) becomes "?".
std::string utf8Of(CFStringRef string);

} // namespace lumbrine
