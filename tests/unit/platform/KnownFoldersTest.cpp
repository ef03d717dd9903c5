#include "platform/KnownFolders.h"
#include "support/Environment.h"
#include "support/Files.h"
#include "support/Text.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace zorva::test;

TEST (KnownFolders, LieBelowHome)
{
    const auto home = freshFolder (utf8 ("home of Jörg"));
    setEnvironment ("HOME", home.getFullPathName());

    EXPECT_EQ (platform::configurationFolder(), in (home, ".config"));
    EXPECT_EQ (platform::localDataFolder(), in (home, ".local/share"));
}

TEST (KnownFolders, AskingMakesNothing)
{
    const auto home = freshFolder ("home");
    setEnvironment ("HOME", home.getFullPathName());

    platform::configurationFolder();
    platform::localDataFolder();
    EXPECT_EQ (treeOf (home), Tree());
}
