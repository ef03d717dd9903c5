#include "ai/HubOpenAiClient.h"
#include "support/FakeCredentialStore.h"
#include "support/GuiHarness.h"
#include "support/TrustedTestServer.h"

#include <gtest/gtest.h>
#include <thread>

namespace
{
using namespace zorva::test;

constexpr int longMs = 3000;    // far below the time that connecting may take, far above what a cancel needs

/** A client whose server takes connections and never says a word. */
struct StalledHandshake
{
    bool hasBegun()    { return pumpUntil ([this] { return server.silentConnections() > 0; }); }

    TrustedTestServer server;
    FakeCredentialStore store { "sk-stalled" };
    std::unique_ptr<HubOpenAiClient> client = std::make_unique<HubOpenAiClient> (store, HubOpenAiClient::Options { server.silentUrl ("/v1/responses") });
};

/** Lets the handshake come to where nothing but its end or its time would end the wait. */
void letItWait()
{
    pump (500);
}
}

TEST (HubOpenAiClientInAStalledHandshake, EndsARequestSoonAfterACancel)
{
    StalledHandshake stalled;
    std::atomic<bool> hasEnded { false };
    HubOpenAiClient::Result result;
    std::thread worker ([&] { result = stalled.client->complete ("Hello", 100); hasEnded = true; });
    const bool hasBegun = stalled.hasBegun();
    letItWait();
    EXPECT_FALSE (hasEnded);

    const auto begin = juce::Time::getMillisecondCounter();
    EXPECT_TRUE (pumpUntil ([&] { stalled.client->cancelActiveRequest(); return hasEnded.load(); }, longMs));
    EXPECT_LT (juce::Time::getMillisecondCounter() - begin, (juce::uint32) longMs);
    worker.join();
    EXPECT_TRUE (hasBegun);
    EXPECT_EQ (result.error, HubOpenAiClient::ErrorKind::network);
}

TEST (HubOpenAiClientInAStalledHandshake, GivesUpAKeyTestForTheNextWithoutHoldingTheMessageThread)
{
    StalledHandshake stalled;
    juce::StringArray ended;
    stalled.client->testStoredKey ([&] (HubOpenAiClient::Result r) { ended.add ("first " + HubOpenAiClient::errorKindName (r.error)); });
    ASSERT_TRUE (stalled.hasBegun());
    letItWait();

    const auto begin = juce::Time::getMillisecondCounter();
    juce::String key ("not a key");
    stalled.client->testKey (key, [&] (HubOpenAiClient::Result r) { ended.add ("second " + HubOpenAiClient::errorKindName (r.error)); });
    EXPECT_LT (juce::Time::getMillisecondCounter() - begin, (juce::uint32) longMs);

    EXPECT_TRUE (pumpUntil ([&] { return ended.size() == 2; }));
    EXPECT_EQ (ended.joinIntoString (", "), "first network, second invalid_key");
}

TEST (HubOpenAiClientInAStalledHandshake, IsGoneSoonAndCallsNobodyBack)
{
    StalledHandshake stalled;
    bool hasCalled = false;
    stalled.client->testStoredKey ([&] (HubOpenAiClient::Result) { hasCalled = true; });
    ASSERT_TRUE (stalled.hasBegun());
    letItWait();

    const auto begin = juce::Time::getMillisecondCounter();
    stalled.client.reset();
    EXPECT_LT (juce::Time::getMillisecondCounter() - begin, (juce::uint32) longMs);
    pump (50);
    EXPECT_FALSE (hasCalled);
}
