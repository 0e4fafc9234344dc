#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tallowmere {

// An incremental SHA-256 digest (OpenSSL's implementation); move-only.
class Sha256 {
public:
    Sha256();
    Sha256(Sha256&&) noexcept;
    Sha256& operator=(Sha256&&) noexcept;
    ~Sha256();

    void update(std::string_view bytes);
    // The digest of everything given so far, as 64 lower-case hexadecimal digits.
    std::string hexDigest();

    // The digest of `bytes` alone.
    static std::string hexDigestOf(std::string_view bytes);

private:
    struct Context;
    std::unique_ptr<Context> m_context;
};

}  // namespace tallowmere
