#pragma once

#include "ai/BrokerProtocol.h"
#include "ai/HubCredentialStore.h"
#include "ai/HubOpenAiClient.h"
#include "creator/PreviewDraftStore.h"

#include <atomic>

/** The server end of the local AI broker: one background thread that owns a named pipe, publishes the discovery file, and serves
    one framed request at a time.

    Created and started on the message thread; it outlives none of the three collaborators. */
class HubAiBrokerService final : private juce::Thread
{
public:
    /** Starts nothing. The collaborators are not owned and must outlive this object. */
    HubAiBrokerService (HubCredentialStore& credentialStore, HubOpenAiClient& openAiClient, PreviewDraftStore& draftStore);

    /** Withdraws the discovery file, cancels a running upstream request, wakes the thread and waits for it. Message thread. */
    ~HubAiBrokerService() override;

    /** Makes the token and the pipe's name and starts serving. True and no change when already running. False with a sentence in
        outError when there is no secure randomness, or no thread to be had. Message thread. */
    bool start (juce::String& outError);

    /** The response payload for one request payload. Blocks for as long as the operation takes. Broker thread; tests may call it
        from any thread but the message thread. */
    juce::MemoryBlock handleRequest (const juce::MemoryBlock& requestPayload);

    /** Replaces the discovery file with a fresh one in one step; false when it could not be written. */
    bool writeDiscoveryFile();

private:
    void run() override;

    void runCycle();
    bool openPipe();
    void serveRequest();
    bool readRequest (juce::MemoryBlock& outPayload);
    void sendResponse (const juce::MemoryBlock& response);
    void endCycle();
    void withdrawDiscoveryFile();

    /** A copy for the calling thread: on Windows the framework changes a path's memory whenever it hands it to the system. */
    juce::File ownDiscoveryFile() const;

    juce::MemoryBlock answerHealth (const BrokerRequest& request);
    juce::MemoryBlock answerKeyStatus (const BrokerRequest& request);
    juce::MemoryBlock answerDraft (const BrokerRequest& request);
    juce::MemoryBlock answerCompletion (const BrokerRequest& request);

    HubCredentialStore& credentialStore;
    HubOpenAiClient& openAiClient;
    PreviewDraftStore& draftStore;
    juce::NamedPipe pipe;
    juce::String token, pipeName;
    std::atomic<bool> ready { false };
    const juce::File discoveryFile;

    JUCE_DECLARE_NON_COPYABLE (HubAiBrokerService)
};
