#include "platform/PipeServer.h"
#include "support/Files.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
const juce::String reply ("a reply that is there to the last byte");

/** A name of a place that a test may write to; a bare one means a place outside its HOME. */
juce::String pipeName() { return in (freshFolder ("pipes"), "pipe").getFullPathName(); }
}

TEST (PipeServer, AClientStillReadsTheReplyOfAServerThatHasLingeredAndClosed)
{
    const auto name = pipeName();
    juce::NamedPipe server, client;
    platform::prepareToCreatePipe();
    ASSERT_TRUE (server.createNewPipe (name, true));
    ASSERT_TRUE (client.openExisting (name));
    ASSERT_EQ (client.write ("?", 1, 1000), 1);
    char request = 0;
    ASSERT_EQ (server.read (&request, 1, 1000), 1);

    const auto size = (int) reply.getNumBytesAsUTF8();
    ASSERT_EQ (server.write (reply.toRawUTF8(), size, 1000), size);
    juce::Thread::sleep (platform::pipeLingerMilliseconds());
    server.close();

    juce::MemoryBlock read ((size_t) size);
    EXPECT_EQ (client.read (read.getData(), size, 1000), size);
    EXPECT_EQ (read.toString(), reply);
}

TEST (PipeServer, APipeThatIsThereAlreadyIsNotMadeAgain)
{
    const auto name = pipeName();
    juce::NamedPipe first, second;
    platform::prepareToCreatePipe();
    ASSERT_TRUE (first.createNewPipe (name, true));

    platform::prepareToCreatePipe();
    EXPECT_FALSE (second.createNewPipe (name, true));
}
