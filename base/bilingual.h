// The one choice between English and Japanese, and the call that makes it.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace lumbrine {

// Both forms of every text stand side by side where the text is said:
//     text("✓ UDP listening on :", "✓ UDP 受信開始 :") + std::to_string(port)
// The choice is made once, when the program starts, and handed down by constructor; it never changes afterwards.
// Immutable, so any thread may use it.
class Bilingual {
public:
    explicit constexpr Bilingual(bool japanese) : isJa(japanese) {}

    std::string operator()(std::string_view english, std::string_view japanese) const {
        return std::string(isJa ? japanese : english);
    }

    bool isJa;
};

// True exactly when the first of the user's preferred languages begins with "ja"; false when the list is empty.
bool prefersJapanese(std::span<const std::string> preferredLanguages);

} // namespace lumbrine
