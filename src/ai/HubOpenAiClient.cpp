#include "ai/HubOpenAiClient.h"

#include "ai/HubCancellationDeadline.h"
#include "ai/OpenAiExchange.h"
#include "ai/OpenAiReply.h"

const char* const HubOpenAiClient::defaultEndpoint = "https://api.openai.com/v1/responses";
const char* const HubOpenAiClient::modelName = "gpt-5.6-terra";

namespace
{
using ErrorKind = HubOpenAiClient::ErrorKind;
using Result = HubOpenAiClient::Result;

constexpr size_t maximumInputBytes = 262144;
constexpr int testOutputTokens = 128;
constexpr const char* testPrompt = "Reply with OK.";
constexpr juce::uint32 testStopLimitMs = 33000;    // more than a request's deadline: past it the thread is killed with its locks held
constexpr int cancelAgainMs = 50;

Result failure (ErrorKind error, const char* message)
{
    Result result;
    result.error = error;
    result.message = message;
    return result;
}

class FunctionThread final : public juce::Thread
{
public:
    explicit FunctionThread (std::function<void()> work) : juce::Thread ("ZORVA Hub OpenAI test"), function (std::move (work)) {}

    void run() override
    {
        if (function)
            function();
    }

private:
    std::function<void()> function;

    JUCE_DECLARE_NON_COPYABLE (FunctionThread)
};

/** Calls back on the message thread, unless the client is gone by then. */
void post (juce::WeakReference<HubOpenAiClient> client, HubOpenAiClient::Callback callback, Result result)
{
    juce::MessageManager::callAsync ([weakClient = std::move (client), report = std::move (callback), answer = std::move (result)]
    {
        if (weakClient != nullptr && report)
            report (answer);
    });
}
}

/** Lets cancelActiveRequest() reach a stream, and the calling thread that waits for it, for as long as this lives. */
class HubOpenAiClient::ActiveStream
{
public:
    ActiveStream (HubOpenAiClient& owner, juce::WebInputStream& stream) : client (owner)
    {
        const juce::ScopedLock lock (client.streamLock);
        client.activeStream = &stream;
        client.activeWait = &wait;

        // A cancel that came before there was a stream must not be lost.
        if (client.cancelRequested)
            stream.cancel();
    }

    ~ActiveStream()
    {
        const juce::ScopedLock lock (client.streamLock);
        client.activeStream = nullptr;
        client.activeWait = nullptr;
    }

private:
    HubOpenAiClient& client;
    platform::NetworkWait wait;

    JUCE_DECLARE_NON_COPYABLE (ActiveStream)
};

HubOpenAiClient::HubOpenAiClient (HubCredentialStore& store) : HubOpenAiClient (store, Options()) {}

HubOpenAiClient::HubOpenAiClient (HubCredentialStore& store, Options requestOptions)
    : credentialStore (store), options (std::move (requestOptions))
{
}

HubOpenAiClient::~HubOpenAiClient()
{
    masterReference.clear();
    cancelActiveRequest();
    stopTestThread();
}

HubOpenAiClient::Result HubOpenAiClient::complete (const juce::String& input, int maxOutputTokens)
{
    return runRequest (input, maxOutputTokens, nullptr);
}

HubOpenAiClient::Result HubOpenAiClient::runRequest (const juce::String& input, int maxOutputTokens, juce::MemoryBlock* keyOverride)
{
    // Before the lock, for which the message thread would wait as long as somebody else's request takes.
    if (juce::MessageManager::existsAndIsCurrentThread())
        return failure (ErrorKind::internal, "The AI request must run on a Hub worker thread.");

    const juce::ScopedLock lock (requestLock);

    if (input.isEmpty() || input.getNumBytesAsUTF8() > maximumInputBytes)
        return failure (ErrorKind::badRequest, "The AI request is empty or exceeds the 256 KB limit.");

    // Only here: before the lock this would undo a cancel that was meant for the request that is running.
    cancelRequested = false;

    HubCancellationDeadline deadline (options.deadlineMs, [this] { cancelActiveRequest(); });

    // Nothing is asked that could not be ended.
    if (! deadline.startThread())
        return failure (ErrorKind::internal, "The OpenAI request failed.");

    auto result = performRequest (input, maxOutputTokens, keyOverride);
    deadline.stop();

    return deadline.hasExpired() ? failure (ErrorKind::timeout, "The OpenAI request timed out. Try again.") : result;
}

HubOpenAiClient::Result HubOpenAiClient::performRequest (const juce::String& input, int maxOutputTokens,
                                                         juce::MemoryBlock* keyOverride)
{
    SecretBytes key;
    juce::String storeError;

    if (keyOverride != nullptr)
        key.bytes.swapWith (*keyOverride);
    else if (! credentialStore.readKey (key.bytes, storeError))
        return failure (ErrorKind::missingKey, "No OpenAI API key is stored in ZORVA Hub.");

    const auto url = juce::URL (options.endpoint).withPOSTData (OpenAiReply::buildRequestBody (input, maxOutputTokens));
    juce::WebInputStream stream (url, true);
    OpenAiExchange exchange (stream);

    if (! exchange.authorise (key.bytes))
        return failure (ErrorKind::invalidKey, "The stored API key is invalid.");

    key.wipe();
    stream.withConnectionTimeout (options.connectionTimeoutMs);
    stream.withNumRedirectsToFollow (0);

    {
        const ActiveStream reachable (*this, stream);
        exchange.run();
    }

    return exchange.result();
}

void HubOpenAiClient::cancelActiveRequest()
{
    cancelRequested = true;
    const juce::ScopedLock lock (streamLock);

    if (activeStream == nullptr)
        return;

    activeStream->cancel();
    activeWait->interrupt();
}

void HubOpenAiClient::testStoredKey (Callback callback)
{
    startTest (nullptr, std::move (callback));
}

void HubOpenAiClient::testKey (juce::String& candidateKey, Callback callback)
{
    auto key = std::make_shared<SecretBytes>();
    key->bytes.replaceAll (candidateKey.toRawUTF8(), candidateKey.getNumBytesAsUTF8());
    platform::wipeText (candidateKey);
    startTest (std::move (key), std::move (callback));
}

void HubOpenAiClient::startTest (std::shared_ptr<SecretBytes> key, Callback callback)
{
    cancelActiveRequest();
    stopTestThread();

    const juce::WeakReference<HubOpenAiClient> client (this);

    // This client is there for as long as the thread runs: its destructor and the next test end the thread first. Where they came
    // before the thread did, nothing is asked, and the test ends like any that is cancelled.
    testThread = std::make_unique<FunctionThread> ([this, client, key, callback]() mutable
    {
        auto result = juce::Thread::currentThreadShouldExit()
                        ? OpenAiReply::mapHttpFailure (0, {}, false, {})
                        : runRequest (testPrompt, testOutputTokens, key != nullptr ? &key->bytes : nullptr);

        if (key != nullptr)
            key->wipe();

        post (std::move (client), std::move (callback), std::move (result));
    });

    if (testThread->startThread())
        return;

    testThread.reset();
    post (client, std::move (callback), failure (ErrorKind::internal, "The OpenAI request failed."));
}

void HubOpenAiClient::stopTestThread()
{
    if (testThread == nullptr)
        return;

    testThread->signalThreadShouldExit();
    const auto begin = juce::Time::getMillisecondCounter();

    // Once is not enough: a test that is just about to begin with its request forgets what came before.
    do
    {
        cancelActiveRequest();
    }
    while (! testThread->waitForThreadToExit (cancelAgainMs) && juce::Time::getMillisecondCounter() - begin < testStopLimitMs);

    testThread->stopThread (cancelAgainMs);
    testThread.reset();
}

juce::String HubOpenAiClient::errorKindName (ErrorKind kind)
{
    switch (kind)
    {
        case ErrorKind::none:               return "none";
        case ErrorKind::missingKey:         return "missing_key";
        case ErrorKind::invalidKey:         return "invalid_key";
        case ErrorKind::billing:            return "billing";
        case ErrorKind::rateLimited:        return "rate_limited";
        case ErrorKind::badRequest:         return "bad_request";
        case ErrorKind::serviceUnavailable: return "service_unavailable";
        case ErrorKind::timeout:            return "timeout";
        case ErrorKind::network:            return "network";
        case ErrorKind::responseTooLarge:   return "response_too_large";
        case ErrorKind::invalidResponse:    return "invalid_response";
        case ErrorKind::internal:           return "internal";
    }

    return "internal";
}
