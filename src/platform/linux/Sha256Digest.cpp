#include "platform/Sha256Digest.h"

#include <openssl/evp.h>
#include <utility>

namespace platform
{
struct Sha256Digest::Pimpl
{
    struct Free
    {
        void operator() (EVP_MD_CTX* object) const { EVP_MD_CTX_free (object); }
    };

    std::unique_ptr<EVP_MD_CTX, Free> context { EVP_MD_CTX_new() };
    bool ok = context != nullptr && EVP_DigestInit_ex (context.get(), EVP_sha256(), nullptr) == 1;
};

Sha256Digest::Sha256Digest() : pimpl (std::make_unique<Pimpl>()) {}
Sha256Digest::~Sha256Digest() = default;

void Sha256Digest::update (const void* data, size_t size)
{
    if (pimpl->ok && size > 0)
        pimpl->ok = EVP_DigestUpdate (pimpl->context.get(), data, size) == 1;
}

juce::String Sha256Digest::finish()
{
    unsigned char digest[EVP_MAX_MD_SIZE] = {};
    unsigned int size = 0;

    if (! std::exchange (pimpl->ok, false) || EVP_DigestFinal_ex (pimpl->context.get(), digest, &size) != 1)
        return {};

    return juce::String::toHexString (digest, (int) size, 0);
}
}
