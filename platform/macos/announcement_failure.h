// What the user is told when the system does not let a service be announced.
#pragma once

#include "base/bilingual.h"

#include <string>

namespace lumbrine {

// `code` is one of Bonjour's error numbers, which stands at the end of the text in any case.
std::string announcementFailureText(int code, const Bilingual& text);

} // namespace lumbrine
