#include "ai/HubAiBrokerService.h"
#include "platform/PipeServer.h"
#include "support/BoundedJson.h"
#include "support/BrokerClient.h"
#include "support/Drafts.h"
#include "support/FakeCredentialStore.h"
#include "support/Files.h"
#include "support/LogCapture.h"

#include <functional>
#include <gtest/gtest.h>
#include <thread>

namespace
{
using namespace zorva::test;

constexpr int clients = 2;

/** HUB_LOAD_REQUESTS, or enough to be quick: fewer where the broker pauses after each reply. */
int requestCount()
{
    const auto stated = juce::SystemStats::getEnvironmentVariable ("HUB_LOAD_REQUESTS", {}).getIntValue();
    return stated > 0 ? stated : platform::pipeLingerMilliseconds() > 0 ? 100 : 1000;
}

juce::String draftOf (const juce::File& render, int job)
{
    return zorva::test::draftOf (render, juce::String::toHexString (job + 1).paddedLeft ('0', 32), "Song " + juce::String (job));
}

/** A broker with all that it serves. */
struct Broker
{
    Broker()
    {
        juce::String error;
        EXPECT_TRUE (service->start (error)) << error;
    }

    FakeCredentialStore store { "sk-load" };
    HubOpenAiClient openAi { store };
    PreviewDraftStore drafts;
    std::unique_ptr<HubAiBrokerService> service = std::make_unique<HubAiBrokerService> (store, openAi, drafts);
};

juce::var makeRequest (const juce::String& op, const juce::String& id, const juce::String& input)
{
    const juce::DynamicObject::Ptr request (new juce::DynamicObject());
    request->setProperty ("op", op);
    request->setProperty ("requestId", id);

    if (input.isNotEmpty())
        request->setProperty ("input", input);

    return request.get();
}

/** Asks one thing under an id of its own, and judges every part of the reply. True when it is as it must be. */
bool isServed (const BrokerClient& client, const juce::String& id, int number, const juce::File& source)
{
    static const juce::StringArray ops { "broker.health", "key.status", "creator.preview.draft.save" };
    const auto op = ops[number % ops.size()];
    const int job = number / 30;    // most drafts come more than once
    const auto reply = client.request (makeRequest (op, id, op == ops[2] ? draftOf (source, job) : juce::String()));

    if (! reply.has_value())
        return false;

    const auto payload = (*reply)["payload"];

    if (BoundedJson::textIn (*reply, "requestId") != id || BoundedJson::integerIn (*reply, "version") != 2 || ! (bool) (*reply)["ok"])
        return false;

    if (op == ops[0])
        return (bool) payload["ready"] && BoundedJson::textIn (payload, "model") == "gpt-5.6-terra";

    if (op == ops[1])
        return (bool) payload["present"] && BoundedJson::textIn (payload, "backend") == "Test Vault";

    return (bool) payload["accepted"]
        && BoundedJson::textIn (payload, "jobId") == juce::String::toHexString (job + 1).paddedLeft ('0', 32);
}

/** Runs the work once a client, each on a thread of its own, while this thread does something else. */
void inEachClient (const std::function<void (int)>& work, const std::function<void()>& meanwhile = [] {})
{
    std::vector<std::thread> threads;

    for (int client = 0; client < clients; ++client)
        threads.emplace_back (work, client);

    meanwhile();

    for (auto& thread : threads)
        thread.join();
}
}

TEST (BrokerLoad, ServesTwoClientsThatTakeTurnsWithWholeRepliesToTheirOwnRequests)
{
    const LogCapture log;
    const auto source = writeRender();
    Broker broker;
    const auto hub = BrokerClient().discover();
    ASSERT_TRUE (hub.has_value());
    const int each = requestCount() / clients;
    std::atomic<int> served { 0 };

    inEachClient ([&] (int client)
    {
        const BrokerClient connection;

        for (int number = 0; number < each; ++number)
        {
            const auto id = "load-" + juce::String (client) + "-" + juce::String (number);

            if (! isServed (connection, id, number, source))
            {
                ADD_FAILURE() << "not served: " << id;
                return;
            }

            ++served;
        }
    });

    EXPECT_EQ (served.load(), each * clients);
    EXPECT_EQ (broker.drafts.count(), (each + 27) / 30);    // a job's first draft is the third request of its thirty

    // Every request has its line, and no line says the token.
    EXPECT_GE (log.lines().size(), each * clients);
    EXPECT_FALSE (log.lines().joinIntoString ("\n").contains (hub->token));
}

TEST (BrokerLoad, StopsInTheMidstOfItAndLeavesNothing)
{
    constexpr int enough = 50;
    const LogCapture log;
    const auto source = writeRender();
    Broker broker;
    const auto hub = BrokerClient().discover();
    ASSERT_TRUE (hub.has_value());
    std::atomic<int> served { 0 };
    std::atomic<bool> isStopping { false }, hasStopped { false };

    inEachClient ([&] (int client)
    {
        const BrokerClient connection (100 + 10 * platform::pipeLingerMilliseconds(), 2000);

        for (int number = 0; ! hasStopped; ++number)
        {
            const auto wasStopping = isStopping.load();

            if (isServed (connection, "stop-" + juce::String (client) + "-" + juce::String (number), number, source))
                ++served;
            else if (! wasStopping && ! isStopping)
                ADD_FAILURE() << "not served before the stop: " << number;
        }
    },
    [&]
    {
        for (int waited = 0; served < enough && waited < 60000; ++waited)
            juce::Thread::sleep (1);

        isStopping = true;
        broker.service.reset();
        hasStopped = true;
    });

    EXPECT_GE (served.load(), enough);
    EXPECT_FALSE (isThere (BrokerClient::discoveryFile()));
    EXPECT_FALSE (isThere (juce::File ("/tmp/" + hub->pipeName + "_in")));
    EXPECT_FALSE (isThere (juce::File ("/tmp/" + hub->pipeName + "_out")));
}
