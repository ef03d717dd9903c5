#include "support/SpecialFiles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace zorva::test
{
juce::File specialFile (const juce::File& folder, const juce::String& ending)
{
    const juce::File pipe (folder.getFullPathName() + "/pipe" + ending);
    EXPECT_EQ (::mkfifo (pipe.getFullPathName().toRawUTF8(), 0600), 0) << pipe.getFullPathName();
    return pipe;
}
}
