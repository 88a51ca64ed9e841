// Secrets from the system's random numbers and CommonCrypto.
#pragma once

#include "platform/api/secrets.h"

namespace lumbrine {

class CommonCryptoSecrets : public Secrets {
public:
    void fillRandom(std::span<std::uint8_t> bytes) override;
    std::unique_ptr<KeyedHash> keyedHash(ByteView key) override;
};

} // namespace lumbrine
