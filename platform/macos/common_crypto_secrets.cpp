#include "platform/macos/common_crypto_secrets.h"

#include <CommonCrypto/CommonHMAC.h>

#include <cstdlib>

namespace lumbrine {

namespace {

class CommonCryptoHash : public KeyedHash {
public:
    explicit CommonCryptoHash(ByteView key) { CCHmacInit(&keyed, kCCHmacAlgSHA256, key.data(), key.size()); }

    Hash of(ByteView first, ByteView second) override {
        static_assert(sizeof(Hash) == CC_SHA256_DIGEST_LENGTH);
        CCHmacContext context = keyed;
        CCHmacUpdate(&context, first.data(), first.size());
        CCHmacUpdate(&context, second.data(), second.size());
        Hash hash;
        CCHmacFinal(&context, hash.data());
        return hash;
    }

private:
    CCHmacContext keyed; // has taken in the key alone
};

} // namespace

void CommonCryptoSecrets::fillRandom(std::span<std::uint8_t> bytes) {
    ::arc4random_buf(bytes.data(), bytes.size());
}

std::unique_ptr<KeyedHash> CommonCryptoSecrets::keyedHash(ByteView key) {
    return std::make_unique<CommonCryptoHash>(key);
}

} // namespace lumbrine
