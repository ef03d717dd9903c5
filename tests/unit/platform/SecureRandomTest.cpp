#include "platform/SecureRandom.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <juce_core/juce_core.h>
#include <set>
#include <vector>

TEST (SecureRandom, FillsEveryByteAndNoneBehind)
{
    for (const size_t size : { 1u, 2u, 16u, 31u, 32u, 33u, 255u, 256u, 257u, 5000u })
    {
        std::vector<unsigned char> bytes (size + 8, 0), seen (size, 0);

        // That a byte stays zero 40 times over happens once in 256 to the power of 40.
        for (int i = 0; i < 40; ++i)
        {
            ASSERT_TRUE (platform::fillWithSecureRandom (bytes.data(), size));
            std::transform (seen.begin(), seen.end(), bytes.begin(), seen.begin(),
                            [] (auto a, auto b) { return (unsigned char) (a | b); });
        }

        EXPECT_EQ (std::count (seen.begin(), seen.end(), 0), 0) << size;
        EXPECT_EQ (std::count (bytes.begin() + (ptrdiff_t) size, bytes.end(), 0), 8) << size;
    }
}

TEST (SecureRandom, NeverGivesTheSameTwice)
{
    std::set<std::array<unsigned char, 16>> seen;

    for (int i = 0; i < 1000; ++i)
    {
        std::array<unsigned char, 16> bytes {};
        ASSERT_TRUE (platform::fillWithSecureRandom (bytes.data(), bytes.size()));
        EXPECT_TRUE (seen.insert (bytes).second);
    }
}

TEST (SecureRandom, UsesAllValuesOfAByte)
{
    std::vector<unsigned char> bytes (65536);
    ASSERT_TRUE (platform::fillWithSecureRandom (bytes.data(), bytes.size()));

    EXPECT_EQ (std::set<unsigned char> (bytes.begin(), bytes.end()).size(), 256u);
}

TEST (SecureRandom, NothingToFillIsNoFailure)
{
    EXPECT_TRUE (platform::fillWithSecureRandom (nullptr, 0));
}

TEST (SecureRandom, AFailureIsReported)
{
    EXPECT_FALSE (platform::fillWithSecureRandom (nullptr, 32));
}
