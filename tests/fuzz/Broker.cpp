#include "FuzzHome.h"

#include "ai/BrokerProtocol.h"
#include "support/BoundedJson.h"

namespace
{
const juce::String token = juce::String::repeatedString ("5a", brokerTokenDigits / 2);

void require (bool condition)
{
    if (! condition)
        std::abort();
}

void checkAccepted (const BrokerRequest& request)
{
    const bool takesInput = request.op == "openai.complete" || request.op == "creator.preview.draft.save";
    require (takesInput || request.op == "broker.health" || request.op == "key.status");
    require (request.requestId.isNotEmpty() && request.requestId.length() <= 80);
    require (takesInput ? request.input.isNotEmpty() : request.input.isEmpty());
    require (request.input.getNumBytesAsUTF8() <= maximumBrokerInputBytes);
}

void checkRefused (const BrokerRequest& request, const juce::String& error)
{
    static const juce::StringArray unread { "message_size", "invalid_json", "protocol_version", "unauthorized" };
    static const juce::StringArray read { "unsupported_operation", "invalid_request_id", "input_size" };

    if (! unread.contains (error))
        return require (read.contains (error));

    require (request.op.isEmpty() && request.requestId.isEmpty() && request.input.isEmpty());
}

/** Whatever id a request has, its reply is JSON that fits into a frame and says the same id. */
void checkReply (const juce::String& requestId)
{
    const auto payload = makeErrorResponse (requestId, "code", "message", 0);
    const auto reply = BoundedJson::parse (juce::String::fromUTF8 (static_cast<const char*> (payload.getData()), (int) payload.getSize()));
    require (BoundedJson::textIn (reply, "requestId") == requestId);
}
}

/** The bytes as what a client writes to the pipe: a frame's header, then its payload. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    const auto headerSize = juce::jmin (size, (std::size_t) 4);
    juce::uint32 length = 0;
    juce::String error;

    if (decodeFrameHeader (data, headerSize, length, error))
        require (error.isEmpty() && length >= 1 && length <= maximumBrokerPayloadBytes);
    else
        require (length == 0 && error == (headerSize == 4 ? "message_size" : "frame_header"));

    const juce::MemoryBlock payload (data + headerSize, size - headerSize);
    BrokerRequest request;

    if (parseBrokerRequest (payload, token, request, error))
    {
        require (error.isEmpty());
        checkAccepted (request);
    }
    else
    {
        checkRefused (request, error);
    }

    checkReply (request.requestId);
    return 0;
}
