// The text for the user when the system refuses to announce a service.
#pragma once

#include "base/bilingual.h"

#include <string>

namespace lumbrine {

// `code` is an error number of Bonjour. The text explains the known ones and always ends with the number.
std::string announcementFailureText(int code, const Bilingual& text);

} // namespace lumbrine
