#include "support/BrokerClient.h"

#include "ai/BrokerProtocol.h"
#include "support/BoundedJson.h"
#include "support/BrokerPipe.h"

#include <atomic>

namespace zorva::test
{
namespace
{
std::optional<BrokerClient::Discovery> readDiscovery()
{
    const auto value = BoundedJson::parseFile (BrokerClient::discoveryFile());
    BrokerClient::Discovery hub;
    hub.version = (int) BoundedJson::integerIn (value, "version");
    hub.transport = BoundedJson::textIn (value, "transport");
    hub.pipeName = BoundedJson::textIn (value, "pipeName");
    hub.token = BoundedJson::textIn (value, "token");
    hub.startedAt = BoundedJson::textIn (value, "startedAt");
    hub.pid = BoundedJson::integerIn (value, "pid");

    if (hub.version != 2 || hub.pipeName.isEmpty() || hub.pipeName.containsChar ('/'))
        return std::nullopt;

    return hub;
}

/** The caller's request with what it leaves to the client. */
juce::var completed (const juce::var& request, const juce::String& token)
{
    const juce::DynamicObject::Ptr whole = request.getDynamicObject()->clone().release();

    for (const auto& [key, value] : { std::pair<const char*, juce::var> { "version", 2 }, { "token", token },
                                      { "requestId", BrokerClient::freshRequestId() } })
        if (! whole->hasProperty (key))
            whole->setProperty (key, value);

    return whole.get();
}

/** Whether a reply answers this request. A request that was rejected before its id was read gets none back. */
bool isAnswerTo (const juce::var& reply, const juce::var& request)
{
    const auto id = BoundedJson::textIn (reply, "requestId");
    return id == BoundedJson::textIn (request, "requestId") || (id.isEmpty() && ! (bool) reply["ok"]);
}
}

BrokerClient::BrokerClient (int discoveryLimit, int replyLimit) : discoveryLimitMs (discoveryLimit), replyLimitMs (replyLimit) {}

std::optional<BrokerClient::Discovery> BrokerClient::discover() const
{
    const TimeLimit limit (discoveryLimitMs);

    for (GrowingPauses pauses;; pauses.pause())
    {
        if (auto hub = readDiscovery())
            return hub;

        if (limit.isOver())
            return std::nullopt;
    }
}

BrokerClient::Attempt BrokerClient::attempt (const MakeFrame& makeFrame) const
{
    const ClientTurn turn;
    const TimeLimit limit (discoveryLimitMs);

    for (GrowingPauses pauses;; pauses.pause())
    {
        Attempt result;

        if (const auto hub = readDiscovery())
            result = exchangeWith (*hub, makeFrame (*hub), replyLimitMs);

        if (result.outcome != Outcome::notListening || limit.isOver())
            return result;
    }
}

BrokerClient::Attempt BrokerClient::exchange (const juce::MemoryBlock& bytes) const
{
    return attempt ([&bytes] (const Discovery&) { return bytes; });
}

std::optional<juce::var> BrokerClient::request (const juce::var& request) const
{
    const TimeLimit limit (discoveryLimitMs + replyLimitMs);
    const bool mayBeServedTwice = BoundedJson::textIn (request, "op") != "openai.complete";

    do
    {
        juce::var sent;
        const auto result = attempt ([&] (const Discovery& hub) { return frame (sent = completed (request, hub.token)); });

        if (result.outcome == Outcome::answered)
        {
            const auto reply = BoundedJson::parse (result.payload.toString());

            if (isAnswerTo (reply, sent))
                return reply.isObject() ? std::optional<juce::var> (reply) : std::nullopt;
        }
        else if (result.outcome == Outcome::notListening || (result.outcome == Outcome::noReply && ! mayBeServedTwice))
        {
            return std::nullopt;
        }
    }
    while (! limit.isOver());

    return std::nullopt;
}

std::optional<juce::var> BrokerClient::ask (const juce::String& op, const juce::String& input) const
{
    const juce::DynamicObject::Ptr object (new juce::DynamicObject());
    object->setProperty ("op", op);

    if (input.isNotEmpty())
        object->setProperty ("input", input);

    return request (object.get());
}

juce::MemoryBlock BrokerClient::frame (const juce::MemoryBlock& payload)
{
    const auto header = juce::ByteOrder::swapIfLittleEndian ((juce::uint32) payload.getSize());
    juce::MemoryBlock bytes (&header, sizeof (header));
    bytes.append (payload.getData(), payload.getSize());
    return bytes;
}

juce::MemoryBlock BrokerClient::frame (const juce::var& value)
{
    const auto text = juce::JSON::toString (value, true);
    return frame (juce::MemoryBlock (text.toRawUTF8(), text.getNumBytesAsUTF8()));
}

juce::var BrokerClient::makeRequest (const juce::String& token, const juce::String& op, const juce::String& requestId,
                                     const juce::String& input)
{
    const juce::DynamicObject::Ptr object (new juce::DynamicObject());
    object->setProperty ("version", 2);
    object->setProperty ("token", token);
    object->setProperty ("op", op);
    object->setProperty ("requestId", requestId);

    if (input.isNotEmpty())
        object->setProperty ("input", input);

    return object.get();
}

juce::String BrokerClient::freshRequestId()
{
    static std::atomic<int> next { 1 };
    return "test-" + juce::String (next++);
}

juce::File BrokerClient::discoveryFile()
{
    return discoveryFilePath();
}
}
