// The choice between English and Japanese texts.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace lumbrine {

// Both forms of a text stand side by side in the call that uses it:
//     text("✓ UDP listening on :", "✓ UDP 受信開始 :") + std::to_string(port)
// The program chooses the language once, at start, and passes this object down by constructor. Immutable: any thread
// may use it.
class Bilingual {
public:
    explicit constexpr Bilingual(bool japanese) : isJa(japanese) {}

    std::string operator()(std::string_view english, std::string_view japanese) const {
        return std::string(isJa ? japanese : english);
    }

    bool isJa;
};

// True when the first of the user's preferred languages begins with "ja". False for an empty list.
bool prefersJapanese(std::span<const std::string> preferredLanguages);

} // namespace lumbrine
