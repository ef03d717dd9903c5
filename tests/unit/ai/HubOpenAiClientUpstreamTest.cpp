#include "CompletionScene.h"
#include "support/RawHttpServer.h"

namespace
{
using namespace zorva::test;
using Kind = HubOpenAiClient::ErrorKind;
using Answer = TrustedTestServer::Answer;
using Scene = CompletionScene;

constexpr const char* unreachableText = "ZORVA Hub could not reach OpenAI. Check your connection.";
constexpr const char* unsupportedText = "OpenAI returned an empty or unsupported response.";
constexpr const char* tooLargeText = "The OpenAI response exceeded the 384 KB safety limit.";

/** A page whose body goes out in chunks of so many bytes and states no length. */
Answer chunked (const juce::String& content, int chunkBytes)
{
    juce::MemoryOutputStream body;

    for (int at = 0; at < content.length(); at += chunkBytes)
    {
        const auto chunk = content.substring (at, at + chunkBytes);
        body << juce::String::toHexString (chunk.length()) << "\r\n" << chunk << "\r\n";
    }

    body << "0\r\n\r\n";

    Answer page;
    page.body = body.getMemoryBlock();
    page.statedLength = -1;
    page.headerLines = { "Transfer-Encoding: chunked" };
    return page;
}
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
        scene.answer (Scene::good, 200, each.headers);
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
    scene.serve (Answer::redirect (scene.server.url ("/elsewhere")));
    scene.server.serve ("/elsewhere", Answer::text (Scene::good));
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
        expectFailure (result, Kind::invalidResponse, unsupportedText, 200);
        EXPECT_EQ (result.upstreamRequestId, "req_7");
    }
}

TEST (HubOpenAiClient, ABodyOf393216BytesPassesAndOneMoreIsTooLarge)
{
    Scene scene;
    const auto padded = [] (int size) { return Scene::good.paddedRight (' ', size); };

    for (const bool statesLength : { true, false })
    {
        auto page = Answer::text (padded (393216));
        if (! statesLength) page.statedLength = -1;
        scene.serve (page);
        EXPECT_TRUE (scene.complete().ok);

        page = Answer::text (padded (393217));
        if (! statesLength) page.statedLength = -1;
        page.headerLines = { "x-request-id: big" };
        scene.serve (page);
        const auto result = scene.complete();
        expectFailure (result, Kind::responseTooLarge, tooLargeText, 200);
        EXPECT_EQ (result.upstreamRequestId, "big");
    }
}

TEST (HubOpenAiClient, AnOversizedFailureIsTooLargeWithItsOwnStatus)
{
    Scene scene;
    scene.answer (juce::String::repeatedString ("x", 393217), 500);
    expectFailure (scene.complete(), Kind::responseTooLarge, tooLargeText, 500);
}

TEST (HubOpenAiClient, NobodyThereIsTheNetwork)
{
    FakeCredentialStore store ("sk-test-key");
    HubOpenAiClient client (store, { .endpoint = "https://127.0.0.1:1/v1/responses" });
    expectFailure (completeOnWorker (client), Kind::network, unreachableText);
}

TEST (HubOpenAiClient, AForeignCertificateIsTheNetwork)
{
    TrustedTestServer stranger (TrustedTestServer::Trust::stranger);
    stranger.serve (Scene::path, Answer::text (Scene::good));
    FakeCredentialStore store ("sk-test-key");
    HubOpenAiClient client (store, { .endpoint = stranger.url (Scene::path) });
    expectFailure (completeOnWorker (client), Kind::network, unreachableText);
    EXPECT_EQ (stranger.requestCount (Scene::path), 0) << "the key was not sent";
}

TEST (HubOpenAiClient, ABodyInChunksHasTheSameLimit)
{
    Scene scene;
    scene.serve (chunked (Scene::good.paddedRight (' ', 393216), 5000));
    EXPECT_EQ (scene.complete().text, "Hi there");

    scene.serve (chunked (Scene::good.paddedRight (' ', 393217), 5000));
    expectFailure (scene.complete(), Kind::responseTooLarge, tooLargeText, 200);
}

TEST (HubOpenAiClient, AnyStatusOfSuccessWillDo)
{
    Scene scene;

    for (const int status : { 200, 201, 202, 299 })
    {
        scene.answer (Scene::good, status);
        const auto result = scene.complete();
        EXPECT_TRUE (result.ok) << status;
        EXPECT_EQ (result.httpStatus, status);
    }

    scene.answer (Scene::good, 300);
    expectFailure (scene.complete(), Kind::internal, "The OpenAI request failed.", 300);

    scene.answer ({}, 204);
    expectFailure (scene.complete(), Kind::invalidResponse, unsupportedText, 204);
}

TEST (HubOpenAiClient, TheBodyOfA429TellsBillingFromTooManyRequests)
{
    const struct { juce::String body; Kind kind; } cases[]
    {
        { R"({"error":{"code":"INSUFFICIENT_QUOTA"}})", Kind::billing },
        { "Check your plan and bIlling details.", Kind::billing },
        { "quotas", Kind::billing },
        { "insufficiently funded", Kind::billing },
        { R"({"error":{"code":"rate_limit_exceeded"}})", Kind::rateLimited },
        { "bill ing", Kind::rateLimited },
        { {}, Kind::rateLimited },
    };

    Scene scene;

    for (const auto& each : cases)
    {
        scene.answer (each.body, 429);
        EXPECT_EQ (scene.complete().error, each.kind) << each.body;
    }

    auto page = Answer::text ({}, 429);
    page.body = { "\xff\xfe Quota \xff", 9 };
    scene.serve (page);
    EXPECT_EQ (scene.complete().error, Kind::billing) << "in bytes that are no text";
}

TEST (HubOpenAiClient, AnAnswerCutShortIsWhatCameOfIt)
{
    Scene scene;
    scene.serve (Answer::text (Scene::good.paddedRight (' ', 5000)).truncatedTo (1000));
    EXPECT_EQ (scene.complete().text, "Hi there") << "all of the object came";

    scene.serve (Answer::text (Scene::good).truncatedTo (10));
    expectFailure (scene.complete(), Kind::invalidResponse, unsupportedText, 200);

    scene.serve (Answer::text ("{}", 503).truncatedTo (1));
    EXPECT_EQ (scene.complete().error, Kind::serviceUnavailable);
}

TEST (HubOpenAiClient, AStallInTheMidstOfTheBodyLeavesWhatCame)
{
    Scene scene (60000, 1000);
    scene.serve (Answer::text (Scene::good.paddedRight (' ', 1000)).heldAfter (500));    // all of the object comes
    const auto result = scene.complete();
    scene.server.release (Scene::path);
    EXPECT_EQ (result.text, "Hi there");
    EXPECT_EQ (result.httpStatus, 200);
}

TEST (HubOpenAiClient, AnAnswerInSmallPiecesIsPutTogether)
{
    Scene scene;
    auto page = Answer::text (Scene::good);
    page.pieceBytes = 1;
    page.pauseMs = 5;
    scene.serve (page);
    EXPECT_EQ (scene.complete().text, "Hi there");
}

//==============================================================================
TEST (HubOpenAiClient, AnAnswerThatIsNoHttpIsTheNetwork)
{
    const std::pair<const char*, std::vector<std::string>> cases[]
    {
        { "hangs up", {} },
        { "no status line", { "Hello\r\n\r\n" } },
        { "half a status line", { "HTTP/1.1 2" } },
        { "random bytes", { std::string ("\0\1\2\3\r\n\r\n\xff", 9) } },
    };

    for (const auto& [what, pieces] : cases)
    {
        SCOPED_TRACE (what);
        const RawHttpServer server (pieces);
        FakeCredentialStore store ("sk-test-key");
        HubOpenAiClient client (store, { .endpoint = server.url (Scene::path) });
        expectFailure (completeOnWorker (client), Kind::network, unreachableText);
        EXPECT_GE (server.requestCount(), 1);
    }
}

TEST (HubOpenAiClient, SlowHeadersAreWaitedForUpToTheDeadline)
{
    const RawHttpServer server ({ "HTTP/1.1 200", " OK\r\nX-Requ", "est-Id: slow\r\nContent-Le", "ngth: 26\r\n", "\r\n",
                                  Scene::good.toStdString() }, 100);
    ASSERT_EQ (Scene::good.length(), 26);
    FakeCredentialStore store ("sk-test-key");

    HubOpenAiClient patient (store, { .endpoint = server.url (Scene::path) });
    const auto result = completeOnWorker (patient);
    EXPECT_EQ (result.text, "Hi there");
    EXPECT_EQ (result.upstreamRequestId, "slow");

    HubOpenAiClient hurried (store, { .endpoint = server.url (Scene::path), .deadlineMs = 250 });
    expectFailure (completeOnWorker (hurried), Kind::timeout, "The OpenAI request timed out. Try again.");
}

TEST (HubOpenAiClient, ASilenceLongerThanTheConnectionTimeoutIsTheNetwork)
{
    Scene scene (60000, 1000);
    scene.serve (Answer::text (Scene::good).silenced());
    const auto result = scene.complete();
    scene.server.release (Scene::path);
    expectFailure (result, Kind::network, unreachableText);
}

//==============================================================================
TEST (HubOpenAiClient, ADeadlineEndsASilentServer)
{
    Scene scene (700);
    scene.serve (Answer::text (Scene::good).silenced());
    expectFailure (scene.complete(), Kind::timeout, "The OpenAI request timed out. Try again.");
    scene.server.release (Scene::path);
}

TEST (HubOpenAiClient, ADeadlineThatFiresWhileAGoodBodyIsReadStillIsATimeout)
{
    Scene scene (1000);
    auto page = Answer::text (Scene::good.paddedRight (' ', 300000));
    page.pieceBytes = 1000;
    page.pauseMs = 20;
    page.headerLines = { "x-request-id: slow" };
    scene.serve (page);
    const auto result = scene.complete();
    expectFailure (result, Kind::timeout, "The OpenAI request timed out. Try again.");
    EXPECT_EQ (result.upstreamRequestId, "") << "everything else is empty";
}

TEST (HubOpenAiClient, ADeadlineEndsASilenceAfterTheHeaders)
{
    Scene scene (700);
    scene.serve (Answer::text (Scene::good).heldAfter (0));
    const auto result = scene.complete();
    scene.server.release (Scene::path);
    expectFailure (result, Kind::timeout, "The OpenAI request timed out. Try again.");
}

TEST (HubOpenAiClient, ADeadlineThatFiresInTheMidstOfTheBodyDiscardsEvenAGoodResult)
{
    Scene scene (700);
    auto page = Answer::text (Scene::good.paddedRight (' ', 1000)).heldAfter (500);    // all of the object comes
    page.headerLines = { "x-request-id: held" };
    scene.serve (page);
    const auto result = scene.complete();
    scene.server.release (Scene::path);
    expectFailure (result, Kind::timeout, "The OpenAI request timed out. Try again.");
    EXPECT_EQ (result.upstreamRequestId, "");
}
