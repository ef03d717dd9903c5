#include "ai/BrokerProtocol.h"
#include "ai/HubAiBrokerService.h"
#include "app/HubPaths.h"
#include "support/BrokerClient.h"
#include "support/FakeCredentialStore.h"
#include "support/Files.h"
#include "support/GuiHarness.h"
#include "support/LogCapture.h"
#include "support/TrustedTestServer.h"

#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>
#include <thread>

namespace
{
using namespace zorva::test;
using Outcome = BrokerClient::Outcome;

/** A broker with a key store in memory and a client that reaches nobody, or a given address. */
struct Scene
{
    explicit Scene (const juce::String& endpoint = "https://127.0.0.1:1/v1/responses") : openAi (store, { .endpoint = endpoint }) { make(); }

    void make() { broker = std::make_unique<HubAiBrokerService> (store, openAi, drafts); }

    void start()
    {
        juce::String error ("not cleared");
        EXPECT_TRUE (broker->start (error));
        EXPECT_EQ (error, "");
    }

    /** The answer to an operation, asked on this thread. */
    juce::var ask (const juce::String& op, const juce::String& input = {})
    {
        const auto reply = client.ask (op, input);
        EXPECT_TRUE (reply.has_value());
        return reply.value_or (juce::var());
    }

    LogCapture log;
    FakeCredentialStore store;
    HubOpenAiClient openAi;
    PreviewDraftStore drafts;
    BrokerClient client;
    std::unique_ptr<HubAiBrokerService> broker;
};

std::string keysOf (const juce::var& value)
{
    juce::StringArray keys;

    if (const auto* object = value.getDynamicObject())
        for (const auto& property : object->getProperties())
            keys.add (property.name.toString());

    return keys.joinIntoString (" ").toStdString();
}

/** Calls handleRequest() as the broker's thread would, with the token that this broker has published. */
juce::var handle (Scene& scene, const juce::String& op, const juce::String& id, const juce::String& input = {})
{
    const auto found = scene.client.discover();
    const auto text = juce::JSON::toString (BrokerClient::makeRequest (found.has_value() ? found->token : juce::String(), op, id, input));
    return juce::JSON::parse (scene.broker->handleRequest ({ text.toRawUTF8(), text.getNumBytesAsUTF8() }).toString());
}

bool stillAnswers (Scene& scene) { return (bool) scene.ask ("broker.health")["ok"]; }
}

//==============================================================================
TEST (HubAiBrokerService, NothingIsStartedByConstruction)
{
    Scene scene;
    EXPECT_FALSE (BrokerClient::discoveryFile().exists());
}

TEST (HubAiBrokerService, TheDiscoveryFileSaysHowToFindTheBroker)
{
    Scene scene;
    scene.start();
    const auto found = scene.client.discover();
    ASSERT_TRUE (found.has_value());

    EXPECT_EQ (found->version, 2);
    EXPECT_EQ (found->transport, "length_prefixed_named_pipe");
    EXPECT_EQ (found->pipeName.length(), 45);
    EXPECT_TRUE (found->pipeName.startsWith ("zorva_hub_ai_"));
    EXPECT_TRUE (found->pipeName.substring (13).containsOnly ("0123456789abcdef"));
    EXPECT_EQ (found->token.length(), 64);
    EXPECT_TRUE (found->token.containsOnly ("0123456789abcdef"));
    EXPECT_EQ (found->pid, (juce::int64) ::getpid());
    EXPECT_LT (std::abs ((juce::Time::getCurrentTime() - juce::Time::fromISO8601 (found->startedAt)).inSeconds()), 60.0);
}

TEST (HubAiBrokerService, TheDiscoveryFileIsMultiLineJsonWithItsKeysInOrder)
{
    Scene scene;
    ASSERT_TRUE (scene.broker->writeDiscoveryFile());
    const auto text = BrokerClient::discoveryFile().loadFileAsString();
    EXPECT_EQ (keysOf (juce::JSON::parse (text)), "version transport pipeName token pid startedAt");
    EXPECT_TRUE (text.startsWith ("{\r\n  \"version\": 2,\r\n  \"transport\": \"length_prefixed_named_pipe\",\r\n")) << text;
    EXPECT_FALSE (text.removeCharacters ("\r").contains ("\r"));
    EXPECT_EQ (text.retainCharacters ("\r").length(), text.retainCharacters ("\n").length()) << "no line ends without a return";
}

TEST (HubAiBrokerService, FileAndPipesArePrivate)
{
    const auto mask = ::umask (077);
    Scene scene;
    scene.start();
    const auto found = scene.client.discover();
    ASSERT_TRUE (found.has_value());

    for (const auto& path : { BrokerClient::discoveryFile().getFullPathName(), "/tmp/" + found->pipeName + "_in", "/tmp/" + found->pipeName + "_out" })
    {
        struct stat info {};
        // The file is anew every cycle: look until it is there.
        ASSERT_TRUE (pumpUntil ([&] { return ::stat (path.toRawUTF8(), &info) == 0; })) << path;
        EXPECT_EQ (info.st_mode & 0777, 0600u) << path;
    }

    ::umask (mask);
}

TEST (HubAiBrokerService, ASecondStartChangesNothing)
{
    Scene scene;
    scene.start();
    const auto first = scene.client.discover();
    juce::String error ("untouched");
    EXPECT_TRUE (scene.broker->start (error));
    EXPECT_EQ (error, "untouched");
    const auto second = scene.client.discover();
    ASSERT_TRUE (first.has_value() && second.has_value());
    EXPECT_EQ (first->token, second->token);
    EXPECT_EQ (first->pipeName, second->pipeName);
}

TEST (HubAiBrokerService, EachIdleCycleWritesAFreshFileWithTheSameTokenAndPipe)
{
    Scene scene;
    scene.start();
    const auto first = scene.client.discover();
    ASSERT_TRUE (first.has_value());
    std::optional<BrokerClient::Discovery> later;
    EXPECT_TRUE (pumpUntil ([&] { later = scene.client.discover(); return later.has_value() && later->startedAt != first->startedAt; }, 9000));
    ASSERT_TRUE (later.has_value());
    EXPECT_EQ (later->token, first->token);
    EXPECT_EQ (later->pipeName, first->pipeName);
    const auto between = (juce::Time::fromISO8601 (later->startedAt) - juce::Time::fromISO8601 (first->startedAt)).inMilliseconds();
    EXPECT_GE (between, 4900);
}

TEST (HubAiBrokerService, ANewStartHasANewTokenAndPipe)
{
    Scene scene;
    scene.start();
    const auto first = scene.client.discover();
    scene.broker.reset();
    EXPECT_FALSE (BrokerClient::discoveryFile().exists());
    scene.make();
    scene.start();
    const auto second = scene.client.discover();
    ASSERT_TRUE (first.has_value() && second.has_value());
    EXPECT_NE (first->token, second->token);
    EXPECT_NE (first->pipeName, second->pipeName);
}

TEST (HubAiBrokerService, AStaleFileIsGoneAfterTheStart)
{
    Scene scene;
    HubPaths::runtimeDirectory().createDirectory();
    ASSERT_TRUE (BrokerClient::discoveryFile().replaceWithText ("{\"pipeName\":\"stale\"}"));
    scene.start();
    const auto found = scene.client.discover();
    ASSERT_TRUE (found.has_value());
    EXPECT_NE (found->pipeName, "stale");
}

//==============================================================================
TEST (HubAiBrokerService, HealthAnswersWithoutAnyKey)
{
    Scene scene;
    scene.start();
    const auto reply = scene.ask ("broker.health");
    EXPECT_EQ (keysOf (reply), "version requestId ok payload");
    EXPECT_TRUE ((bool) reply["ok"]);
    EXPECT_EQ (keysOf (reply["payload"]), "ready model");
    EXPECT_TRUE ((bool) reply["payload"]["ready"]);
    EXPECT_EQ (reply["payload"]["model"].toString(), "gpt-5.6-terra");
    EXPECT_TRUE (scene.store.calls().isEmpty()) << "asks nothing of the store";
}

TEST (HubAiBrokerService, KeyStatusTellsPresenceAndBackend)
{
    Scene scene;
    scene.store.nameBackend ("Windows Credential Manager");
    scene.start();
    auto reply = scene.ask ("key.status");
    EXPECT_EQ (keysOf (reply["payload"]), "present backend");
    EXPECT_FALSE ((bool) reply["payload"]["present"]);
    EXPECT_EQ (reply["payload"]["backend"].toString(), "Windows Credential Manager");

    scene.store.hold ("sk-test");
    EXPECT_TRUE ((bool) scene.ask ("key.status")["payload"]["present"]);
    EXPECT_EQ (scene.store.callCount ("readKey"), 0) << "never reads it";
}

TEST (HubAiBrokerService, ACompletionWithoutAKeyIsRefusedInTheClientsWords)
{
    Scene scene;
    scene.start();
    const auto reply = scene.ask ("openai.complete", "Hello");
    EXPECT_EQ (keysOf (reply), "version requestId ok error message httpStatus");
    EXPECT_FALSE ((bool) reply["ok"]);
    EXPECT_EQ (reply["error"].toString(), "missing_key");
    EXPECT_EQ (reply["message"].toString(), "No OpenAI API key is stored in ZORVA Hub.");
    EXPECT_EQ ((int) reply["httpStatus"], 0);
}

TEST (HubAiBrokerService, ACompletionBringsTextAndRequestId)
{
    TrustedTestServer server;
    auto page = TrustedTestServer::Answer::text (R"({"output_text":"Hi"})");
    server.serve ("/v1/responses", page);
    Scene scene (server.url ("/v1/responses"));
    scene.store.hold ("sk-test");
    scene.start();

    auto reply = scene.ask ("openai.complete", "Hello");
    EXPECT_EQ (keysOf (reply["payload"]), "text upstreamRequestId");
    EXPECT_EQ (reply["payload"]["text"].toString(), "Hi");
    EXPECT_EQ (reply["payload"]["upstreamRequestId"].toString(), "") << "the key is there even without a header";
    EXPECT_EQ ((int) juce::JSON::parse (server.requests()[0].body.toString())["max_output_tokens"], 2048);

    page.headerLines = { "x-request-id: req_9" };
    server.serve ("/v1/responses", page);
    reply = scene.ask ("openai.complete", "Hello");
    EXPECT_EQ (reply["payload"]["upstreamRequestId"].toString(), "req_9");

    server.serve ("/v1/responses", TrustedTestServer::Answer::text ("{}", 429));
    reply = scene.ask ("openai.complete", "Hello");
    EXPECT_EQ (reply["error"].toString(), "rate_limited");
    EXPECT_EQ (reply["message"].toString(), "OpenAI rate-limited the request. Wait briefly and try again.");
    EXPECT_EQ ((int) reply["httpStatus"], 429);
}

TEST (HubAiBrokerService, ARejectedDraftAnswersItsReasonAndNoStatus)
{
    Scene scene;
    scene.start();
    const auto reply = scene.ask ("creator.preview.draft.save", "{}");
    EXPECT_FALSE ((bool) reply["ok"]);
    EXPECT_EQ (reply["error"].toString(), "unsupported_schema");
    EXPECT_EQ (reply["message"].toString(), "ZORVA Hub could not save the local preview draft.");
    EXPECT_EQ ((int) reply["httpStatus"], 0);
}

TEST (HubAiBrokerService, ARejectedRequestAnswersItsCode)
{
    Scene scene;
    scene.start();
    const auto reply = handle (scene, "broker.Health", "id-1");
    EXPECT_EQ (reply["error"].toString(), "unsupported_operation");
    EXPECT_EQ (reply["message"].toString(), "The local broker request was rejected.");
    EXPECT_EQ ((int) reply["httpStatus"], 0);
    EXPECT_EQ (reply["requestId"].toString(), "id-1");

    const juce::String wrong ("{\"version\":2,\"token\":\"x\",\"op\":\"no\",\"requestId\":\"id-2\"}");
    const auto refused = juce::JSON::parse (scene.broker->handleRequest ({ wrong.toRawUTF8(), wrong.getNumBytesAsUTF8() }).toString());
    EXPECT_EQ (refused["error"].toString(), "unauthorized");
    EXPECT_EQ (refused["requestId"].toString(), "");
}

TEST (HubAiBrokerService, LogLinesCarryTheIdAndAStatusAndNothingMore)
{
    Scene scene;
    scene.start();
    std::thread ([&scene]
    {
        handle (scene, "broker.health", "h-1");
        handle (scene, "key.status", "k-1");
        handle (scene, "openai.complete", "c-1", "a secret prompt");
        handle (scene, "creator.preview.draft.save", "d-1", "{}");
        handle (scene, "broker.Health", "not-logged");
    }).join();
    EXPECT_EQ (scene.log.lines().joinIntoString ("\n").toStdString(),
               "[HUB.AI] request id=h-1 status=health_ok\n[HUB.AI] request id=k-1 status=key_status\n"
               "[HUB.AI] request id=c-1 status=missing_key\n[HUB.CREATOR] request id=d-1 status=draft_rejected reason=unsupported_schema");
}

//==============================================================================
TEST (HubAiBrokerService, ABadHeaderOrAShortFrameGetsNoReplyAndTheNextRequestIsServed)
{
    Scene scene;
    scene.start();
    const BrokerClient impatient (8000, 1500);
    EXPECT_EQ (impatient.exchange (juce::MemoryBlock ("\0\0\0\0", 4)).outcome, Outcome::noReply);
    EXPECT_TRUE (stillAnswers (scene));
    EXPECT_EQ (impatient.exchange (juce::MemoryBlock ("\xff\xff\xff\xff", 4)).outcome, Outcome::noReply);
    EXPECT_TRUE (stillAnswers (scene));

    // A frame that is cut short holds the broker for its 5 s, and what comes next on the same pipe would be taken for the rest.
    EXPECT_EQ (BrokerClient (8000, 6000).exchange (juce::MemoryBlock ("\0\0\0\x10" "abc", 7)).outcome, Outcome::noReply);
    EXPECT_TRUE (stillAnswers (scene));
}

TEST (HubAiBrokerService, AClientThatSaysNothingIsDroppedAndTheBrokerListensAgain)
{
    Scene scene;
    scene.start();
    EXPECT_EQ (BrokerClient (8000, 6500).exchange (juce::MemoryBlock ("\0\0", 2)).outcome, Outcome::noReply);
    EXPECT_TRUE (stillAnswers (scene));
}

TEST (HubAiBrokerService, AStopLeavesNothingBehindEvenDuringARequest)
{
    TrustedTestServer server;
    server.serve ("/v1/responses", TrustedTestServer::Answer::text ("{}").silenced());
    Scene scene (server.url ("/v1/responses"));
    scene.store.hold ("sk-test");
    scene.start();
    const auto found = scene.client.discover();
    ASSERT_TRUE (found.has_value());

    std::thread asking ([] { BrokerClient (8000, 4000).ask ("openai.complete", "Hello"); });
    EXPECT_TRUE (pumpUntil ([&] { return server.requestCount ("/v1/responses") == 1; }, 20000));
    scene.broker.reset();
    EXPECT_FALSE (BrokerClient::discoveryFile().exists());
    EXPECT_FALSE (juce::File ("/tmp/" + found->pipeName + "_in").exists());
    EXPECT_FALSE (juce::File ("/tmp/" + found->pipeName + "_out").exists());
    asking.join();
    EXPECT_FALSE (BrokerClient::discoveryFile().exists());
    server.release ("/v1/responses");
}

TEST (HubAiBrokerService, WithoutAPlaceForItsFileItRetriesUntilThereIsOne)
{
    Scene scene;
    HubPaths::ensureDirectories();
    HubPaths::runtimeDirectory().deleteRecursively();
    ASSERT_TRUE (HubPaths::runtimeDirectory().replaceWithText ("in the way"));
    scene.start();
    pump (600);
    EXPECT_FALSE (BrokerClient::discoveryFile().exists());
    ASSERT_TRUE (HubPaths::runtimeDirectory().deleteFile());
    EXPECT_TRUE (stillAnswers (scene));
}

//==============================================================================
TEST (HubAiBrokerService, SurvivesFiveHundredRandomAndFiveHundredMutatedRequests)
{
    Scene scene;
    scene.start();
    const auto found = scene.client.discover();
    ASSERT_TRUE (found.has_value());
    std::mt19937 random (20240607);
    const auto below = [&random] (size_t limit) { return std::uniform_int_distribution<size_t> (0, limit - 1) (random); };
    const auto valid = juce::JSON::toString (BrokerClient::makeRequest (found->token, "creator.preview.draft.save", "id", "{\"schemaVersion\":1}"));

    for (int i = 0; i < 1000; ++i)
    {
        juce::MemoryBlock payload (1 + below (300));

        if (i % 2 == 0)
            for (size_t k = 0; k < payload.getSize(); ++k)
                payload[k] = (char) below (256);
        else
        {
            payload = juce::MemoryBlock (valid.toRawUTF8(), valid.getNumBytesAsUTF8());

            for (size_t k = 0; k <= below (4); ++k)
                payload[below (payload.getSize())] = (char) below (256);
        }

        const auto reply = juce::JSON::parse (scene.broker->handleRequest (payload).toString());
        EXPECT_EQ ((int) reply["version"], 2) << "request " << i;
        EXPECT_TRUE (reply["ok"].isBool()) << "request " << i;
    }

    EXPECT_TRUE (stillAnswers (scene));
}

TEST (HubAiBrokerService, SurvivesHostileFramesOnThePipe)
{
    Scene scene;
    scene.start();
    const auto found = scene.client.discover();
    ASSERT_TRUE (found.has_value());
    std::mt19937 random (7);
    const auto below = [&random] (size_t limit) { return std::uniform_int_distribution<size_t> (0, limit - 1) (random); };

    // Whole frames of any content: each gets a reply. Frames that lie about their size are slow, since each costs a time-out.
    for (int i = 0; i < 60; ++i)
    {
        juce::MemoryBlock payload (1 + below (2000));

        for (size_t k = 0; k < payload.getSize(); ++k)
            payload[k] = (char) below (256);

        const auto reply = scene.client.exchange (BrokerClient::frame (payload));
        ASSERT_EQ (reply.outcome, Outcome::answered) << "frame " << i;
        EXPECT_EQ (juce::JSON::parse (reply.payload.toString())["error"].toString(), "invalid_json");
    }

    EXPECT_TRUE (stillAnswers (scene));
}
