// Secrets from the kernel's random numbers and OpenSSL's libcrypto.
#pragma once

#include "platform/api/secrets.h"

namespace lumbrine {

class OpenSSLSecrets : public Secrets {
public:
    void fillRandom(std::span<std::uint8_t> bytes) override;
    std::unique_ptr<KeyedHash> keyedHash(ByteView key) override;
};

} // namespace lumbrine
