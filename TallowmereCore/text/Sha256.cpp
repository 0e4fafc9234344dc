#include "text/Sha256.h"

#include <openssl/evp.h>

#include <array>
#include <new>

namespace tallowmere {

struct Sha256::Context {
    struct Free {
        void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
    };
    std::unique_ptr<EVP_MD_CTX, Free> digest{EVP_MD_CTX_new()};
};

Sha256::Sha256() : m_context(std::make_unique<Context>()) {
    if (!m_context->digest || EVP_DigestInit_ex(m_context->digest.get(), EVP_sha256(), nullptr) != 1) {
        throw std::bad_alloc();
    }
}

Sha256::Sha256(Sha256&&) noexcept = default;
Sha256& Sha256::operator=(Sha256&&) noexcept = default;
Sha256::~Sha256() = default;

void Sha256::update(std::string_view bytes) {
    EVP_DigestUpdate(m_context->digest.get(), bytes.data(), bytes.size());
}

std::string Sha256::hexDigest() {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    EVP_DigestFinal_ex(m_context->digest.get(), digest.data(), &length);
    static constexpr char hexDigits[] = "0123456789abcdef";
    std::string text;
    for (unsigned int index = 0; index < length; ++index) {
        text += hexDigits[digest[index] >> 4];
        text += hexDigits[digest[index] & 0xF];
    }
    return text;
}

std::string Sha256::hexDigestOf(std::string_view bytes) {
    Sha256 digest;
    digest.update(bytes);
    return digest.hexDigest();
}

}  // namespace tallowmere
