#include "base/bilingual.h"

namespace lumbrine {

bool prefersJapanese(std::span<const std::string> preferredLanguages) {
    return !preferredLanguages.empty() && preferredLanguages.front().starts_with("ja");
}

} // namespace lumbrine
