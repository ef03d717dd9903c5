#include "support/FileHash.h"

#include "platform/Sha256Digest.h"

juce::String sha256OfFile (const juce::File& file)
{
    constexpr int pieceSize = 256 * 1024;    // fits the processor's cache, and the cost of a call is lost in it

    juce::FileInputStream stream (file);

    if (! stream.openedOk())
        return {};

    platform::Sha256Digest digest;
    juce::HeapBlock<char> piece (pieceSize);

    for (;;)
    {
        const auto size = stream.read (piece, pieceSize);

        if (stream.getStatus().failed())
            return {};

        if (size <= 0)
            return digest.finish();

        digest.update (piece, (size_t) size);
    }
}

juce::String sha256OfBytes (const void* data, size_t size)
{
    platform::Sha256Digest digest;
    digest.update (data, size);
    return digest.finish();
}
