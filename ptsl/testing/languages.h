// The two languages, for texts that exist in both.
#pragma once

#include "base/bilingual.h"

namespace lumbrine {

inline const Bilingual english{false};
inline const Bilingual japanese{true};

} // namespace lumbrine
