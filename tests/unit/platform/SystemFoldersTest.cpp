#include "platform/KnownFolders.h"
#include "platform/PathRedirection.h"
#include "support/Files.h"
#include "support/Text.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace zorva::test;

TEST (KnownFolders, LieBelowHome)
{
    const auto home = freshFolder (utf8 ("home of Jörg"));
    ::setenv ("HOME", home.getFullPathName().toRawUTF8(), 1);

    EXPECT_EQ (platform::configurationFolder(), in (home, ".config"));
    EXPECT_EQ (platform::localDataFolder(), in (home, ".local/share"));
}

TEST (KnownFolders, AskingMakesNothing)
{
    const auto home = freshFolder ("home");
    ::setenv ("HOME", home.getFullPathName().toRawUTF8(), 1);

    platform::configurationFolder();
    platform::localDataFolder();
    EXPECT_EQ (treeOf (home), Tree());
}

//==============================================================================
TEST (PathRedirection, OnlyTheLinkItselfRedirects)
{
    const auto folder = freshFolder ("links");
    const auto file = write (in (folder, "file"), "x");
    ASSERT_TRUE (in (folder, "folder/inner").createDirectory().wasOk());

    EXPECT_TRUE (platform::isLinkOrRedirection (link (in (folder, "to file"), "file")));
    EXPECT_TRUE (platform::isLinkOrRedirection (link (in (folder, "to folder"), "folder")));
    EXPECT_TRUE (platform::isLinkOrRedirection (link (in (folder, "dangling"), "nowhere")));
    EXPECT_TRUE (platform::isLinkOrRedirection (link (in (folder, "loop"), "loop")));
    EXPECT_TRUE (platform::isLinkOrRedirection (link (in (folder, utf8 ("Größe")), "file")));
    EXPECT_FALSE (platform::isLinkOrRedirection (file));
    EXPECT_FALSE (platform::isLinkOrRedirection (in (folder, "folder")));
    EXPECT_FALSE (platform::isLinkOrRedirection (in (folder, "to folder/inner"))) << "ancestors are not looked at";
    EXPECT_FALSE (platform::isLinkOrRedirection (in (folder, "absent")));
    EXPECT_FALSE (platform::isLinkOrRedirection (in (file, "below a file")));
    EXPECT_FALSE (platform::isLinkOrRedirection (juce::File()));
}
