#include "seal/pairing_key.h"

#include <algorithm>

namespace lumbrine {

namespace {

constexpr std::string_view digits = "0123456789ABCDEFGHJKMNPQRSTVWXYZ";

} // namespace

PairingKey::PairingKey(const std::array<std::uint8_t, 16>& bits) {
    // 26 characters have 130 bits: the first two are 0.
    unsigned pending = 0;
    unsigned pendingBits = 2;
    for (const std::uint8_t byte : bits) {
        pending = pending << 8 | byte;
        for (pendingBits += 8; pendingBits >= 5; pendingBits -= 5)
            characters += digits[pending >> (pendingBits - 5) & 0x1F];
        pending &= 0x1F;
    }
}

std::optional<PairingKey> PairingKey::parse(std::string_view text) {
    const bool wellFormed = text.size() == length && text.front() <= '7' &&
                            std::ranges::all_of(text, [](char c) { return digits.find(c) != std::string_view::npos; });
    if (!wellFormed) return std::nullopt;
    return PairingKey(text);
}

std::array<std::uint8_t, 16> PairingKey::bits() const {
    std::array<std::uint8_t, 16> bytes{};
    auto next = bytes.begin();
    unsigned pending = 0;
    int pendingBits = -2; // the first two are of no byte
    for (const char c : characters) {
        pending = (pending << 5 | static_cast<unsigned>(digits.find(c))) & 0x1FFF;
        pendingBits += 5;
        if (pendingBits < 8) continue;
        pendingBits -= 8;
        *next++ = static_cast<std::uint8_t>(pending >> pendingBits);
    }
    return bytes;
}

bool PairingKey::is(std::string_view guess) const {
    if (guess.size() != characters.size()) return false;
    unsigned difference = 0;
    for (std::size_t i = 0; i < characters.size(); ++i)
        difference |=
            static_cast<unsigned>(static_cast<unsigned char>(characters[i]) ^ static_cast<unsigned char>(guess[i]));
    return difference == 0;
}

} // namespace lumbrine
