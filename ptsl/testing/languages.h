// For tests of texts: both languages.
#pragma once

#include "base/bilingual.h"

namespace lumbrine {

inline const Bilingual english{false};
inline const Bilingual japanese{true};

} // namespace lumbrine
