#include "CompletionScene.h"
#include "support/Text.h"

namespace
{
using namespace zorva::test;
using Kind = HubOpenAiClient::ErrorKind;
using Result = HubOpenAiClient::Result;
using Answer = TrustedTestServer::Answer;
using Scene = CompletionScene;
}

//==============================================================================
TEST (HubOpenAiClient, ACompletionBringsTheTextAndTheRequestId)
{
    Scene scene;
    scene.answer (Scene::good, 200, { "x-request-id:  req_42 " });
    const auto result = scene.complete();
    EXPECT_TRUE (result.ok);
    EXPECT_EQ (result.text, "Hi there");
    EXPECT_EQ (result.upstreamRequestId, "req_42");
    EXPECT_EQ (result.message, "");
    EXPECT_EQ (result.error, Kind::none);
    EXPECT_EQ (result.httpStatus, 200);
}

TEST (HubOpenAiClient, TheRequestIsAPostWithTheKeyAndTheBody)
{
    Scene scene;
    scene.answer (Scene::good);
    scene.complete (utf8 ("Grüße"), 7);

    const auto requests = scene.server.requests();
    ASSERT_EQ (requests.size(), 1u);
    EXPECT_EQ (requests[0].method, "POST");
    EXPECT_EQ (requests[0].path, Scene::path);
    const auto lines = juce::StringArray::fromLines (requests[0].headers);
    EXPECT_TRUE (lines.contains ("Content-Type: application/json")) << requests[0].headers;
    EXPECT_TRUE (lines.contains ("Authorization: Bearer sk-test-key")) << requests[0].headers;

    EXPECT_EQ (requests[0].headers.indexOf ("sk-test-key"), requests[0].headers.lastIndexOf ("sk-test-key")) << "once";
    EXPECT_EQ (requests[0].body.toString(), utf8 ("{\r\n  \"model\": \"gpt-5.6-terra\",\r\n  \"input\": \"Grüße\",\r\n  \"store\": false,\r\n"
                                                  "  \"max_output_tokens\": 7\r\n}"));
}

TEST (HubOpenAiClient, TokensOutsideTheLimitsGoOutClamped)
{
    Scene scene;
    scene.answer (Scene::good);
    scene.complete ("x", 0);
    scene.complete ("x", 5000);
    const auto requests = scene.server.requests();
    ASSERT_EQ (requests.size(), 2u);
    EXPECT_EQ ((int) juce::JSON::parse (requests[0].body.toString())["max_output_tokens"], 1);
    EXPECT_EQ ((int) juce::JSON::parse (requests[1].body.toString())["max_output_tokens"], 4096);
}

TEST (HubOpenAiClient, TheMessageThreadIsRefusedWithoutTouchingTheStore)
{
    Scene scene;
    expectFailure (scene.client.complete ("Hello", 1), Kind::internal, "The AI request must run on a Hub worker thread.");
    EXPECT_TRUE (scene.store.calls().isEmpty());
    EXPECT_EQ (scene.requestCount(), 0);
}

TEST (HubOpenAiClient, AnInputOfMoreThan262144BytesOrNoneIsRefusedWithoutARequest)
{
    Scene scene;
    scene.answer (Scene::good);
    const juce::String message ("The AI request is empty or exceeds the 256 KB limit.");
    expectFailure (scene.complete (juce::String::repeatedString ("x", 262145)), Kind::badRequest, message);
    expectFailure (scene.complete (juce::String::repeatedString (utf8 ("é"), 131072) + "x"), Kind::badRequest, message);
    expectFailure (scene.complete (juce::String()), Kind::badRequest, message);
    EXPECT_EQ (scene.requestCount(), 0);
    EXPECT_TRUE (scene.store.calls().isEmpty());

    EXPECT_TRUE (scene.complete (juce::String::repeatedString ("x", 262144)).ok);
    EXPECT_EQ (scene.requestCount(), 1);
}

TEST (HubOpenAiClient, WithoutAKeyNothingGoesOut)
{
    Scene scene;
    scene.answer (Scene::good);
    juce::String error;
    scene.store.deleteKey (error);
    expectFailure (scene.complete(), Kind::missingKey, "No OpenAI API key is stored in ZORVA Hub.");

    scene.store.hold ("sk-test-key");
    scene.store.failReading ("Secret Service operation failed (error 13).");
    expectFailure (scene.complete(), Kind::missingKey, "No OpenAI API key is stored in ZORVA Hub.");
    EXPECT_EQ (scene.requestCount(), 0);
}

TEST (HubOpenAiClient, AStoredKeyThatBreaksTheRuleIsInvalidAndNoRequestGoesOut)
{
    Scene scene;
    scene.answer (Scene::good);

    for (const auto& key : { juce::String ("sk with blank"), juce::String ("sk+"), utf8 ("sk-é"), juce::String ("sk\r\nX: y"),
                             juce::String::repeatedString ("x", 2049) })
    {
        scene.store.hold (key);
        expectFailure (scene.complete(), Kind::invalidKey, "The stored API key is invalid.");
    }

    scene.store.hold (juce::MemoryBlock());
    expectFailure (scene.complete(), Kind::invalidKey, "The stored API key is invalid.");
    EXPECT_EQ (scene.requestCount(), 0);

    scene.store.hold (juce::String::repeatedString ("x", 2048));
    EXPECT_TRUE (scene.complete().ok);
}

TEST (HubOpenAiClient, TheMessageThreadIsRefusedBeforeTheInputIsLookedAt)
{
    Scene scene;
    expectFailure (scene.client.complete ({}, 1), Kind::internal, "The AI request must run on a Hub worker thread.");
}

TEST (HubOpenAiClient, TheDefaultsAreTheHubsOwn)
{
    const HubOpenAiClient::Options options;
    EXPECT_EQ (options.endpoint, "https://api.openai.com/v1/responses");
    EXPECT_EQ (options.deadlineMs, 30000);
    EXPECT_EQ (options.connectionTimeoutMs, 12000);
    EXPECT_EQ (juce::String (HubOpenAiClient::modelName), "gpt-5.6-terra");

    const HubOpenAiClient::Result nothing;
    expectFailure (nothing, Kind::none, {});
    EXPECT_EQ (nothing.upstreamRequestId, "");
}

TEST (HubOpenAiClient, TheRulesForInputAndKeyComeInTheirOrder)
{
    Scene scene;
    scene.store.hold ("not a key");
    scene.store.failReading ("Locked.");
    expectFailure (scene.complete ({}), Kind::badRequest, "The AI request is empty or exceeds the 256 KB limit.");
    expectFailure (scene.complete(), Kind::missingKey, "No OpenAI API key is stored in ZORVA Hub.");
}

TEST (HubOpenAiClient, TheKeyIsReadAnewForEachRequest)
{
    Scene scene;
    scene.answer (Scene::good);
    scene.complete();
    scene.store.hold ("sk-another-key");
    scene.complete();

    const auto requests = scene.server.requests();
    ASSERT_EQ (requests.size(), 2u);
    EXPECT_TRUE (requests[1].headers.contains ("Authorization: Bearer sk-another-key\n"));
    EXPECT_EQ (scene.store.calls().joinIntoString (" "), "readKey readKey");
}

//==============================================================================
TEST (HubOpenAiClient, ACancelEndsTheRequestAndTheNextOneWorks)
{
    Scene scene;
    scene.serve (Answer::text (Scene::good).silenced());
    Result result;
    std::atomic<bool> done { false };
    std::thread worker ([&] { result = scene.client.complete ("Hello", 1); done = true; });
    EXPECT_TRUE (pumpUntil ([&] { return scene.requestCount() == 1; }, 20000));
    scene.client.cancelActiveRequest();
    EXPECT_TRUE (pumpUntil ([&] { return done.load(); }, 20000));
    worker.join();
    EXPECT_FALSE (result.ok);
    EXPECT_EQ (result.error, Kind::network);

    scene.server.release (Scene::path);
    scene.answer (Scene::good);
    EXPECT_TRUE (scene.complete().ok);
}

TEST (HubOpenAiClient, RequestsAreServedOneAtATime)
{
    Scene scene;
    scene.serve (Answer::text (Scene::good).silenced());
    std::atomic<int> done { 0 };
    std::thread first ([&] { scene.client.complete ("one", 1); ++done; }), second ([&] { scene.client.complete ("two", 1); ++done; });
    EXPECT_TRUE (pumpUntil ([&] { return scene.requestCount() == 1; }, 20000));
    pump (300);
    EXPECT_EQ (scene.requestCount(), 1) << "the second waits";
    scene.server.release (Scene::path);
    EXPECT_TRUE (pumpUntil ([&] { return done == 2; }, 20000));
    first.join();
    second.join();
    EXPECT_EQ (scene.requestCount(), 2);
}

TEST (HubOpenAiClient, ACancelWithNothingRunningIsForgotten)
{
    Scene scene;
    scene.answer (Scene::good);
    scene.client.cancelActiveRequest();
    EXPECT_TRUE (scene.complete().ok);
}
