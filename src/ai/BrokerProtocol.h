#pragma once

#include <juce_core/juce_core.h>

/** The format by which a local client reaches the AI broker: framing, requests and their validation, responses, and the place of
    the discovery file. Free functions without state or locks. */

/** The version of the protocol that requests, responses and the discovery file carry. */
constexpr int brokerProtocolVersion = 2;

/** A frame's payload is 1 to this many bytes. */
constexpr juce::uint32 maximumBrokerPayloadBytes = 0x80000;

/** A request's "input" is 1 to this many bytes of UTF-8. */
constexpr size_t maximumBrokerInputBytes = 0x40000;

/** The length of the token, and of the random part of the pipe's name, in hexadecimal digits. */
constexpr int brokerTokenDigits = 64, brokerPipeSuffixDigits = 32;

/** What the discovery file calls this transport. */
extern const char* const brokerTransportName;

/** The beginning of every pipe name. */
extern const char* const brokerPipeNamePrefix;

/** A request as far as validation has read it. */
struct BrokerRequest
{
    juce::String op;            ///< the operation, unvalidated until parseBrokerRequest succeeds
    juce::String requestId;     ///< the caller's id, echoed in the response
    juce::String input;         ///< prompt or draft; only for the operations that need one
};

/** Reads a frame's header of exactly four big-endian bytes. False with outLength 0 and outError "frame_header" (null or not four
    bytes) or "message_size" (outside 1 to maximumBrokerPayloadBytes); outError is empty on success. */
bool decodeFrameHeader (const void* bytes, size_t count, juce::uint32& outLength, juce::String& outError);

/** Puts the header before a payload. False with outFrame empty and outError "message_size" when the payload's size is outside
    its limits. */
bool encodeFrame (const juce::MemoryBlock& payload, juce::MemoryBlock& outFrame, juce::String& outError);

/** A value as the UTF-8 bytes of multi-line JSON (RFC 8259). */
juce::MemoryBlock encodeResponse (const juce::var& value);

/** The payload of a success response. */
juce::MemoryBlock makeSuccessResponse (const juce::String& requestId, const juce::var& payloadValue);

/** The payload of an error response; httpStatus is the upstream's, or 0. */
juce::MemoryBlock makeErrorResponse (const juce::String& requestId, const juce::String& code, const juce::String& message,
                                     int httpStatus);

/** Validates a request's payload; the first failure wins and its code goes to outError, which is empty on success. outRequest
    holds what had been read by then: nothing at all before the token has passed. The token is compared in constant time. Nesting
    deeper than BoundedJson's limit, and bytes that are not UTF-8, are "invalid_json". */
bool parseBrokerRequest (const juce::MemoryBlock& payload, const juce::String& expectedToken, BrokerRequest& outRequest,
                         juce::String& outError);

/** byteCount random bytes as lower-case hexadecimal digits; empty when the system's random source fails. */
juce::String generateRandomHex (int byteCount);

/** The discovery file, ai-broker.json in HubPaths::runtimeDirectory(). Creates nothing. */
juce::File discoveryFilePath();
