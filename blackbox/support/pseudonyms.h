// Other texts in the place of names: of the same length and kind, and the same for the same name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace lumbrine::blackbox {

class Pseudonyms {
public:
    // Who does not know the seed cannot try out names.
    explicit Pseudonyms(std::uint64_t itsSeed) : seed(itsSeed) {}

    // Letters become letters of the same case, digits digits, other characters others of the same number of bytes;
    // blanks and signs stay. Bytes that are no UTF-8 become "?".
    std::string of(std::string_view name) const;

    // Any number, the same for the same text.
    std::uint64_t numberOf(std::string_view text) const;

private:
    const std::uint64_t seed;
};

} // namespace lumbrine::blackbox
