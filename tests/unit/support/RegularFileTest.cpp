#include "support/Files.h"
#include "support/RegularFile.h"

#include <gtest/gtest.h>

#if JUCE_LINUX
 #include <sys/stat.h>
#endif

using namespace zorva::test;

TEST (RegularFile, IsAFileWithOrWithoutContent)
{
    const auto folder = freshFolder ("files");

    EXPECT_TRUE (isRegularFile (write (in (folder, "full"), "content")));
    EXPECT_TRUE (isRegularFile (write (in (folder, "empty"), "")));
}

TEST (RegularFile, IsNoFolderAndNothingThatIsNotThere)
{
    const auto folder = freshFolder ("files");

    EXPECT_FALSE (isRegularFile (folder));
    EXPECT_FALSE (isRegularFile (in (folder, "absent")));
    EXPECT_FALSE (isRegularFile (in (write (in (folder, "file"), "x"), "below a file")));
    EXPECT_FALSE (isRegularFile (juce::File()));
}

#if JUCE_LINUX
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
#endif
