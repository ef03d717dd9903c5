#pragma once

#include "ai/HubAiBrokerService.h"
#include "support/BrokerClient.h"
#include "support/FakeCredentialStore.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

namespace zorva::test
{
/** A broker with a key store in memory and an OpenAI client that reaches nobody, or a given address. */
struct BrokerScene
{
    explicit BrokerScene (const juce::String& endpoint = "https://127.0.0.1:1/v1/responses") : openAi (store, { .endpoint = endpoint })
    {
        make();
    }

    /** Makes a broker that is not started yet, in place of an earlier one. */
    void make() { broker = std::make_unique<HubAiBrokerService> (store, openAi, drafts); }

    void start()
    {
        juce::String error ("not cleared");
        EXPECT_TRUE (broker->start (error));
        EXPECT_EQ (error, "");
    }

    /** The answer to an operation, asked over the pipe from this thread. */
    juce::var ask (const juce::String& op, const juce::String& input = {})
    {
        const auto reply = client.ask (op, input);
        EXPECT_TRUE (reply.has_value());
        return reply.value_or (juce::var());
    }

    bool stillAnswers() { return (bool) ask ("broker.health")["ok"]; }

    LogCapture log;
    FakeCredentialStore store;
    HubOpenAiClient openAi;
    PreviewDraftStore drafts;
    BrokerClient client;
    std::unique_ptr<HubAiBrokerService> broker;
};

/** The names of an object's keys in order, with blanks between. */
inline std::string keysOf (const juce::var& value)
{
    juce::StringArray keys;

    if (const auto* object = value.getDynamicObject())
        for (const auto& property : object->getProperties())
            keys.add (property.name.toString());

    return keys.joinIntoString (" ").toStdString();
}
}
