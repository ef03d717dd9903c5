#include "support/Files.h"
#include "support/RegularFile.h"

#include <gtest/gtest.h>

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
