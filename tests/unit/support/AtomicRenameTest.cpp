#include "support/AtomicRename.h"
#include "support/Files.h"
#include "support/NativePath.h"
#include "support/PrivateMounts.h"
#include "support/Text.h"

#include <clocale>
#include <gtest/gtest.h>

using namespace zorva::test;

TEST (AtomicRename, PutsAFileInThePlaceOfAnother)
{
    const auto folder = freshFolder ("rename");
    const auto from = write (in (folder, "from"), "new");
    const auto to = write (in (folder, utf8 ("tö")), "old");

    EXPECT_TRUE (renameOver (from, to));
    EXPECT_EQ (treeOf (folder), (Tree { { "tö", "file: new" } }));
}

TEST (AtomicRename, NeedsNoTarget)
{
    const auto folder = freshFolder ("rename");

    EXPECT_TRUE (renameOver (write (in (folder, "from"), "new"), in (folder, "to")));
    EXPECT_EQ (treeOf (folder), (Tree { { "to", "file: new" } }));
}

TEST (AtomicRename, AFailureLeavesBothAsTheyWere)
{
    const auto folder = freshFolder ("rename");
    const auto from = write (in (folder, "from"), "new");
    const auto to = write (in (folder, "to"), "old");
    ASSERT_TRUE (in (folder, "folder").createDirectory().wasOk());
    const auto before = treeOf (folder);

    {
        const BusyPath busy (to);
        EXPECT_FALSE (renameOver (from, to));
    }

    EXPECT_FALSE (renameOver (from, in (folder, "folder")));
    EXPECT_FALSE (renameOver (from, in (folder, "absent/to")));
    EXPECT_FALSE (renameOver (in (folder, "absent"), to));
    EXPECT_FALSE (renameOver (juce::File(), to));
    EXPECT_FALSE (renameOver (from, juce::File()));
    EXPECT_EQ (treeOf (folder), before);
}

//==============================================================================
TEST (NativePath, HoldsTheSameBytes)
{
    const auto path = nativePath (juce::File (utf8 ("/a b/Größe/音/\xf0\x9f\x8e\xb9")));

    ASSERT_TRUE (path.has_value());
    EXPECT_TRUE (path->generic_u8string().ends_with (u8"/a b/Größe/音/\xf0\x9f\x8e\xb9"));
}

TEST (NativePath, DoesNotDependOnTheLocale)
{
    std::setlocale (LC_ALL, "C");
    const auto path = nativePath (juce::File (utf8 ("/Größe")));

    ASSERT_TRUE (path.has_value());
    EXPECT_TRUE (path->generic_u8string().ends_with (u8"/Größe"));
}

TEST (NativePath, TheEmptyPathIsNone)
{
    EXPECT_FALSE (nativePath (juce::File()).has_value());
}
