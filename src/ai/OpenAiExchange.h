#pragma once

#include "ai/HubOpenAiClient.h"

/** One request to the OpenAI Responses API and its answer, over a stream that is not owned. Blocks; one worker thread. Cancelling
    the stream from another thread ends run(). */
class OpenAiExchange
{
public:
    explicit OpenAiExchange (juce::WebInputStream& stream);

    /** Puts the key into the stream's headers, where alone it lives from then on, but for the caller's bytes. False when the key
        is unusable. Before run(), once. */
    bool authorise (const juce::MemoryBlock& key);

    /** Sends the request and reads the answer, to its end or to the limit of 393216 bytes, beyond which it cancels the stream. */
    void run();

    /** What the answer means. After run(). */
    HubOpenAiClient::Result result() const;

private:
    bool readBody();
    HubOpenAiClient::Result resultOfBody() const;

    juce::WebInputStream& stream;
    bool isConnected = false, isTooLarge = false;
    int status = 0;
    juce::String requestId;
    juce::MemoryOutputStream body { 256 };

    JUCE_DECLARE_NON_COPYABLE (OpenAiExchange)
};
