#include "BrokerScene.h"
#include "ai/BrokerProtocol.h"
#include "app/HubPaths.h"
#include "platform/ProcessId.h"
#include "support/Files.h"
#include "support/GuiHarness.h"
#include "support/RandomRefusal.h"
#include "support/ThreadRefusal.h"
#include "support/TrustedTestServer.h"

#include <regex>
#include <thread>

namespace
{
using namespace zorva::test;
using Scene = BrokerScene;

/** A start that fails with this text and leaves nothing. */
void expectNoStart (Scene& scene, const char* text)
{
    juce::String error;
    EXPECT_FALSE (scene.broker->start (error));
    EXPECT_EQ (error, text);
    EXPECT_FALSE (BrokerClient::discoveryFile().exists());

    const juce::String request (R"({"version":2,"token":"","op":"broker.health","requestId":"r"})");
    const auto reply = juce::JSON::parse (scene.broker->handleRequest ({ request.toRawUTF8(), request.getNumBytesAsUTF8() }).toString());
    EXPECT_EQ (reply["error"].toString(), "unauthorized") << "no token admits nobody";
}
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

TEST (HubAiBrokerService, TheDiscoveryFileIsWrittenWholeWithReturnsAndNoMark)
{
    Scene scene;
    scene.start();

    // It comes and goes with each cycle.
    std::string text;
    ASSERT_TRUE (pumpUntil ([&] { text = read (BrokerClient::discoveryFile()); return text.ends_with ("}"); }));
    const auto hub = juce::JSON::parse (juce::String (text));
    EXPECT_EQ (text, ("{\r\n  \"version\": 2,\r\n  \"transport\": \"length_prefixed_named_pipe\",\r\n  \"pipeName\": \"" + hub["pipeName"].toString()
                      + "\",\r\n  \"token\": \"" + hub["token"].toString() + "\",\r\n  \"pid\": " + juce::String (platform::currentProcessId())
                      + ",\r\n  \"startedAt\": \"" + hub["startedAt"].toString() + "\"\r\n}").toStdString());

    const std::regex isoTime (R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}(Z|[+-]\d\d:\d\d))");
    EXPECT_TRUE (std::regex_match (hub["startedAt"].toString().toStdString(), isoTime)) << hub["startedAt"].toString();
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

TEST (HubAiBrokerService, WithoutRandomBytesNothingIsStarted)
{
    Scene scene;
    HubPaths::ensureDirectories();
    refuseRandomBytes();
    expectNoStart (scene, "The operating system could not create secure broker randomness.");
}

TEST (HubAiBrokerService, WithoutAThreadNothingIsStarted)
{
    Scene scene;
    HubPaths::ensureDirectories();
    refuseNewThreads();
    expectNoStart (scene, "The operating system could not start the broker's thread.");
}

//==============================================================================
TEST (HubAiBrokerService, AStopLeavesNothingBehindEvenDuringARequest)
{
    TrustedTestServer server;
    server.serve ("/v1/responses", TrustedTestServer::Answer::text ("{}").silenced());
    Scene scene (server.url ("/v1/responses"));
    scene.store.hold ("sk-test");
    scene.start();
    const auto found = scene.client.discover();
    ASSERT_TRUE (found.has_value());

    std::optional<juce::var> reply;
    std::thread asking ([&reply] { reply = BrokerClient (8000, 20000).ask ("openai.complete", "Hello"); });
    EXPECT_TRUE (pumpUntil ([&] { return server.requestCount ("/v1/responses") == 1; }, 20000));
    const auto begin = juce::Time::getMillisecondCounter();
    scene.broker.reset();
    EXPECT_LT (juce::Time::getMillisecondCounter() - begin, 5000u) << "the request is cancelled, not waited for";
    EXPECT_FALSE (BrokerClient::discoveryFile().exists());
    EXPECT_FALSE (juce::File ("/tmp/" + found->pipeName + "_in").exists());
    EXPECT_FALSE (juce::File ("/tmp/" + found->pipeName + "_out").exists());
    asking.join();
    EXPECT_FALSE (reply.has_value()) << "dropped";
    EXPECT_FALSE (BrokerClient::discoveryFile().exists());
    server.release ("/v1/responses");
}

TEST (HubAiBrokerService, AStopAtAnyMomentAfterTheStartLeavesNothing)
{
    Scene scene;

    for (int i = 0; i < 40; ++i)
    {
        scene.start();

        // Every other one is stopped wherever it is, the rest once it listens.
        if (i % 2 == 0)
            EXPECT_TRUE (scene.client.discover().has_value());

        scene.broker.reset();
        EXPECT_FALSE (isThere (BrokerClient::discoveryFile())) << i;
        EXPECT_EQ (juce::File ("/tmp").findChildFiles (juce::File::findFiles, false, "zorva_hub_ai_*").size(), 0) << i;
        scene.make();
    }
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
    EXPECT_TRUE (scene.stillAnswers());
}
