#include "support/Files.h"
#include "support/RegularFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace zorva::test;

TEST (RegularFile, FollowsLinks)
{
    const auto folder = freshFolder ("files");
    write (in (folder, "file"), "content");

    EXPECT_TRUE (isRegularFile (link (in (folder, "link to a file"), in (folder, "file").getFullPathName())));
    EXPECT_FALSE (isRegularFile (link (in (folder, "link to a folder"), folder.getFullPathName())));
    EXPECT_FALSE (isRegularFile (link (in (folder, "link to nothing"), "/nothing/there")));
}

TEST (RegularFile, IsNoDeviceAndNoPipe)
{
    const auto pipe = in (freshFolder ("files"), "pipe");
    ASSERT_EQ (::mkfifo (pipe.getFullPathName().toRawUTF8(), 0600), 0);

    for (const juce::File& file : { juce::File ("/dev/zero"), juce::File ("/dev/null"), pipe })
    {
        EXPECT_TRUE (file.existsAsFile()) << "the framework takes it for a file: " << file.getFullPathName();
        EXPECT_FALSE (isRegularFile (file)) << file.getFullPathName();
    }
}
