#pragma once

#include <functional>
#include <juce_core/juce_core.h>
#include <optional>

namespace zorva::test
{
/** A client of the local AI broker that keeps to docs/broker-protocol.md: it takes its turn by a lock on the discovery file's
    folder, finds the pipe, and checks whose reply it got. Blocks; any thread but the broker's, one object a thread or shared. */
class BrokerClient
{
public:
    /** What ai-broker.json says. */
    struct Discovery
    {
        int version = 0;
        juce::String transport, pipeName, token, startedAt;
        juce::int64 pid = 0;
    };

    /** How one attempt ended. */
    enum class Outcome
    {
        answered,       ///< a whole reply is there
        notListening,   ///< no discovery file, or nobody reads its pipe
        notSent,        ///< the connection ended before the whole frame was written
        noReply         ///< it ended after that, or the time was over
    };

    /** One attempt's result; payload is set when answered. */
    struct Attempt
    {
        Outcome outcome = Outcome::notListening;
        juce::MemoryBlock payload;
    };

    /** Times in milliseconds: how long to look for a Hub, and how long to wait for one reply. */
    explicit BrokerClient (int discoveryLimitMs = 8000, int replyLimitMs = 45000);

    /** What the discovery file says now, waiting for it up to the discovery limit. */
    std::optional<Discovery> discover() const;

    /** Sends a request and gives the reply's object. Fills in "version", "token" and a fresh "requestId" where the request has no
        such keys, so that a test can set them wrong on purpose. Tries again as the protocol allows: always when the request cannot
        have been served, and after that too, unless it is "openai.complete". Nothing when there is no answer. A reply with an empty
        requestId and "ok" false, as a rejected request gets, counts as its answer. */
    std::optional<juce::var> request (const juce::var& request) const;

    /** request() of an operation, with an "input" when it is not empty. */
    std::optional<juce::var> ask (const juce::String& op, const juce::String& input = {}) const;

    /** Writes these very bytes to the pipe, be they a frame or not, and reads one reply's payload. Never tries again once
        something is written; until then it looks for a listening pipe up to the discovery limit. */
    Attempt exchange (const juce::MemoryBlock& bytes) const;

    /** A frame of a payload: its size in four big-endian bytes, then the payload. No check of limits. */
    static juce::MemoryBlock frame (const juce::MemoryBlock& payload);

    /** A frame of a value as JSON. */
    static juce::MemoryBlock frame (const juce::var& value);

    /** A request object with version 2 and these keys; without an empty input. */
    static juce::var makeRequest (const juce::String& token, const juce::String& op, const juce::String& requestId,
                                  const juce::String& input = {});

    /** A request id that no other call in this process has given. */
    static juce::String freshRequestId();

    /** Of the Hub under this process's own HOME. */
    static juce::File discoveryFile();

private:
    using MakeFrame = std::function<juce::MemoryBlock (const Discovery&)>;

    Attempt attempt (const MakeFrame& makeFrame) const;

    const int discoveryLimitMs, replyLimitMs;
};
}
