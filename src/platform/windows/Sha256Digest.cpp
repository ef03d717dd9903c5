#include "platform/Sha256Digest.h"

#include "platform/windows/WindowsHeaders.h"

#include <algorithm>
#include <array>
#include <bcrypt.h>
#include <limits>
#include <utility>

namespace platform
{
struct Sha256Digest::Pimpl
{
    Pimpl()
    {
        ok = BCRYPT_SUCCESS (::BCryptOpenAlgorithmProvider (&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0))
          && BCRYPT_SUCCESS (::BCryptCreateHash (algorithm, &hash, nullptr, 0, nullptr, 0, 0));
    }

    ~Pimpl()
    {
        if (hash != nullptr)
            ::BCryptDestroyHash (hash);

        if (algorithm != nullptr)
            ::BCryptCloseAlgorithmProvider (algorithm, 0);
    }

    BCRYPT_ALG_HANDLE algorithm = nullptr;
    BCRYPT_HASH_HANDLE hash = nullptr;
    bool ok = false;

    JUCE_DECLARE_NON_COPYABLE (Pimpl)
};

Sha256Digest::Sha256Digest() : pimpl (std::make_unique<Pimpl>()) {}
Sha256Digest::~Sha256Digest() = default;

void Sha256Digest::update (const void* data, size_t size)
{
    // The library takes the bytes as writable but only reads them, and counts them in 32 bits.
    auto* bytes = const_cast<UCHAR*> (static_cast<const UCHAR*> (data));
    constexpr size_t largestPiece = std::numeric_limits<ULONG>::max();

    while (pimpl->ok && size > 0)
    {
        const auto piece = std::min (size, largestPiece);
        pimpl->ok = BCRYPT_SUCCESS (::BCryptHashData (pimpl->hash, bytes, (ULONG) piece, 0));
        bytes += piece;
        size -= piece;
    }
}

juce::String Sha256Digest::finish()
{
    std::array<UCHAR, 32> digest {};

    if (! std::exchange (pimpl->ok, false)
         || ! BCRYPT_SUCCESS (::BCryptFinishHash (pimpl->hash, digest.data(), (ULONG) digest.size(), 0)))
        return {};

    return juce::String::toHexString (digest.data(), (int) digest.size(), 0);
}
}
