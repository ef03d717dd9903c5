#pragma once

#include "ai/HubOpenAiClient.h"
#include "support/FakeCredentialStore.h"
#include "support/GuiHarness.h"
#include "support/TrustedTestServer.h"

#include <gtest/gtest.h>
#include <thread>

namespace zorva::test
{
/** What a client answers to one question on a worker thread, as the Hub asks it. */
inline HubOpenAiClient::Result completeOnWorker (HubOpenAiClient& client, const juce::String& input = "Hello", int tokens = 100)
{
    HubOpenAiClient::Result result;
    std::atomic<bool> done { false };
    std::thread worker ([&] { result = client.complete (input, tokens); done = true; });
    EXPECT_TRUE (pumpUntil ([&] { return done.load(); }, 60000));
    worker.join();
    return result;
}

/** A client of a real server. */
struct CompletionScene
{
    explicit CompletionScene (int deadlineMs = 30000, int connectionTimeoutMs = 12000)
        : client (store, { .endpoint = server.url (path), .deadlineMs = deadlineMs, .connectionTimeoutMs = connectionTimeoutMs })
    {
    }

    HubOpenAiClient::Result complete (const juce::String& input = "Hello", int tokens = 100) { return completeOnWorker (client, input, tokens); }

    void answer (const juce::String& body, int status = 200, const juce::StringArray& headerLines = {})
    {
        auto page = TrustedTestServer::Answer::text (body, status);
        page.headerLines = headerLines;
        serve (page);
    }

    void serve (const TrustedTestServer::Answer& page)    { server.serve (path, page); }
    int requestCount()                                    { return server.requestCount (path); }

    static inline const juce::String path { "/v1/responses" };

    /** A body with a text. */
    static inline const juce::String good { R"({"output_text":"Hi there"})" };

    TrustedTestServer server;
    FakeCredentialStore store { "sk-test-key" };
    HubOpenAiClient client;
};

inline void expectFailure (const HubOpenAiClient::Result& result, HubOpenAiClient::ErrorKind kind, const juce::String& message, int status = 0)
{
    EXPECT_FALSE (result.ok);
    EXPECT_EQ (result.text, "");
    EXPECT_EQ (result.error, kind) << HubOpenAiClient::errorKindName (result.error);
    EXPECT_EQ (result.message, message);
    EXPECT_EQ (result.httpStatus, status);
}
}
