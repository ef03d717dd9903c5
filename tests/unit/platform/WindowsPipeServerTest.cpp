#include "platform/PipeServer.h"
#include "platform/windows/WindowsHeaders.h"

#include <gtest/gtest.h>
#include <thread>

namespace
{
const juce::String reply ("a reply that is there to the last byte");

/** The two ends of a pipe, of which the server has served a request. */
struct Conversation
{
    Conversation()
    {
        platform::prepareToCreatePipe();
        EXPECT_TRUE (server.createNewPipe (name, true));
        EXPECT_TRUE (client.openExisting (name));
        EXPECT_EQ (client.write ("?", 1, 1000), 1);
        char request = 0;
        EXPECT_EQ (server.read (&request, 1, 1000), 1);
        EXPECT_EQ (server.write (reply.toRawUTF8(), size, 1000), size);
    }

    juce::String readReply()
    {
        juce::MemoryBlock bytes ((size_t) size, true);
        return client.read (bytes.getData(), size, 1000) == size ? bytes.toString() : juce::String ("(nothing)");
    }

    const juce::String name = "zorva_hub_test_" + juce::Uuid().toString();
    const int size = (int) reply.getNumBytesAsUTF8();
    juce::NamedPipe server, client;
};
}

TEST (PipeServer, AClientThatReadsWithinTheLingerGetsTheWholeReply)
{
    Conversation conversation;
    std::thread closing ([&conversation]
    {
        juce::Thread::sleep (platform::pipeLingerMilliseconds());
        conversation.server.close();
    });

    juce::Thread::sleep (platform::pipeLingerMilliseconds() / 2);
    EXPECT_EQ (conversation.readReply(), reply);
    closing.join();
}

TEST (PipeServer, ClosingDiscardsWhatWasNotRead)
{
    // This is why a server has to linger here.
    Conversation conversation;
    conversation.server.close();
    EXPECT_EQ (conversation.readReply(), "(nothing)");
}

TEST (PipeServer, AnErrorOfAnEarlierCallDoesNotKeepAPipeFromBeingMade)
{
    ::SetLastError (ERROR_ALREADY_EXISTS);
    platform::prepareToCreatePipe();
    EXPECT_EQ (::GetLastError(), (DWORD) ERROR_SUCCESS);

    juce::NamedPipe pipe;
    EXPECT_TRUE (pipe.createNewPipe ("zorva_hub_test_" + juce::Uuid().toString(), true));
}

TEST (PipeServer, APipeThatIsThereAlreadyIsNotMadeAgain)
{
    const auto name = "zorva_hub_test_" + juce::Uuid().toString();
    juce::NamedPipe first, second;
    platform::prepareToCreatePipe();
    ASSERT_TRUE (first.createNewPipe (name, true));

    platform::prepareToCreatePipe();
    EXPECT_FALSE (second.createNewPipe (name, true));
}
