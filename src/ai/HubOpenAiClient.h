#pragma once

#include "ai/HubCredentialStore.h"
#include "ai/SecretBytes.h"
#include "platform/NetworkWait.h"

#include <atomic>
#include <functional>
#include <juce_events/juce_events.h>

/** Makes the Hub's one kind of outbound call to an AI service: a POST to the OpenAI Responses API over https with the key from the
    credential store. Requests are served one at a time, each under a hard deadline. Nothing throws out of this class. */
class HubOpenAiClient
{
public:
    /** Why a request failed. The numbers are fixed; errorKindName() gives the names on the wire. */
    enum class ErrorKind : int
    {
        none = 0,               ///< success
        missingKey = 1,         ///< no key is stored
        invalidKey = 2,         ///< the stored key is unusable, or OpenAI refused it
        billing = 3,            ///< no credit or quota
        rateLimited = 4,        ///< too many requests
        badRequest = 5,         ///< refused as malformed, or the input is out of bounds
        serviceUnavailable = 6, ///< upstream server error
        timeout = 7,            ///< the deadline expired
        network = 8,            ///< no HTTP exchange took place
        responseTooLarge = 9,   ///< the body passed its limit
        invalidResponse = 10,   ///< a 2xx body with no usable text
        internal = 11           ///< any other failure, or a misuse
    };

    /** The answer to one request. */
    struct Result
    {
        bool ok = false;                        ///< true only with a text that is not empty
        juce::String text;                      ///< the reply
        juce::String upstreamRequestId;         ///< the response's request id, trimmed; may be empty
        juce::String message;                   ///< for a person; empty on success
        ErrorKind error = ErrorKind::none;
        int httpStatus = 0;                     ///< of the response; 0 when there was none
    };

    /** Where and how long to ask; the defaults are the Hub's own, other values are for tests. */
    struct Options
    {
        juce::String endpoint { defaultEndpoint };
        int deadlineMs = 30000;             ///< of one request, all in all
        int connectionTimeoutMs = 12000;    ///< to connect, and of any silence
    };

    using Callback = std::function<void (Result)>;

    /** The OpenAI Responses API. */
    static const char* const defaultEndpoint;

    /** The one model that is asked. */
    static const char* const modelName;

    /** Starts nothing. The store is not owned and must outlive the client. Message thread. */
    explicit HubOpenAiClient (HubCredentialStore& credentialStore);

    /** As above with other options. */
    HubOpenAiClient (HubCredentialStore& credentialStore, Options options);

    /** Cancels what is running and waits for the key test's thread. Message thread. */
    ~HubOpenAiClient();

    /** Asks for a completion and blocks until it is there, has failed, or the deadline has passed. maxOutputTokens is clamped to 1
        to 4096. Any thread but the message thread, where it refuses with ErrorKind::internal. */
    Result complete (const juce::String& input, int maxOutputTokens);

    /** Tries the stored key on a thread of its own, cancelling whatever request is running. The callback comes on the message
        thread, and never after the client is gone. Message thread. */
    void testStoredKey (Callback callback);

    /** As testStoredKey() with a key that is not stored; wipes and empties the caller's text, and with it every String that shares
        its characters. Message thread. */
    void testKey (juce::String& candidateKey, Callback callback);

    /** Makes a running request end now. Any thread. */
    void cancelActiveRequest();

    /** The name of a kind on the wire; "internal" for a value outside the enumeration. */
    static juce::String errorKindName (ErrorKind kind);

private:
    class ActiveStream;

    Result runRequest (const juce::String& input, int maxOutputTokens, juce::MemoryBlock* keyOverride);
    Result performRequest (const juce::String& input, int maxOutputTokens, juce::MemoryBlock* keyOverride);
    void startTest (std::shared_ptr<SecretBytes> key, Callback callback);
    void stopTestThread();

    HubCredentialStore& credentialStore;
    juce::CriticalSection requestLock;      ///< held for the whole of a request; taken before streamLock
    juce::CriticalSection streamLock;       ///< guards activeStream and activeWait; never held across a blocking call
    juce::WebInputStream* activeStream = nullptr;
    platform::NetworkWait* activeWait = nullptr;        ///< of the thread that uses activeStream; set and cleared with it
    std::atomic<bool> cancelRequested { false };
    std::unique_ptr<juce::Thread> testThread;
    const Options options;

    JUCE_DECLARE_WEAK_REFERENCEABLE (HubOpenAiClient)
    JUCE_DECLARE_NON_COPYABLE (HubOpenAiClient)
};
