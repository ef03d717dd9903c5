#include "platform/Sha256Digest.h"

#include <gtest/gtest.h>
#include <juce_cryptography/juce_cryptography.h>

using platform::Sha256Digest;

namespace
{
juce::String digestOf (const std::string& bytes)
{
    Sha256Digest digest;
    digest.update (bytes.data(), bytes.size());
    return digest.finish();
}

std::string someBytes (size_t size)
{
    std::string bytes (size, '\0');

    for (size_t i = 0; i < size; ++i)
        bytes[i] = (char) (i * 131 + i / 251);

    return bytes;
}
}

TEST (Sha256Digest, KnowsThePublishedExamples)
{
    EXPECT_EQ (digestOf (""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ (digestOf ("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ (digestOf ("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
               "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ (digestOf (std::string (1000000, 'a')), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST (Sha256Digest, AgreesWithTheFrameworkAroundTheBlockSizes)
{
    for (size_t size = 0; size <= 260; ++size)
    {
        const auto bytes = someBytes (size);
        ASSERT_EQ (digestOf (bytes), juce::SHA256 (bytes.data(), bytes.size()).toHexString()) << size;
    }
}

TEST (Sha256Digest, DoesNotDependOnHowTheBytesArrive)
{
    const auto bytes = someBytes (10000);
    const auto expected = digestOf (bytes);

    for (const size_t piece : { 1u, 3u, 63u, 64u, 65u, 4096u })
    {
        Sha256Digest digest;

        for (size_t position = 0; position < bytes.size(); position += piece)
        {
            digest.update (bytes.data() + position, std::min (piece, bytes.size() - position));
            digest.update (nullptr, 0);
        }

        EXPECT_EQ (digest.finish(), expected) << piece;
    }
}

TEST (Sha256Digest, EndsOnce)
{
    Sha256Digest digest;
    digest.update ("abc", 3);

    EXPECT_EQ (digest.finish(), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    digest.update ("abc", 3);
    EXPECT_EQ (digest.finish(), "");
}
