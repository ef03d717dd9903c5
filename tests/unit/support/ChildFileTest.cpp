#include "support/ChildFile.h"
#include "support/Text.h"

#include <gtest/gtest.h>

TEST (ChildFile, GivesNoMeaningToATilde)
{
    const juce::File folder ("/home/user/Vault");

    EXPECT_EQ (childOf (folder, "~root").getFullPathName(), "/home/user/Vault/~root");
    EXPECT_EQ (childOf (folder, "~").getFullPathName(), "/home/user/Vault/~");
    EXPECT_EQ (childOf (folder, "~/x").getFullPathName(), "/home/user/Vault/~/x");
}

TEST (ChildFile, JoinsNamesAndRelativePaths)
{
    const juce::File folder ("/home/user/Vault");

    EXPECT_EQ (childOf (folder, "a").getFullPathName(), "/home/user/Vault/a");
    EXPECT_EQ (childOf (folder, "a/b c/d.e").getFullPathName(), "/home/user/Vault/a/b c/d.e");
    EXPECT_EQ (childOf (folder, "a/b/").getFullPathName(), "/home/user/Vault/a/b");
    EXPECT_EQ (childOf (folder, utf8 ("Größe")).getFullPathName(), utf8 ("/home/user/Vault/Größe"));
    EXPECT_EQ (childOf (juce::File ("/"), "a").getFullPathName(), "/a");
}

TEST (ChildFile, AnAbsoluteNameStaysInsideTheFolder)
{
    EXPECT_EQ (childOf (juce::File ("/home/user/Vault"), "/etc/passwd").getFullPathName(), "/home/user/Vault/etc/passwd");
}

TEST (ChildFile, NoFolderHasNoChild)
{
    EXPECT_EQ (childOf (juce::File(), "a"), juce::File());
}

//==============================================================================
TEST (ChildFile, TakesAbsoluteRecordedPaths)
{
    const struct { const char* recorded; const char* expected; } cases[]
    {
        { "/", "/" }, { "/a", "/a" }, { "/a/b/", "/a/b" }, { "/a/~b", "/a/~b" }, { "/a/b/../c", "/a/c" }, { "/a/./b", "/a/b" },
        { "/a//b", "/a/b" }, { "/a b/\xc3\xa4", "/a b/\xc3\xa4" }, { "/a/...", "/a/..." }, { "/a/..b", "/a/..b" },
    };

    for (const auto& test : cases)
    {
        const auto file = fileFromRecordedPath (utf8 (test.recorded));
        ASSERT_TRUE (file.has_value()) << test.recorded;
        EXPECT_EQ (file->getFullPathName(), utf8 (test.expected)) << test.recorded;
    }
}

TEST (ChildFile, RefusesEveryOtherRecordedPath)
{
    for (const auto* recorded : { "", " ", "a", "a/b", "./a", "../a", "~", "~/a", "~root/a", " /a", "C:\\a", "\\a", "\\\\server\\a",
                                  "/a/.", "/a/..", "/a/./", "/a/../", "/a/..//", "/.", "/..", "/a/b/../..",
                                  "/../a", "/a/../../b", "/./../a", "//../a", "/a/b/../../../c" })
        EXPECT_FALSE (fileFromRecordedPath (recorded).has_value()) << recorded;
}
