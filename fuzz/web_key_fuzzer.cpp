// The input is the text of a key file. A key that is read has exactly that text; every key that can be made is read.
#include "fuzz/require.h"
#include "web/gateway/key_file.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace lumbrine;
    using namespace lumbrine::web;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto key = keyInFile(text)) {
        require(key->text() == text.substr(0, PairingKey::length) && text.size() <= PairingKey::length + 1);
        require(key->is(key->text()) && !key->is(text.substr(1)));
    }

    std::array<std::uint8_t, 16> bits{};
    std::copy_n(data, std::min(size, bits.size()), bits.begin());
    const PairingKey made(bits);
    require(keyInFile(made.text() + "\n") == made);
    bits.back() ^= 1;
    require(!PairingKey(bits).is(made.text()));
    return 0;
}
