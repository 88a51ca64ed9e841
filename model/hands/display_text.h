// What the text on a strip's display is.
#pragma once

#include <string_view>

namespace lumbrine {

// False for what Pro Tools writes over a name for a moment: a level ("-12", "+0.5", "-oo"), a pan ("<50", "<C>",
// "50>") or an automation mode. A track may be called like that, too. Without spaces at either end.
bool isNameOnDisplay(std::string_view text);

} // namespace lumbrine
