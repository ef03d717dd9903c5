#include "ui/SizeText.h"

#include <gtest/gtest.h>

TEST (SizeText, ChoosesTheUnitByPowersOf1024)
{
    struct Case
    {
        juce::int64 bytes;
        const char* expected;
    };

    for (const auto& c : { Case { 1, "1 B" },
                           { 1023, "1023 B" },
                           { 1024, "1 KB" },
                           { 1536, "1.5 KB" },
                           { 1048575, "1024 KB" },
                           { 1048576, "1 MB" },
                           { 334608748, "319.108 MB" },
                           { 1073741823, "1024 MB" },
                           { 1073741824, "1.0 GB" },
                           { 1610612736, "1.5 GB" },
                           { 5368709120, "5.0 GB" },
                           { 1099511627776, "1024.0 GB" },
                           { std::numeric_limits<juce::int64>::max(), "8589934592.0 GB" } })
        EXPECT_EQ (sizeText (c.bytes), c.expected) << c.bytes;
}
