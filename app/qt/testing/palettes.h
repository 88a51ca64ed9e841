// The colours of two desktops, for tests and pictures of windows.
#pragma once

#include <QPalette>

namespace lumbrine {

QPalette lightPalette();
QPalette darkPalette();

} // namespace lumbrine
