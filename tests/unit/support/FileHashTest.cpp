#include "support/FileHash.h"
#include "support/Files.h"

#include <gtest/gtest.h>
#include <juce_cryptography/juce_cryptography.h>

using namespace zorva::test;

TEST (FileHash, KnowsThePublishedExamples)
{
    const auto folder = freshFolder ("hash");

    EXPECT_EQ (sha256OfFile (write (in (folder, "empty"), {})), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ (sha256OfFile (write (in (folder, "abc"), "abc")), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST (FileHash, AgreesWithTheFrameworkAtTheEdgesOfItsPieces)
{
    const auto folder = freshFolder ("hash");
    std::string bytes;

    for (const size_t size : { 1u, 63u, 64u, 65u, 256u * 1024 - 1, 256u * 1024, 256u * 1024 + 1, 3u * 256 * 1024 + 7 })
    {
        while (bytes.size() < size)
            bytes.push_back ((char) (bytes.size() * 31 + bytes.size() / 257));

        const auto file = writeBytes (in (folder, "file"), bytes);
        EXPECT_EQ (sha256OfFile (file), juce::SHA256 (bytes.data(), bytes.size()).toHexString()) << size;
    }
}

TEST (FileHash, WhatCannotBeReadToItsEndHasNoHash)
{
    const auto folder = freshFolder ("hash");

    EXPECT_EQ (sha256OfFile (in (folder, "absent")), "");
    EXPECT_EQ (sha256OfFile (folder), "");
    EXPECT_EQ (sha256OfFile (link (in (folder, "dangling"), "nowhere")), "");
    EXPECT_EQ (sha256OfFile (juce::File ("/proc/self/mem")), "") << "opens, but its first byte cannot be read";
}
