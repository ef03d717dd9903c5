#include "support/ChildFile.h"

#include <gtest/gtest.h>

TEST (WindowsChildFile, TakesWholeRecordedPaths)
{
    const struct { const char* recorded; const char* expected; } cases[]
    {
        { "C:\\a", "C:\\a" }, { "C:\\a\\b\\..\\c", "C:\\a\\c" }, { "c:/a/./b", "c:\\a\\b" },
        { "\\\\server\\share\\a", "\\\\server\\share\\a" },
    };

    for (const auto& test : cases)
    {
        const auto file = fileFromRecordedPath (test.recorded);
        ASSERT_TRUE (file.has_value()) << test.recorded;
        EXPECT_EQ (file->getFullPathName(), test.expected) << test.recorded;
    }
}

TEST (WindowsChildFile, RefusesEveryOtherRecordedPath)
{
    for (const auto* recorded : { "", "a", "a\\b", "\\a", "/a", "C:", "C:a", "C:\\a\\..", "C:\\.", "C:\\..\\a", "C:\\a\\..\\..\\b",
                                  "c:/../a" })
        EXPECT_FALSE (fileFromRecordedPath (recorded).has_value()) << recorded;
}
