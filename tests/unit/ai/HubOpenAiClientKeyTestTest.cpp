#include "ai/HubOpenAiClient.h"
#include "support/FakeCredentialStore.h"
#include "support/GuiHarness.h"
#include "support/ThreadRefusal.h"
#include "support/TrustedTestServer.h"

#include <gtest/gtest.h>
#include <thread>

namespace
{
using namespace zorva::test;
using Kind = HubOpenAiClient::ErrorKind;
using Answer = TrustedTestServer::Answer;

const juce::String path ("/v1/responses"), good (R"({"output_text":"OK"})");

struct Scene
{
    Scene() { client = std::make_unique<HubOpenAiClient> (store, HubOpenAiClient::Options { .endpoint = server.url (path) }); }

    HubOpenAiClient::Callback note()
    {
        return [this] (const HubOpenAiClient::Result& result)
        {
            onMessageThread = juce::MessageManager::existsAndIsCurrentThread();
            results.push_back (result);
        };
    }

    bool waitForResults (size_t count) { return pumpUntil ([&] { return results.size() >= count; }, 30000); }

    TrustedTestServer server;
    FakeCredentialStore store { "sk-stored" };
    std::unique_ptr<HubOpenAiClient> client;
    std::vector<HubOpenAiClient::Result> results;
    bool onMessageThread = false;
};
}

TEST (HubOpenAiClientKeyTest, TheStoredKeyIsTriedAndTheResultComesOnTheMessageThread)
{
    Scene scene;
    scene.server.serve (path, Answer::text (good));
    scene.client->testStoredKey (scene.note());
    EXPECT_TRUE (scene.results.empty()) << "returns at once";
    ASSERT_TRUE (scene.waitForResults (1));
    EXPECT_TRUE (scene.onMessageThread);
    EXPECT_TRUE (scene.results[0].ok);

    const auto requests = scene.server.requests();
    ASSERT_EQ (requests.size(), 1u);
    EXPECT_TRUE (requests[0].headers.contains ("Authorization: Bearer sk-stored\n"));
    const auto body = juce::JSON::parse (requests[0].body.toString());
    EXPECT_EQ (body["input"].toString(), "Reply with OK.");
    EXPECT_EQ ((int) body["max_output_tokens"], 128);
}

TEST (HubOpenAiClientKeyTest, ACandidateIsTriedInPlaceOfTheStoredKeyAndTheCallersTextIsEmptied)
{
    Scene scene;
    scene.server.serve (path, Answer::text (good));
    juce::String candidate ("sk-candidate");
    scene.client->testKey (candidate, scene.note());
    EXPECT_EQ (candidate, "");
    ASSERT_TRUE (scene.waitForResults (1));
    EXPECT_TRUE (scene.results[0].ok);
    EXPECT_TRUE (scene.server.requests()[0].headers.contains ("Authorization: Bearer sk-candidate\n"));
    EXPECT_TRUE (scene.store.calls().isEmpty()) << "neither read nor stored";
}

TEST (HubOpenAiClientKeyTest, ACandidateThatBreaksTheRuleIsInvalid)
{
    Scene scene;
    juce::String candidate ("sk candidate");
    scene.client->testKey (candidate, scene.note());
    ASSERT_TRUE (scene.waitForResults (1));
    EXPECT_EQ (scene.results[0].error, Kind::invalidKey);
    EXPECT_EQ (scene.results[0].message, "The stored API key is invalid.");
    EXPECT_EQ (scene.server.requestCount (path), 0);
}

TEST (HubOpenAiClientKeyTest, ACandidateOfNoBytesOrTooManyIsInvalid)
{
    Scene scene;
    scene.server.serve (path, Answer::text (good));
    size_t tests = 0;

    for (const int size : { 0, 2049, 2048 })
    {
        juce::String candidate (juce::String::repeatedString ("k", size));
        scene.client->testKey (candidate, scene.note());
        EXPECT_EQ (candidate, "");
        ASSERT_TRUE (scene.waitForResults (++tests));
        EXPECT_EQ (scene.results.back().error, size == 2048 ? Kind::none : Kind::invalidKey) << size;
    }

    EXPECT_TRUE (scene.store.calls().isEmpty()) << "the stored key never takes a candidate's place";
}

TEST (HubOpenAiClientKeyTest, ATestWithoutAStoredKeySaysSo)
{
    Scene scene;
    juce::String error;
    scene.store.deleteKey (error);
    scene.client->testStoredKey (scene.note());
    ASSERT_TRUE (scene.waitForResults (1));
    EXPECT_EQ (scene.results[0].error, Kind::missingKey);
}

TEST (HubOpenAiClientKeyTest, ATestCancelsARunningCompletion)
{
    Scene scene;
    scene.server.serve (path, Answer::text (good).silenced());
    HubOpenAiClient::Result completion;
    std::atomic<bool> done { false };
    std::thread worker ([&] { completion = scene.client->complete ("Hello", 1); done = true; });
    EXPECT_TRUE (pumpUntil ([&] { return scene.server.requestCount (path) == 1; }, 20000));

    scene.client->testStoredKey (scene.note());
    EXPECT_TRUE (pumpUntil ([&] { return done.load(); }, 20000));
    worker.join();
    EXPECT_EQ (completion.error, Kind::network);

    scene.server.release (path);
    ASSERT_TRUE (scene.waitForResults (1));
    EXPECT_TRUE (scene.results[0].ok);
}

TEST (HubOpenAiClientKeyTest, ASecondTestReplacesTheFirst)
{
    Scene scene;
    scene.server.serve (path, Answer::text (good).silenced());
    scene.client->testStoredKey (scene.note());
    EXPECT_TRUE (pumpUntil ([&] { return scene.server.requestCount (path) == 1; }, 20000));

    scene.client->testStoredKey (scene.note());
    scene.server.release (path);
    ASSERT_TRUE (scene.waitForResults (2));
    EXPECT_FALSE (scene.results[0].ok);
    EXPECT_TRUE (scene.results[1].ok);
}

TEST (HubOpenAiClientKeyTest, NoCallbackComesAfterTheClientHasGone)
{
    Scene scene;
    scene.server.serve (path, Answer::text (good).silenced());
    scene.client->testStoredKey (scene.note());
    EXPECT_TRUE (pumpUntil ([&] { return scene.server.requestCount (path) == 1; }, 20000));

    const auto begin = juce::Time::getMillisecondCounter();
    scene.client.reset();
    EXPECT_LT (juce::Time::getMillisecondCounter() - begin, 5000u) << "the running test is cancelled, not waited for";
    scene.server.release (path);
    pump (300);
    EXPECT_TRUE (scene.results.empty());
}

TEST (HubOpenAiClientKeyTest, AResultThatIsOnItsWayWhenTheClientGoesIsDropped)
{
    Scene scene;
    juce::String error;
    scene.store.deleteKey (error);
    scene.client->testStoredKey (scene.note());

    // No message is dispatched meanwhile, so the result can only wait.
    for (int waited = 0; scene.store.callCount ("readKey") == 0 && waited < 10000; ++waited)
        juce::Thread::sleep (1);

    EXPECT_EQ (scene.store.callCount ("readKey"), 1);
    scene.client.reset();    // waits for the thread, and so for the result to be posted
    pump (100);
    EXPECT_TRUE (scene.results.empty());
}

TEST (HubOpenAiClientKeyTest, ATestThatCannotHaveAThreadFails)
{
    Scene scene;
    refuseNewThreads();
    juce::String candidate ("sk-candidate");
    scene.client->testKey (candidate, scene.note());
    EXPECT_EQ (candidate, "");
    EXPECT_TRUE (scene.results.empty()) << "the callback comes as a message";
    ASSERT_TRUE (scene.waitForResults (1));
    EXPECT_EQ (scene.results[0].error, Kind::internal);
    EXPECT_EQ (scene.results[0].message, "The OpenAI request failed.");
    EXPECT_EQ (scene.server.requestCount (path), 0);
}

TEST (HubOpenAiClientKeyTest, AnEmptyCallbackIsHarmless)
{
    Scene scene;
    scene.server.serve (path, Answer::text (good));
    scene.client->testStoredKey ({});
    EXPECT_TRUE (pumpUntil ([&] { return scene.server.requestCount (path) == 1; }, 20000));
    pump (200);
}
