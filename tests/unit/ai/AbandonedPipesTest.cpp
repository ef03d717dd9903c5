#include "ai/BrokerProtocol.h"
#include "platform/PipeServer.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

// In a /tmp of the process's own: see PipeFolderEnvironment.

namespace
{
const juce::String digits ("0123456789abcdef0123456789abcdef");

juce::File inTmp (const juce::String& name)
{
    return juce::File ("/tmp").getChildFile (name);
}

juce::File makePipe (const juce::String& name)
{
    const auto file = inTmp (name);
    EXPECT_EQ (::mkfifo (file.getFullPathName().toRawUTF8(), 0600), 0);
    return file;
}

void makeOld (const juce::File& file)
{
    const timespec times[2] { { .tv_sec = 1000, .tv_nsec = 0 }, { .tv_sec = 1000, .tv_nsec = 0 } };
    EXPECT_EQ (::utimensat (AT_FDCWD, file.getFullPathName().toRawUTF8(), times, AT_SYMLINK_NOFOLLOW), 0);
}

void removeAbandoned() { platform::removeAbandonedPipes (brokerPipeNamePrefix); }
}

TEST (AbandonedPipes, OldOnesThatNobodyReadsAreRemoved)
{
    const auto in = makePipe (brokerPipeNamePrefix + digits + "_in"), out = makePipe (brokerPipeNamePrefix + digits + "_out");
    makeOld (in);
    makeOld (out);
    removeAbandoned();
    EXPECT_FALSE (in.exists());
    EXPECT_FALSE (out.exists());
}

TEST (AbandonedPipes, AFreshOneStays)
{
    const auto pipe = makePipe (brokerPipeNamePrefix + digits + "_in");
    removeAbandoned();
    EXPECT_TRUE (pipe.exists());
}

TEST (AbandonedPipes, OneThatSomebodyReadsStays)
{
    const auto pipe = makePipe (brokerPipeNamePrefix + digits + "_in");
    makeOld (pipe);
    const auto reader = ::open (pipe.getFullPathName().toRawUTF8(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE (reader, 0);
    removeAbandoned();
    EXPECT_TRUE (pipe.exists());
    ::close (reader);
}

TEST (AbandonedPipes, FilesLinksAndOtherNamesStay)
{
    const auto file = inTmp (brokerPipeNamePrefix + juce::String ("file"));
    ASSERT_TRUE (file.replaceWithText ("not a pipe"));
    const auto other = makePipe ("another_hub_ai_" + digits + "_in");
    const auto link = inTmp (brokerPipeNamePrefix + juce::String ("link"));
    ASSERT_EQ (::symlink (other.getFullPathName().toRawUTF8(), link.getFullPathName().toRawUTF8()), 0);

    for (const auto& each : { file, other, link })
        makeOld (each);

    removeAbandoned();
    EXPECT_TRUE (file.exists());
    EXPECT_TRUE (other.exists());
    EXPECT_TRUE (link.isSymbolicLink());
}
