#include "support/CommaLocale.h"
#include "support/Environment.h"
#include "support/IsoTime.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
void useTimeZone (const char* zone)
{
    setEnvironment ("TZ", zone);
    ::tzset();
}

const juce::Time sample (2026, 5, 30, 21, 4, 9, 870, false);
}

TEST (IsoTime, IsLocalTimeWithDividersThreeDecimalsAndTheOffset)
{
    struct Row { const char* zone; juce::int64 milliseconds; const char* text; };

    const Row table[] { { "UTC0", 0, "1970-01-01T00:00:00.000Z" },
                        { "UTC0", 1782853449870, "2026-06-30T21:04:09.870Z" },
                        { "UTC0", 1782853449007, "2026-06-30T21:04:09.007Z" },
                        { "XYZ-2", 1782853449870, "2026-06-30T23:04:09.870+02:00" },
                        { "XYZ+3:30", 1782853449870, "2026-06-30T17:34:09.870-03:30" },
                        { "XYZ-2", 1782863999999, "2026-07-01T01:59:59.999+02:00" } };

    for (const auto& row : table)
    {
        useTimeZone (row.zone);
        EXPECT_EQ (isoTime (juce::Time (row.milliseconds)), row.text) << row.zone;
    }
}

TEST (IsoTime, IsWhatTheFrameworkWrites)
{
    for (const char* zone : { "UTC0", "XYZ-2", "XYZ+3:30" })
    {
        useTimeZone (zone);

        for (juce::int64 time = 1000000000000; time < 1800000000000; time += 12345678901)
            ASSERT_EQ (isoTime (juce::Time (time)), juce::Time (time).toISO8601 (true));
    }
}

TEST (IsoTime, ReadsBackAsTheSameTime)
{
    useTimeZone ("XYZ+3:30");
    EXPECT_EQ (juce::Time::fromISO8601 (isoTime (sample)).toMilliseconds(), sample.toMilliseconds());
}

TEST (IsoTime, KeepsThePointInALocaleThatWritesNumbersWithAComma)
{
    useTimeZone ("UTC0");
    ASSERT_NO_FATAL_FAILURE (writeNumbersWithAComma());
    ASSERT_EQ (juce::Time (1782853449870).toISO8601 (true), "2026-06-30T21:04:09,870Z");

    EXPECT_EQ (isoTime (juce::Time (1782853449870)), "2026-06-30T21:04:09.870Z");
}
