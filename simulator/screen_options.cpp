#include "simulator/screen_options.h"

namespace lumbrine {

std::optional<std::string> problemWith(const ScreenOptions& options) {
    constexpr int mostFurniture = 100'000;
    if (options.mixStrips < 0) return "the Mix window has room for 0 strips or more";
    if (options.furniture < 0 || options.furniture > mostFurniture)
        return "a window has 0 to 100000 pieces of furniture";
    if (options.dialogOpensAfter < Duration::zero()) return "the dialog opens after 0 seconds or more";
    if (options.failOneIn < 0) return "one read in 1 or more fails, or none with 0";
    if (options.vanishOneIn < 0) return "one element in 1 or more vanishes, or none with 0";
    return std::nullopt;
}

} // namespace lumbrine
