#include "BrokerScene.h"
#include "platform/PipeServer.h"
#include "platform/windows/WindowsHeaders.h"
#include "support/Drafts.h"
#include "support/TrustedTestServer.h"

namespace
{
using namespace zorva::test;
using Outcome = BrokerClient::Outcome;

const juce::String path ("/v1/responses");

juce::MemoryBlock bytesOf (const juce::String& text)    { return { text.toRawUTF8(), text.getNumBytesAsUTF8() }; }

/** A client that reads and leaves when the test says so. */
class RawClient
{
public:
    ~RawClient()    { leave(); }

    /** Opens the pipe, as soon as it is free; false when it is not within the limit. */
    bool connect (const BrokerClient& finder, int limitMs = 8000)
    {
        const auto end = juce::Time::getMillisecondCounter() + (juce::uint32) limitMs;

        do
        {
            if (const auto hub = finder.discover(); hub.has_value() && open (hub->pipeName) == ERROR_SUCCESS)
                return true;

            juce::Thread::sleep (5);
        }
        while (juce::Time::getMillisecondCounter() < end);

        return false;
    }

    /** Tries once to open a pipe of this name: the system's error. */
    DWORD open (const juce::String& pipeName)
    {
        const auto name = "\\\\.\\pipe\\" + pipeName;
        pipe = ::CreateFileW (name.toWideCharPointer(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                              SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION, nullptr);

        return pipe == INVALID_HANDLE_VALUE ? ::GetLastError() : (DWORD) ERROR_SUCCESS;
    }

    bool write (const juce::MemoryBlock& bytes)
    {
        DWORD count = 0;
        return ::WriteFile (pipe, bytes.getData(), (DWORD) bytes.getSize(), &count, nullptr) && count == bytes.getSize();
    }

    /** Waits until something is there to be read, and reads none of it. */
    bool waitForReply (int limitMs = 20000)
    {
        const auto end = juce::Time::getMillisecondCounter() + (juce::uint32) limitMs;
        DWORD count = 0;

        while (::PeekNamedPipe (pipe, nullptr, 0, nullptr, &count, nullptr) && count == 0 && juce::Time::getMillisecondCounter() < end)
            juce::Thread::sleep (1);

        return count > 0;
    }

    /** Reads one frame in pieces of this size, with a pause after each; its payload, or what there was of it. */
    juce::MemoryBlock readPayload (size_t pieceSize, int pauseMs = 0)
    {
        juce::MemoryBlock bytes, piece (pieceSize);
        DWORD count = 0;

        while ((bytes.getSize() < 4 || bytes.getSize() - 4 < juce::ByteOrder::bigEndianInt (bytes.getData()))
               && ::ReadFile (pipe, piece.getData(), (DWORD) pieceSize, &count, nullptr) && count > 0)
        {
            bytes.append (piece.getData(), count);
            juce::Thread::sleep (pauseMs);
        }

        bytes.removeSection (0, 4);
        return bytes;
    }

    void leave()
    {
        if (pipe != INVALID_HANDLE_VALUE)
            ::CloseHandle (std::exchange (pipe, INVALID_HANDLE_VALUE));
    }

private:
    HANDLE pipe = INVALID_HANDLE_VALUE;
};

/** A broker that serves over a real pipe. */
class BrokerPipe : public ::testing::Test
{
protected:
    void SetUp() override    { scene.start(); }

    juce::MemoryBlock frameOf (const juce::String& op, const juce::String& id, const juce::String& input = {})
    {
        const auto hub = scene.client.discover();
        EXPECT_TRUE (hub.has_value());
        return BrokerClient::frame (BrokerClient::makeRequest (hub.has_value() ? hub->token : juce::String(), op, id, input));
    }

    BrokerScene scene;
};
}

//==============================================================================
TEST_F (BrokerPipe, AnswersAClientThatReadsByteByByte)
{
    RawClient client;
    ASSERT_TRUE (client.connect (scene.client));
    ASSERT_TRUE (client.write (frameOf ("broker.health", "h-1")));
    ASSERT_TRUE (client.waitForReply());

    const auto reply = juce::JSON::parse (client.readPayload (1).toString());
    EXPECT_EQ (reply["requestId"].toString(), "h-1");
    EXPECT_TRUE ((bool) reply["payload"]["ready"]);
}

TEST_F (BrokerPipe, TakesAHeaderAndAPayloadThatAreWrittenApart)
{
    RawClient client;
    const auto frame = frameOf ("broker.health", "h-1");
    ASSERT_TRUE (client.connect (scene.client));
    ASSERT_TRUE (client.write (juce::MemoryBlock (frame.getData(), 4)));
    juce::Thread::sleep (50);
    ASSERT_TRUE (client.write (juce::MemoryBlock (juce::addBytesToPointer (frame.getData(), 4), frame.getSize() - 4)));

    EXPECT_EQ (juce::JSON::parse (client.readPayload (4096).toString())["requestId"].toString(), "h-1");
}

TEST_F (BrokerPipe, LetsInOneClientAtATime)
{
    const auto hub = scene.client.discover();
    RawClient first, second;
    ASSERT_TRUE (hub.has_value() && first.connect (scene.client));
    EXPECT_EQ (second.open (hub->pipeName), (DWORD) ERROR_PIPE_BUSY);

    first.leave();
    EXPECT_TRUE (scene.stillAnswers());
}

//==============================================================================
TEST_F (BrokerPipe, SavesADraftOfTheLargestInput)
{
    const auto draft = draftOf (writeRender(), juce::String::repeatedString ("0a", 16)).paddedRight (' ', 262144);
    const auto reply = scene.ask ("creator.preview.draft.save", draft);
    EXPECT_TRUE ((bool) reply["payload"]["accepted"]) << juce::JSON::toString (reply);

    const auto refused = scene.ask ("creator.preview.draft.save", draft + " ");
    EXPECT_EQ (refused["error"].toString(), "input_size");
}

TEST_F (BrokerPipe, SavesADraftInTheLargestFrame)
{
    // Line ends take two bytes each in the frame, and one in the draft.
    const auto hub = scene.client.discover();
    ASSERT_TRUE (hub.has_value());
    const auto draft = draftOf (writeRender(), juce::String::repeatedString ("0b", 16));
    const auto text = juce::JSON::toString (BrokerClient::makeRequest (hub->token, "creator.preview.draft.save", "d-1",
                                                                       draft + juce::String::repeatedString ("\n", 261000)), true);
    ASSERT_GT (text.length(), 522000);
    ASSERT_LE (text.length(), 524288);

    const auto reply = scene.client.exchange (BrokerClient::frame (bytesOf (text.paddedRight (' ', 524288))));
    ASSERT_EQ (reply.outcome, Outcome::answered);
    EXPECT_TRUE ((bool) juce::JSON::parse (reply.payload.toString())["payload"]["accepted"]) << reply.payload.toString();
}

//==============================================================================
TEST_F (BrokerPipe, WhatIsNoWholeFrameGetsNoReplyAndTheNextRequestIsServed)
{
    const struct { const char* what; juce::MemoryBlock bytes; bool leaves; } cases[]
    {
        { "nothing at all", {}, true },
        { "half a header", { "\0\0", 2 }, true },
        { "a size of 0", { "\0\0\0\0", 4 }, false },
        { "a size of 524289", { "\0\x08\0\x01", 4 }, false },
        { "the largest size that can be said", { "\xff\xff\xff\xff", 4 }, false },
        { "the wrong byte order", { "\x02\0\0\0{}", 6 }, false },
    };

    for (const auto& each : cases)
    {
        RawClient client;
        ASSERT_TRUE (client.connect (scene.client)) << each.what;

        if (! each.bytes.isEmpty())
            EXPECT_TRUE (client.write (each.bytes)) << each.what;

        if (each.leaves)
            client.leave();
        else
            EXPECT_EQ (client.readPayload (4096).getSize(), 0u) << each.what;

        EXPECT_TRUE (scene.stillAnswers()) << each.what;
    }
}

TEST_F (BrokerPipe, AClientThatStaysAndSaysNothingIsDroppedAfterFiveSecondsWithoutAReply)
{
    RawClient client;
    ASSERT_TRUE (client.connect (scene.client));
    const auto begin = juce::Time::getMillisecondCounter();

    EXPECT_FALSE (client.waitForReply (30000)) << "not a byte";
    const auto patience = juce::Time::getMillisecondCounter() - begin;
    EXPECT_GT (patience, 4000u);
    EXPECT_LT (patience, 9000u);

    EXPECT_EQ (client.readPayload (4096).getSize(), 0u);
    EXPECT_TRUE (scene.stillAnswers());
}

TEST_F (BrokerPipe, AClientThatLeavesInTheMidstOfAFrameCostsAnotherOneTryAtMost)
{
    RawClient client;
    ASSERT_TRUE (client.connect (scene.client));
    ASSERT_TRUE (client.write (juce::MemoryBlock ("\0\0\0\x64{\"ver", 9)));
    client.leave();

    // What the next one writes may be taken for the rest of that frame.
    scene.client.exchange (frameOf ("broker.health", "h-1"));
    EXPECT_TRUE (scene.stillAnswers());
}

//==============================================================================
TEST_F (BrokerPipe, AReaderThatIsSlowToBeginGetsTheWholeReply)
{
    RawClient client;
    ASSERT_TRUE (client.connect (scene.client));
    ASSERT_TRUE (client.write (frameOf ("broker.health", "h-1")));
    ASSERT_TRUE (client.waitForReply());
    juce::Thread::sleep (100);

    EXPECT_EQ (juce::JSON::parse (client.readPayload (4096).toString())["requestId"].toString(), "h-1");
}

TEST_F (BrokerPipe, AClientThatNeverReadsHoldsTheNextOneUpOnlyBriefly)
{
    RawClient client;
    ASSERT_TRUE (client.connect (scene.client));
    ASSERT_TRUE (client.write (frameOf ("broker.health", "h-1")));
    ASSERT_TRUE (client.waitForReply());

    const auto begin = juce::Time::getMillisecondCounter();
    EXPECT_TRUE (scene.stillAnswers());
    EXPECT_LT (juce::Time::getMillisecondCounter() - begin, (juce::uint32) platform::pipeLingerMilliseconds() + 3000);
}

TEST (BrokerPipeAndUpstream, ALargeReplyReachesAReaderThatTakesItInPieces)
{
    constexpr int letters = 300000;
    TrustedTestServer server;
    server.serve (path, TrustedTestServer::Answer::text ("{\"output_text\":\"" + juce::String::repeatedString ("x", letters) + "\"}"));
    BrokerScene scene (server.url (path));
    scene.store.hold ("sk-test");
    scene.start();
    const auto hub = scene.client.discover();
    ASSERT_TRUE (hub.has_value());

    RawClient client;
    ASSERT_TRUE (client.connect (scene.client));
    ASSERT_TRUE (client.write (BrokerClient::frame (BrokerClient::makeRequest (hub->token, "openai.complete", "c-1", "Hello"))));
    ASSERT_TRUE (client.waitForReply());

    const auto reply = juce::JSON::parse (client.readPayload (30000, 20).toString());
    EXPECT_EQ (reply["payload"]["text"].toString().length(), letters) << juce::JSON::toString (reply).substring (0, 300);
}

//==============================================================================
TEST_F (BrokerPipe, AStoppedBrokersPipeIsGoneAndANewOneHasAnotherName)
{
    const auto first = scene.client.discover();
    ASSERT_TRUE (first.has_value());
    EXPECT_TRUE (scene.stillAnswers());
    scene.broker.reset();

    RawClient client;
    EXPECT_EQ (client.open (first->pipeName), (DWORD) ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE (BrokerClient::discoveryFile().exists());

    scene.make();
    scene.start();
    const auto second = scene.client.discover();
    ASSERT_TRUE (second.has_value());
    EXPECT_NE (second->pipeName, first->pipeName);
    EXPECT_NE (second->token, first->token);
    EXPECT_EQ (client.open (first->pipeName), (DWORD) ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE (scene.stillAnswers());
}

TEST_F (BrokerPipe, AStopEndsTheConnectionOfAWaitingClientAtOnce)
{
    RawClient client;
    ASSERT_TRUE (client.connect (scene.client));
    const auto begin = juce::Time::getMillisecondCounter();
    scene.broker.reset();

    EXPECT_LT (juce::Time::getMillisecondCounter() - begin, 3000u);
    EXPECT_EQ (client.readPayload (4096).getSize(), 0u);
}
