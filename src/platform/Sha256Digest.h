#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** SHA-256 (FIPS 180-4) of bytes that arrive in pieces, by the system's own library, which uses the processor's instructions for
    it. One object computes one digest, on one thread. */
class Sha256Digest
{
public:
    Sha256Digest();
    ~Sha256Digest();

    /** Adds bytes; data may be null when size is 0. */
    void update (const void* data, size_t size);

    /** Ends the digest: 64 lower-case hexadecimal digits, or the empty string when the library failed at any step. */
    juce::String finish();

private:
    struct Pimpl;
    std::unique_ptr<Pimpl> pimpl;

    JUCE_DECLARE_NON_COPYABLE (Sha256Digest)
};
}
