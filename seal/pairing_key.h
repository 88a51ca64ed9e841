// A secret that a client shares with the receiver, or a browser with its gateway.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lumbrine {

// 128 bits, written as 26 letters and digits of Crockford's base 32 (no I, L, O and U).
class PairingKey {
public:
    static constexpr std::size_t length = 26;

    explicit PairingKey(const std::array<std::uint8_t, 16>& bits);

    // Absent unless it is the text of a key, exactly.
    static std::optional<PairingKey> parse(std::string_view text);

    std::array<std::uint8_t, 16> bits() const;
    const std::string& text() const { return characters; }

    // Takes the same time however much of a guess is right.
    bool is(std::string_view guess) const;

    bool operator==(const PairingKey& other) const { return is(other.characters); }

private:
    explicit PairingKey(std::string_view characters) : characters(characters) {}

    std::string characters;
};

} // namespace lumbrine
