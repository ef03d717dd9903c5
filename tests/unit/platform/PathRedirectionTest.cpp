#include "platform/PathRedirection.h"
#include "support/Files.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace zorva::test;

TEST (PathRedirection, ALinkToAFolderRedirects)
{
    const auto folder = freshFolder ("links");
    ASSERT_TRUE (in (folder, "folder/inner").createDirectory().wasOk());

    EXPECT_TRUE (platform::isLinkOrRedirection (link (in (folder, "to folder"), "folder")));
    EXPECT_TRUE (platform::isLinkOrRedirection (link (in (folder, utf8 ("Größe")), "folder")));
    EXPECT_FALSE (platform::isLinkOrRedirection (in (folder, "to folder/inner"))) << "ancestors are not looked at";
}

TEST (PathRedirection, ALinkToAFileOrToNothingRedirects)
{
    const auto folder = freshFolder ("links");
    write (in (folder, "file"), "x");

    EXPECT_TRUE (platform::isLinkOrRedirection (link (in (folder, "to file"), "file")));
    EXPECT_TRUE (platform::isLinkOrRedirection (link (in (folder, "dangling"), "nowhere")));
    EXPECT_TRUE (platform::isLinkOrRedirection (link (in (folder, "loop"), "loop")));
}

TEST (PathRedirection, NothingElseDoes)
{
    const auto folder = freshFolder ("plain");
    const auto file = write (in (folder, "file"), "x");

    EXPECT_FALSE (platform::isLinkOrRedirection (file));
    EXPECT_FALSE (platform::isLinkOrRedirection (folder));
    EXPECT_FALSE (platform::isLinkOrRedirection (in (folder, "absent")));
    EXPECT_FALSE (platform::isLinkOrRedirection (in (file, "below a file")));
    EXPECT_FALSE (platform::isLinkOrRedirection (juce::File()));
}
