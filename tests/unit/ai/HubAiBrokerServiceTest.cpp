#include "BrokerScene.h"
#include "support/Drafts.h"
#include "support/GuiHarness.h"
#include "support/TrustedTestServer.h"

#include <thread>

namespace
{
using namespace zorva::test;
using Scene = BrokerScene;
using Answer = TrustedTestServer::Answer;
using Outcome = BrokerClient::Outcome;

const juce::String path ("/v1/responses");

/** Calls handleRequest() as the broker's thread would, with the token that this broker has published. */
juce::var handle (Scene& scene, const juce::String& op, const juce::String& id, const juce::String& input = {})
{
    const auto found = scene.client.discover();
    const auto text = juce::JSON::toString (BrokerClient::makeRequest (found.has_value() ? found->token : juce::String(), op, id, input));
    return juce::JSON::parse (scene.broker->handleRequest ({ text.toRawUTF8(), text.getNumBytesAsUTF8() }).toString());
}
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
    auto page = Answer::text (R"({"output_text":"Hi"})");
    server.serve (path, page);
    Scene scene (server.url (path));
    scene.store.hold ("sk-test");
    scene.start();

    auto reply = scene.ask ("openai.complete", "Hello");
    EXPECT_EQ (keysOf (reply["payload"]), "text upstreamRequestId");
    EXPECT_EQ (reply["payload"]["text"].toString(), "Hi");
    EXPECT_EQ (reply["payload"]["upstreamRequestId"].toString(), "") << "the key is there even without a header";
    EXPECT_EQ ((int) juce::JSON::parse (server.requests()[0].body.toString())["max_output_tokens"], 2048);

    page.headerLines = { "x-request-id: req_9" };
    server.serve (path, page);
    reply = scene.ask ("openai.complete", "Hello");
    EXPECT_EQ (reply["payload"]["upstreamRequestId"].toString(), "req_9");

    server.serve (path, Answer::text ("{}", 429));
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

TEST (HubAiBrokerService, ACompletionIsLoggedByIdAndStatusAlone)
{
    TrustedTestServer server;
    Scene scene (server.url (path));
    scene.store.hold ("sk-secret");
    scene.start();

    std::thread ([&]
    {
        server.serve (path, Answer::text (R"({"output_text":"a secret reply"})"));
        handle (scene, "openai.complete", "c-1", "a secret prompt");
        server.serve (path, Answer::text ("{}", 503));
        handle (scene, "openai.complete", "c-2", "a secret prompt");
    }).join();

    EXPECT_EQ (scene.log.lines().joinIntoString ("\n"), "[HUB.AI] request id=c-1 status=complete_ok\n"
                                                        "[HUB.AI] request id=c-2 status=service_unavailable");
}

TEST (HubAiBrokerService, ADraftIsSavedOnceAndAReplayIsRecognised)
{
    Scene scene;
    scene.start();
    const auto render = writeRender();
    const auto job = juce::String::repeatedString ("0a", 16);

    const auto payloadOf = [&] (bool isReplay)
    {
        return "{\"accepted\": true, \"jobId\": \"" + job + "\", \"status\": \"draft-local\", \"idempotentReplay\": " + (isReplay ? "true" : "false")
             + ", \"serviceAvailable\": false, \"requiresFreshHubConfirmation\": true}";
    };

    EXPECT_EQ (juce::JSON::toString (handle (scene, "creator.preview.draft.save", "d-1", draftOf (render, job))["payload"], true), payloadOf (false));
    EXPECT_EQ (juce::JSON::toString (handle (scene, "creator.preview.draft.save", "d-2", draftOf (render, job))["payload"], true), payloadOf (true));
    EXPECT_EQ (scene.drafts.count(), 1);

    const auto other = handle (scene, "creator.preview.draft.save", "d-3", draftOf (render, job, "Another"));
    EXPECT_EQ (other["error"].toString(), "job_id_conflict");
    EXPECT_EQ (scene.log.lines().joinIntoString ("\n"), "[HUB.CREATOR] request id=d-1 status=draft_saved\n"
                                                        "[HUB.CREATOR] request id=d-2 status=draft_saved\n"
                                                        "[HUB.CREATOR] request id=d-3 status=draft_rejected reason=job_id_conflict");
}

TEST (HubAiBrokerService, AKeyTestCancelsARunningCompletionWhoseClientGetsTheError)
{
    TrustedTestServer server;
    server.serve (path, Answer::text ("{}").silenced());
    Scene scene (server.url (path));
    scene.store.hold ("sk-test");
    scene.start();

    juce::var reply;
    std::atomic<bool> replied { false };
    std::thread asking ([&] { reply = BrokerClient().ask ("openai.complete", "Hello").value_or (juce::var()); replied = true; });
    EXPECT_TRUE (pumpUntil ([&] { return server.requestCount (path) == 1; }, 20000));

    juce::String candidate ("not a key");
    std::optional<HubOpenAiClient::Result> tested;
    scene.openAi.testKey (candidate, [&] (const HubOpenAiClient::Result& result) { tested = result; });
    EXPECT_TRUE (pumpUntil ([&] { return replied && tested.has_value(); }, 20000));
    asking.join();

    EXPECT_FALSE ((bool) reply["ok"]);
    EXPECT_EQ (reply["error"].toString(), "network");
    EXPECT_EQ (reply["message"].toString(), "ZORVA Hub could not reach OpenAI. Check your connection.");
    EXPECT_EQ ((int) reply["httpStatus"], 0);
    EXPECT_TRUE (scene.stillAnswers());
    server.release (path);
}

//==============================================================================
TEST (HubAiBrokerService, ABadHeaderOrAShortFrameGetsNoReplyAndTheNextRequestIsServed)
{
    Scene scene;
    scene.start();
    const BrokerClient impatient (8000, 1500);
    EXPECT_EQ (impatient.exchange (juce::MemoryBlock ("\0\0\0\0", 4)).outcome, Outcome::noReply);
    EXPECT_TRUE (scene.stillAnswers());
    EXPECT_EQ (impatient.exchange (juce::MemoryBlock ("\xff\xff\xff\xff", 4)).outcome, Outcome::noReply);
    EXPECT_TRUE (scene.stillAnswers());

    // A frame that is cut short holds the broker for its 5 s, and what comes next on the same pipe would be taken for the rest.
    EXPECT_EQ (BrokerClient (8000, 6000).exchange (juce::MemoryBlock ("\0\0\0\x10" "abc", 7)).outcome, Outcome::noReply);
    EXPECT_TRUE (scene.stillAnswers());
}

TEST (HubAiBrokerService, AClientThatSaysNothingOrHalfAHeaderIsDroppedAndTheBrokerListensAgain)
{
    Scene scene;
    scene.start();

    for (const auto& bytes : { juce::MemoryBlock(), juce::MemoryBlock ("\0\0", 2) })
    {
        const BrokerClient patient (8000, 30000);
        const auto begin = juce::Time::getMillisecondCounter();

        EXPECT_EQ (patient.exchange (bytes).outcome, Outcome::noReply) << bytes.getSize();
        EXPECT_LT (juce::Time::getMillisecondCounter() - begin, 20000u) << "the broker has ended it, and not the client";
        EXPECT_TRUE (scene.stillAnswers()) << bytes.getSize();
    }
}

TEST (HubAiBrokerService, AReplyTooLargeToFrameIsNotSent)
{
    // Within its own limit as the service sends it, and six times that size once each letter is escaped.
    const auto text = juce::String::repeatedString ("\1", 150000);
    TrustedTestServer server;
    server.serve (path, Answer::text ("{\"output_text\":\"" + text + "\"}"));
    Scene scene (server.url (path));
    scene.store.hold ("sk-test");
    scene.start();
    const auto hub = scene.client.discover();
    ASSERT_TRUE (hub.has_value());

    const auto request = BrokerClient::makeRequest (hub->token, "openai.complete", "large", "Hello");
    EXPECT_EQ (scene.client.exchange (BrokerClient::frame (request)).outcome, Outcome::noReply);
    EXPECT_EQ (scene.log.lines().joinIntoString ("\n"), "[HUB.AI] request id=large status=complete_ok");
    EXPECT_TRUE (scene.stillAnswers());
}
