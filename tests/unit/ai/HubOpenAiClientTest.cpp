#include "ai/HubOpenAiClient.h"
#include "support/FakeCredentialStore.h"
#include "support/GuiHarness.h"
#include "support/Text.h"
#include "support/TrustedTestServer.h"

#include <gtest/gtest.h>
#include <thread>

namespace
{
using namespace zorva::test;
using Kind = HubOpenAiClient::ErrorKind;
using Result = HubOpenAiClient::Result;
using Answer = TrustedTestServer::Answer;

const juce::String path ("/v1/responses");

/** A client of a real server, asked on worker threads as the Hub does. */
struct Scene
{
    explicit Scene (int deadlineMs = 30000) : client (store, { .endpoint = server.url (path), .deadlineMs = deadlineMs }) {}

    Result complete (const juce::String& input = "Hello", int tokens = 100)
    {
        Result result;
        std::atomic<bool> done { false };
        std::thread worker ([&] { result = client.complete (input, tokens); done = true; });
        EXPECT_TRUE (pumpUntil ([&] { return done.load(); }, 60000));
        worker.join();
        return result;
    }

    void answer (const juce::String& body, int status = 200, const juce::StringArray& headerLines = {})
    {
        auto page = Answer::text (body, status);
        page.headerLines = headerLines;
        server.serve (path, page);
    }

    TrustedTestServer server;
    FakeCredentialStore store { "sk-test-key" };
    HubOpenAiClient client;
};

const juce::String good (R"({"output_text":"Hi there"})");

void expectFailure (const Result& result, Kind kind, const juce::String& message, int status = 0)
{
    EXPECT_FALSE (result.ok);
    EXPECT_EQ (result.text, "");
    EXPECT_EQ (result.error, kind) << HubOpenAiClient::errorKindName (result.error);
    EXPECT_EQ (result.message, message);
    EXPECT_EQ (result.httpStatus, status);
}
}

//==============================================================================
TEST (HubOpenAiClient, ACompletionBringsTheTextAndTheRequestId)
{
    Scene scene;
    scene.answer (good, 200, { "x-request-id:  req_42 " });
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
    scene.answer (good);
    scene.complete (utf8 ("Grüße"), 7);

    const auto requests = scene.server.requests();
    ASSERT_EQ (requests.size(), 1u);
    EXPECT_EQ (requests[0].method, "POST");
    EXPECT_EQ (requests[0].path, path);
    const auto lines = juce::StringArray::fromLines (requests[0].headers);
    EXPECT_TRUE (lines.contains ("Content-Type: application/json")) << requests[0].headers;
    EXPECT_TRUE (lines.contains ("Authorization: Bearer sk-test-key")) << requests[0].headers;

    const auto body = juce::JSON::parse (requests[0].body.toString());
    EXPECT_EQ (body["model"].toString(), "gpt-5.6-terra");
    EXPECT_EQ (body["input"].toString(), utf8 ("Grüße"));
    EXPECT_FALSE ((bool) body["store"]);
    EXPECT_EQ ((int) body["max_output_tokens"], 7);
}

TEST (HubOpenAiClient, TokensOutsideTheLimitsGoOutClamped)
{
    Scene scene;
    scene.answer (good);
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
    EXPECT_EQ (scene.server.requestCount (path), 0);
}

TEST (HubOpenAiClient, AnInputOfMoreThan262144BytesOrNoneIsRefusedWithoutARequest)
{
    Scene scene;
    scene.answer (good);
    const juce::String message ("The AI request is empty or exceeds the 256 KB limit.");
    expectFailure (scene.complete (juce::String::repeatedString ("x", 262145)), Kind::badRequest, message);
    expectFailure (scene.complete (juce::String::repeatedString (utf8 ("é"), 131072) + "x"), Kind::badRequest, message);
    expectFailure (scene.complete (juce::String()), Kind::badRequest, message);
    EXPECT_EQ (scene.server.requestCount (path), 0);
    EXPECT_TRUE (scene.store.calls().isEmpty());

    EXPECT_TRUE (scene.complete (juce::String::repeatedString ("x", 262144)).ok);
    EXPECT_EQ (scene.server.requestCount (path), 1);
}

TEST (HubOpenAiClient, WithoutAKeyNothingGoesOut)
{
    Scene scene;
    scene.answer (good);
    juce::String error;
    scene.store.deleteKey (error);
    expectFailure (scene.complete(), Kind::missingKey, "No OpenAI API key is stored in ZORVA Hub.");

    scene.store.hold ("sk-test-key");
    scene.store.failReading ("Secret Service operation failed (error 13).");
    expectFailure (scene.complete(), Kind::missingKey, "No OpenAI API key is stored in ZORVA Hub.");
    EXPECT_EQ (scene.server.requestCount (path), 0);
}

TEST (HubOpenAiClient, AStoredKeyThatBreaksTheRuleIsInvalidAndNoRequestGoesOut)
{
    Scene scene;
    scene.answer (good);

    for (const auto& key : { juce::String ("sk with blank"), juce::String ("sk+"), utf8 ("sk-é"), juce::String ("sk\r\nX: y"),
                             juce::String::repeatedString ("x", 2049) })
    {
        scene.store.hold (key);
        expectFailure (scene.complete(), Kind::invalidKey, "The stored API key is invalid.");
    }

    scene.store.hold (juce::MemoryBlock());
    expectFailure (scene.complete(), Kind::invalidKey, "The stored API key is invalid.");
    EXPECT_EQ (scene.server.requestCount (path), 0);

    scene.store.hold (juce::String::repeatedString ("x", 2048));
    EXPECT_TRUE (scene.complete().ok);
}

//==============================================================================
TEST (HubOpenAiClient, TheFirstRequestIdHeaderInOrderCounts)
{
    const struct { juce::StringArray headers; const char* id; } cases[]
    {
        { { "openai-request-id: a", "x-request-id: b" }, "a" },
        { { "x-request-id: b", "openai-request-id: a" }, "b" },
        { { "X-REQUEST-ID: caps" }, "caps" },
        { { "OpenAI-Request-Id:  spaced  " }, "spaced" },
        { { "x-request-id:bare" }, "bare" },
        { { "request-id: no" }, "" },
        { {}, "" },
    };

    Scene scene;

    for (const auto& each : cases)
    {
        scene.answer (good, 200, each.headers);
        EXPECT_EQ (scene.complete().upstreamRequestId, each.id) << each.headers.joinIntoString (", ");
    }
}

TEST (HubOpenAiClient, StatusesAreMappedAndTheRequestIdIsKept)
{
    const std::pair<int, Kind> cases[] { { 403, Kind::invalidKey }, { 402, Kind::billing }, { 404, Kind::badRequest }, { 409, Kind::internal },
                                         { 429, Kind::rateLimited }, { 503, Kind::serviceUnavailable }, { 302, Kind::internal } };
    Scene scene;

    for (const auto& [status, kind] : cases)
    {
        scene.answer ("{}", status, { "x-request-id: req_" + juce::String (status) });
        const auto result = scene.complete();
        EXPECT_EQ (result.error, kind) << status;
        EXPECT_EQ (result.httpStatus, status);
        EXPECT_EQ (result.upstreamRequestId, "req_" + juce::String (status));
    }
}

TEST (HubOpenAiClient, ARedirectIsNotFollowed)
{
    Scene scene;
    scene.server.serve (path, Answer::redirect (scene.server.url ("/elsewhere")));
    scene.server.serve ("/elsewhere", Answer::text (good));
    expectFailure (scene.complete(), Kind::internal, "The OpenAI request failed.", 302);
    EXPECT_EQ (scene.server.requestCount ("/elsewhere"), 0);
}

TEST (HubOpenAiClient, ABodyWithoutUsableTextIsInvalidWithItsStatus)
{
    Scene scene;

    for (const auto* body : { "", "not JSON", "[]", "{}", R"({"output_text":""})" })
    {
        scene.answer (body, 200, { "x-request-id: req_7" });
        const auto result = scene.complete();
        expectFailure (result, Kind::invalidResponse, "OpenAI returned an empty or unsupported response.", 200);
        EXPECT_EQ (result.upstreamRequestId, "req_7");
    }
}

TEST (HubOpenAiClient, ABodyOf393216BytesPassesAndOneMoreIsTooLarge)
{
    Scene scene;
    const auto padded = [] (int size) { return good.paddedRight (' ', size); };

    for (const bool statesLength : { true, false })
    {
        auto page = Answer::text (padded (393216));
        if (! statesLength) page.statedLength = -1;
        scene.server.serve (path, page);
        EXPECT_TRUE (scene.complete().ok);

        page = Answer::text (padded (393217));
        if (! statesLength) page.statedLength = -1;
        page.headerLines = { "x-request-id: big" };
        scene.server.serve (path, page);
        const auto result = scene.complete();
        expectFailure (result, Kind::responseTooLarge, "The OpenAI response exceeded the 384 KB safety limit.", 200);
        EXPECT_EQ (result.upstreamRequestId, "big");
    }
}

TEST (HubOpenAiClient, AnOversizedFailureIsTooLargeWithItsOwnStatus)
{
    Scene scene;
    scene.answer (juce::String::repeatedString ("x", 393217), 500);
    expectFailure (scene.complete(), Kind::responseTooLarge, "The OpenAI response exceeded the 384 KB safety limit.", 500);
}

TEST (HubOpenAiClient, NobodyThereIsTheNetwork)
{
    FakeCredentialStore store ("sk-test-key");
    HubOpenAiClient client (store, { .endpoint = "https://127.0.0.1:1/v1/responses" });
    Result result;
    std::thread worker ([&] { result = client.complete ("Hello", 1); });
    worker.join();
    expectFailure (result, Kind::network, "ZORVA Hub could not reach OpenAI. Check your connection.");
}

TEST (HubOpenAiClient, AForeignCertificateIsTheNetwork)
{
    TrustedTestServer stranger (TrustedTestServer::Trust::stranger);
    stranger.serve (path, Answer::text (good));
    FakeCredentialStore store ("sk-test-key");
    HubOpenAiClient client (store, { .endpoint = stranger.url (path) });
    Result result;
    std::thread worker ([&] { result = client.complete ("Hello", 1); });
    worker.join();
    expectFailure (result, Kind::network, "ZORVA Hub could not reach OpenAI. Check your connection.");
    EXPECT_EQ (stranger.requestCount (path), 0) << "the key was not sent";
}

//==============================================================================
TEST (HubOpenAiClient, ADeadlineEndsASilentServer)
{
    Scene scene (700);
    scene.server.serve (path, Answer::text (good).silenced());
    expectFailure (scene.complete(), Kind::timeout, "The OpenAI request timed out. Try again.");
    scene.server.release (path);
}

TEST (HubOpenAiClient, ADeadlineThatFiresWhileAGoodBodyIsReadStillIsATimeout)
{
    Scene scene (1000);
    auto page = Answer::text (good.paddedRight (' ', 300000));
    page.pieceBytes = 1000;
    page.pauseMs = 20;
    page.headerLines = { "x-request-id: slow" };
    scene.server.serve (path, page);
    const auto result = scene.complete();
    expectFailure (result, Kind::timeout, "The OpenAI request timed out. Try again.");
    EXPECT_EQ (result.upstreamRequestId, "") << "everything else is empty";
}

TEST (HubOpenAiClient, ACancelEndsTheRequestAndTheNextOneWorks)
{
    Scene scene;
    scene.server.serve (path, Answer::text (good).silenced());
    Result result;
    std::atomic<bool> done { false };
    std::thread worker ([&] { result = scene.client.complete ("Hello", 1); done = true; });
    EXPECT_TRUE (pumpUntil ([&] { return scene.server.requestCount (path) == 1; }, 20000));
    scene.client.cancelActiveRequest();
    EXPECT_TRUE (pumpUntil ([&] { return done.load(); }, 20000));
    worker.join();
    EXPECT_FALSE (result.ok);
    EXPECT_EQ (result.error, Kind::network);

    scene.server.release (path);
    scene.answer (good);
    EXPECT_TRUE (scene.complete().ok);
}

TEST (HubOpenAiClient, RequestsAreServedOneAtATime)
{
    Scene scene;
    scene.server.serve (path, Answer::text (good).silenced());
    std::atomic<int> done { 0 };
    std::thread first ([&] { scene.client.complete ("one", 1); ++done; }), second ([&] { scene.client.complete ("two", 1); ++done; });
    EXPECT_TRUE (pumpUntil ([&] { return scene.server.requestCount (path) == 1; }, 20000));
    pump (300);
    EXPECT_EQ (scene.server.requestCount (path), 1) << "the second waits";
    scene.server.release (path);
    EXPECT_TRUE (pumpUntil ([&] { return done == 2; }, 20000));
    first.join();
    second.join();
    EXPECT_EQ (scene.server.requestCount (path), 2);
}
