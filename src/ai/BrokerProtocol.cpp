#include "ai/BrokerProtocol.h"

#include "app/HubPaths.h"
#include "platform/SecureMemory.h"
#include "platform/SecureRandom.h"
#include "support/BoundedJson.h"
#include "support/RecordFile.h"
#include "support/Utf8.h"

const char* const brokerTransportName = "length_prefixed_named_pipe";
const char* const brokerPipeNamePrefix = "zorva_hub_ai_";

namespace
{
constexpr size_t frameHeaderBytes = 4;
constexpr int maximumRequestIdCharacters = 80;

bool fail (juce::String& outError, const char* code)
{
    outError = code;
    return false;
}

bool isPayloadSize (size_t size)
{
    return size >= 1 && size <= maximumBrokerPayloadBytes;
}

bool needsInput (const juce::String& op)
{
    return op == "openai.complete" || op == "creator.preview.draft.save";
}

bool isOperation (const juce::String& op)
{
    return op == "broker.health" || op == "key.status" || needsInput (op);
}

/** Takes as long for a token that is wrong at once as for one that is wrong at its end. */
bool areEqualInConstantTime (const juce::String& expected, const juce::String& given)
{
    const auto expectedSize = expected.getNumBytesAsUTF8(), givenSize = given.getNumBytesAsUTF8();
    const auto *expectedBytes = expected.toRawUTF8(), *givenBytes = given.toRawUTF8();
    auto difference = expectedSize ^ givenSize;

    for (size_t i = 0; i < juce::jmax (expectedSize, givenSize); ++i)
    {
        const auto a = i < expectedSize ? (juce::uint8) expectedBytes[i] : (juce::uint8) 0;
        const auto b = i < givenSize ? (juce::uint8) givenBytes[i] : (juce::uint8) 0;
        difference |= (size_t) (a ^ b);
    }

    return difference == 0;
}

bool isAuthorised (const juce::String& expectedToken, const juce::String& token)
{
    return expectedToken.length() == brokerTokenDigits
        && token.length() == brokerTokenDigits
        && areEqualInConstantTime (expectedToken, token);
}

bool isRequestIdCharacter (juce::juce_wchar character)
{
    return juce::CharacterFunctions::isLetterOrDigit (character) || character == '-' || character == '.' || character == '_';
}

bool isAcceptableRequestId (const juce::String& requestId)
{
    if (requestId.isEmpty() || requestId.length() > maximumRequestIdCharacters)
        return false;

    for (auto position = requestId.getCharPointer(); ! position.isEmpty();)
        if (! isRequestIdCharacter (position.getAndAdvance()))
            return false;

    return true;
}

juce::var parsePayload (const juce::MemoryBlock& payload)
{
    if (! isUtf8 (payload.getData(), payload.getSize()))
        return {};

    return BoundedJson::parse (juce::String::fromUTF8 (static_cast<const char*> (payload.getData()), (int) payload.getSize()));
}

juce::DynamicObject::Ptr makeResponse (const juce::String& requestId, bool ok)
{
    const juce::DynamicObject::Ptr response (new juce::DynamicObject());
    response->setProperty ("version", brokerProtocolVersion);
    response->setProperty ("requestId", requestId);
    response->setProperty ("ok", ok);
    return response;
}
}

bool decodeFrameHeader (const void* bytes, size_t count, juce::uint32& outLength, juce::String& outError)
{
    outLength = 0;

    if (bytes == nullptr || count != frameHeaderBytes)
        return fail (outError, "frame_header");

    const auto length = juce::ByteOrder::bigEndianInt (bytes);

    if (! isPayloadSize (length))
        return fail (outError, "message_size");

    outLength = length;
    outError.clear();
    return true;
}

bool encodeFrame (const juce::MemoryBlock& payload, juce::MemoryBlock& outFrame, juce::String& outError)
{
    outFrame.reset();

    if (! isPayloadSize (payload.getSize()))
        return fail (outError, "message_size");

    const auto header = juce::ByteOrder::swapIfLittleEndian ((juce::uint32) payload.getSize());
    outFrame.setSize (frameHeaderBytes + payload.getSize());
    outFrame.copyFrom (&header, 0, frameHeaderBytes);
    outFrame.copyFrom (payload.getData(), (int) frameHeaderBytes, payload.getSize());
    outError.clear();
    return true;
}

juce::MemoryBlock encodeResponse (const juce::var& value)
{
    const auto text = RecordFile::toText (value);
    return { text.toRawUTF8(), text.getNumBytesAsUTF8() };
}

juce::MemoryBlock makeSuccessResponse (const juce::String& requestId, const juce::var& payloadValue)
{
    const auto response = makeResponse (requestId, true);
    response->setProperty ("payload", payloadValue);
    return encodeResponse (response.get());
}

juce::MemoryBlock makeErrorResponse (const juce::String& requestId, const juce::String& code, const juce::String& message,
                                     int httpStatus)
{
    const auto response = makeResponse (requestId, false);
    response->setProperty ("error", code);
    response->setProperty ("message", message);
    response->setProperty ("httpStatus", httpStatus);
    return encodeResponse (response.get());
}

bool parseBrokerRequest (const juce::MemoryBlock& payload, const juce::String& expectedToken, BrokerRequest& outRequest,
                         juce::String& outError)
{
    outRequest = {};

    if (! isPayloadSize (payload.getSize()))
        return fail (outError, "message_size");

    const auto request = parsePayload (payload);

    if (BoundedJson::objectIn (request) == nullptr)
        return fail (outError, "invalid_json");

    // The wire's integer has 32 bits: what a larger one leaves there is what counts.
    if ((int) BoundedJson::integerIn (request, "version") != brokerProtocolVersion)
        return fail (outError, "protocol_version");

    if (! isAuthorised (expectedToken, BoundedJson::textIn (request, "token")))
        return fail (outError, "unauthorized");

    outRequest.op = BoundedJson::textIn (request, "op");
    outRequest.requestId = BoundedJson::textIn (request, "requestId");

    if (! isOperation (outRequest.op))
        return fail (outError, "unsupported_operation");

    if (! isAcceptableRequestId (outRequest.requestId))
        return fail (outError, "invalid_request_id");

    if (needsInput (outRequest.op))
    {
        outRequest.input = BoundedJson::textIn (request, "input");
        const auto size = outRequest.input.getNumBytesAsUTF8();

        if (size < 1 || size > maximumBrokerInputBytes)
            return fail (outError, "input_size");
    }

    outError.clear();
    return true;
}

juce::String generateRandomHex (int byteCount)
{
    if (byteCount < 1)
        return {};

    juce::HeapBlock<juce::uint8> bytes ((size_t) byteCount);

    if (! platform::fillWithSecureRandom (bytes, (size_t) byteCount))
        return {};

    const auto digits = juce::String::toHexString (bytes.get(), byteCount, 0);
    platform::wipeMemory (bytes, (size_t) byteCount);
    return digits;
}

juce::File discoveryFilePath()
{
    return HubPaths::runtimeDirectory().getChildFile ("ai-broker.json");
}
