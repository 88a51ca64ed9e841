#include "platform/linux/openssl_secrets.h"

#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/params.h>
#include <sys/random.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <system_error>

namespace lumbrine {

namespace {

struct Free {
    void operator()(EVP_MAC* algorithm) const { EVP_MAC_free(algorithm); }
    void operator()(EVP_MAC_CTX* context) const { EVP_MAC_CTX_free(context); }
};

// libcrypto fails here only without memory.
void require(bool done) {
    if (!done) throw std::bad_alloc();
}

class OpenSSLHash : public KeyedHash {
public:
    explicit OpenSSLHash(ByteView key) {
        const std::unique_ptr<EVP_MAC, Free> algorithm(EVP_MAC_fetch(nullptr, "HMAC", nullptr));
        require(algorithm != nullptr);
        context.reset(EVP_MAC_CTX_new(algorithm.get()));
        std::array<char, 7> digest{"SHA256"};
        const std::array parameters{OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, digest.data(), 0),
                                    OSSL_PARAM_construct_end()};
        require(context && EVP_MAC_init(context.get(), key.data(), key.size(), parameters.data()) == 1);
    }

    Hash of(ByteView first, ByteView second) override {
        Hash hash;
        std::size_t size = 0;
        EVP_MAC_CTX* const mac = context.get();
        require(EVP_MAC_init(mac, nullptr, 0, nullptr) == 1); // the same key again
        require(EVP_MAC_update(mac, first.data(), first.size()) == 1);
        require(EVP_MAC_update(mac, second.data(), second.size()) == 1);
        require(EVP_MAC_final(mac, hash.data(), &size, hash.size()) == 1 && size == hash.size());
        return hash;
    }

private:
    std::unique_ptr<EVP_MAC_CTX, Free> context;
};

} // namespace

void OpenSSLSecrets::fillRandom(std::span<std::uint8_t> bytes) {
    constexpr std::size_t atOnce = 256;
    for (; !bytes.empty(); bytes = bytes.subspan(std::min(bytes.size(), atOnce)))
        if (::getentropy(bytes.data(), std::min(bytes.size(), atOnce)) != 0)
            throw std::system_error(errno, std::generic_category(), "getentropy"); // the kernel has no such call
}

std::unique_ptr<KeyedHash> OpenSSLSecrets::keyedHash(ByteView key) {
    return std::make_unique<OpenSSLHash>(key);
}

} // namespace lumbrine
