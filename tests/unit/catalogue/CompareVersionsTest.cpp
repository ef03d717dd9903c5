#include "catalogue/ManifestParser.h"
#include "support/Text.h"

#include <gtest/gtest.h>

TEST (CompareVersions, ComparesPartByPartAsNumbers)
{
    const struct { const char* a; const char* b; int expected; } cases[]
    {
        { "1.2", "1.2.0", 0 }, { "13.0", "13.0.0", 0 }, { "13.0.0-beta", "13.0.0", 0 }, { "1.10", "1.9", 1 },
        { "13.10.0", "13.9.0", 1 }, { "", "0.0", 0 }, { "", "", 0 }, { "", "0.0.1", -1 }, { "1", "", 1 },
        { "2", "1.9.9.9", 1 }, { "1.0.0.1", "1", 1 }, { "1.0.1", "1.1", -1 }, { "01.002", "1.2", 0 },
        { "v2.0", "1.0", -1 }, { "v2.0", "0.0", 0 }, { "1.x.5", "1.0.5", 0 }, { "1.2rc1", "1.2", 0 }, { "1.2rc1", "1.3", -1 },
        { "1..2", "1.0.2", 0 }, { ".", "", 0 }, { "1.-1", "1.0", -1 }, { "\"1.2\"", "0.2", 0 }, { " 2", "2", 0 },
        { "2026.7.1", "2026.06.30", 1 },
    };

    for (const auto& test : cases)
    {
        EXPECT_EQ (compareVersions (test.a, test.b), test.expected) << test.a << " with " << test.b;
        EXPECT_EQ (compareVersions (test.b, test.a), -test.expected) << test.b << " with " << test.a;
    }
}

TEST (CompareVersions, TakesAnyTextForAVersion)
{
    EXPECT_EQ (compareVersions (utf8 ("größer.2"), "0.1"), 1);
    EXPECT_EQ (compareVersions (juce::String::repeatedString ("1.", 10000), juce::String::repeatedString ("1.", 10000) + "1"), -1);
}
