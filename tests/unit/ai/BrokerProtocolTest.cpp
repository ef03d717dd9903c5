#include "ai/BrokerProtocol.h"
#include "app/HubPaths.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace
{
const juce::String token = juce::String::repeatedString ("0123456789abcdef", 4);

juce::MemoryBlock bytesOf (const juce::String& text)
{
    return { text.toRawUTF8(), text.getNumBytesAsUTF8() };
}

juce::var requestWith (std::initializer_list<std::pair<const char*, juce::var>> changes)
{
    auto* object = new juce::DynamicObject();
    object->setProperty ("version", 2);
    object->setProperty ("token", token);
    object->setProperty ("op", "broker.health");
    object->setProperty ("requestId", "request-1");

    for (const auto& [key, value] : changes)
        value.isVoid() ? object->removeProperty (key) : object->setProperty (key, value);

    return object;
}

struct Judged
{
    bool passed = false;
    BrokerRequest request;
    juce::String error { "not cleared" };
};

Judged judge (const juce::MemoryBlock& payload, const juce::String& expectedToken = token)
{
    Judged result;
    result.passed = parseBrokerRequest (payload, expectedToken, result.request, result.error);
    return result;
}

Judged judge (const juce::var& request) { return judge (bytesOf (juce::JSON::toString (request))); }

/** The code of a request, "" when it passes. */
std::string codeOfValue (const juce::var& request)
{
    const auto judged = judge (request);
    EXPECT_EQ (judged.passed, judged.error.isEmpty());
    return judged.error.toStdString();
}

std::string codeOf (std::initializer_list<std::pair<const char*, juce::var>> changes) { return codeOfValue (requestWith (changes)); }

std::string codeOfBytes (const juce::String& text) { return judge (bytesOf (text)).error.toStdString(); }
}

//==============================================================================
TEST (BrokerProtocol, AHeaderIsFourBigEndianBytesWithinTheLimits)
{
    const struct { std::vector<juce::uint8> bytes; bool passes; juce::uint32 length; const char* error; } cases[]
    {
        { { 0, 0, 0, 2 }, true, 2, "" },
        { { 0, 0, 0, 1 }, true, 1, "" },
        { { 0, 8, 0, 0 }, true, 524288, "" },
        { { 0, 8, 0, 1 }, false, 0, "message_size" },
        { { 0, 0, 0, 0 }, false, 0, "message_size" },
        { { 0xff, 0xff, 0xff, 0xff }, false, 0, "message_size" },
        { { 2, 0, 0, 0 }, false, 0, "message_size" },
        { { 0, 0, 2 }, false, 0, "frame_header" },
        { { 0, 0, 0, 2, 0 }, false, 0, "frame_header" },
        { {}, false, 0, "frame_header" },
    };

    for (const auto& each : cases)
    {
        juce::uint32 length = 77;
        juce::String error ("not cleared");
        EXPECT_EQ (decodeFrameHeader (each.bytes.data(), each.bytes.size(), length, error), each.passes);
        EXPECT_EQ (length, each.length);
        EXPECT_EQ (error, each.error);
    }
}

TEST (BrokerProtocol, AHeaderThatIsNotThereIsRefused)
{
    juce::uint32 length = 77;
    juce::String error;
    EXPECT_FALSE (decodeFrameHeader (nullptr, 4, length, error));
    EXPECT_EQ (error, "frame_header");
    EXPECT_EQ (length, 0u);
}

TEST (BrokerProtocol, AFrameIsTheLengthAndThePayload)
{
    juce::MemoryBlock frame ("old", 3);
    juce::String error ("old");
    ASSERT_TRUE (encodeFrame (juce::MemoryBlock ("ab", 2), frame, error));
    EXPECT_EQ (frame, juce::MemoryBlock ("\0\0\0\2ab", 6));
    EXPECT_EQ (error, "");
}

TEST (BrokerProtocol, APayloadOutsideTheLimitsIsNotFramed)
{
    for (const size_t size : { size_t { 0 }, size_t { 524289 } })
    {
        juce::MemoryBlock frame ("old", 3);
        juce::String error;
        EXPECT_FALSE (encodeFrame (juce::MemoryBlock (size, true), frame, error));
        EXPECT_EQ (frame.getSize(), 0u);
        EXPECT_EQ (error, "message_size");
    }

    juce::MemoryBlock frame;
    juce::String error;
    EXPECT_TRUE (encodeFrame (juce::MemoryBlock (524288, true), frame, error));
    EXPECT_EQ (frame.getSize(), 524292u);
}

//==============================================================================
TEST (BrokerProtocol, ResponsesHoldTheirKeysInOrder)
{
    const juce::DynamicObject::Ptr payload (new juce::DynamicObject());
    payload->setProperty ("ready", true);
    payload->setProperty ("share", 0.1234567890123456789);

    EXPECT_EQ (makeSuccessResponse ("a-1", payload.get()).toString(),
               "{\r\n  \"version\": 2,\r\n  \"requestId\": \"a-1\",\r\n  \"ok\": true,\r\n  \"payload\": {\r\n    \"ready\": true,\r\n"
               "    \"share\": 0.123456789012346\r\n  }\r\n}");
    EXPECT_EQ (makeErrorResponse ("a-1", "rate_limited", "Slow down.", 429).toString(),
               "{\r\n  \"version\": 2,\r\n  \"requestId\": \"a-1\",\r\n  \"ok\": false,\r\n  \"error\": \"rate_limited\",\r\n"
               "  \"message\": \"Slow down.\",\r\n  \"httpStatus\": 429\r\n}");
}

TEST (BrokerProtocol, AResponseIsUtf8WithoutMarkOrTerminator)
{
    const auto bytes = encodeResponse (juce::var (juce::StringArray (utf8 ("größe"))));
    const auto text = bytes.toString();
    EXPECT_EQ (bytes.getSize(), text.getNumBytesAsUTF8());
    EXPECT_EQ (bytes[0], '[');
    EXPECT_EQ (juce::JSON::parse (text)[0].toString(), utf8 ("größe"));
}

//==============================================================================
TEST (BrokerProtocol, AGoodRequestIsReadWhole)
{
    const auto judged = judge (requestWith ({ { "op", "openai.complete" }, { "input", utf8 ("Grüße") } }));
    EXPECT_TRUE (judged.passed);
    EXPECT_EQ (judged.error, "");
    EXPECT_EQ (judged.request.op, "openai.complete");
    EXPECT_EQ (judged.request.requestId, "request-1");
    EXPECT_EQ (judged.request.input, utf8 ("Grüße"));
}

TEST (BrokerProtocol, AHealthRequestNeedsNoInput)
{
    EXPECT_EQ (codeOf ({}), "");
    EXPECT_EQ (codeOf ({ { "op", "key.status" } }), "");

    const auto judged = judge (requestWith ({ { "input", "ignored" } }));
    EXPECT_TRUE (judged.passed);
    EXPECT_EQ (judged.request.input, "") << "not read";
}

TEST (BrokerProtocol, KeysThatAreNotKnownAreIgnored)
{
    EXPECT_EQ (codeOf ({ { "color", "blue" } }), "");
}

TEST (BrokerProtocol, APayloadIsOneTo524288Bytes)
{
    EXPECT_EQ (judge (juce::MemoryBlock()).error, "message_size");
    EXPECT_EQ (judge (juce::MemoryBlock (524289, true)).error, "message_size");

    auto text = juce::JSON::toString (requestWith ({}));
    text = text.paddedRight (' ', 524288);
    EXPECT_EQ (codeOfBytes (text), "");
    EXPECT_EQ (codeOfBytes (text + " "), "message_size");
}

TEST (BrokerProtocol, WhatIsNoJsonObjectIsRefused)
{
    const auto valid = juce::JSON::toString (requestWith ({}));

    for (const auto& text : { juce::String ("x"), juce::String ("["), juce::String ("[]"), "[" + valid + "]", juce::String ("null"), juce::String ("2"),
                              juce::String ("\"text\""), juce::String ("{"), juce::String (" ") })
        EXPECT_EQ (codeOfBytes (text), "invalid_json") << text;
}

TEST (BrokerProtocol, ARequestThatIsAnArrayIsNoObject)
{
    EXPECT_EQ (codeOfValue (juce::var (juce::Array<juce::var> { requestWith ({}) })), "invalid_json");
}

TEST (BrokerProtocol, ABomAndBytesThatAreNotUtf8AreRefused)
{
    const auto valid = bytesOf (juce::JSON::toString (requestWith ({})));

    juce::MemoryBlock marked ("\xef\xbb\xbf", 3);
    marked.append (valid.getData(), valid.getSize());
    EXPECT_EQ (judge (marked).error, "invalid_json");

    for (const auto* wrong : { "\xc3\"", "\xff", "\xc0\xaf", "\xed\xa0\x80", "\x80" })
    {
        const auto text = juce::JSON::toString (requestWith ({ { "note", "@" } }));
        const auto at = text.indexOf ("@");
        juce::MemoryBlock broken (text.toRawUTF8(), (size_t) at);
        broken.append (wrong, strlen (wrong));
        const auto rest = text.substring (at + 1);
        broken.append (rest.toRawUTF8(), rest.getNumBytesAsUTF8());
        EXPECT_EQ (judge (broken).error, "invalid_json") << juce::String::toHexString (wrong, (int) strlen (wrong));
    }
}

TEST (BrokerProtocol, NestingIsBoundedBeforeTheTokenIsLookedAt)
{
    EXPECT_EQ (codeOfBytes (juce::String::repeatedString ("[", 40960)), "invalid_json");
    EXPECT_EQ (codeOfBytes (juce::String::repeatedString ("{\"a\":", 40960)), "invalid_json");

    const auto nested = [] (int depth) { return juce::JSON::parse (juce::String::repeatedString ("[", depth) + juce::String::repeatedString ("]", depth)); };
    EXPECT_EQ (codeOf ({ { "note", nested (63) } }), "") << "with the object around it 64 deep";
    EXPECT_EQ (codeOf ({ { "note", nested (64) } }), "invalid_json");
    EXPECT_EQ (codeOf ({ { "note", juce::String::repeatedString ("[", 1000) } }), "") << "a string does not nest";
}

TEST (BrokerProtocol, TheVersionIsConvertedToTwo)
{
    for (const auto& version : { juce::var (2), juce::var ("2"), juce::var (2.5), juce::var (2.0), juce::var ((juce::int64) 4294967298) })
        EXPECT_EQ (codeOf ({ { "version", version } }), "") << version.toString();

    for (const auto& version : { juce::var (1), juce::var (3), juce::var ("two"), juce::var (-2), juce::var (true), juce::var (1.9), juce::var() })
        EXPECT_EQ (codeOf ({ { "version", version } }), "protocol_version") << version.toString();
}

TEST (BrokerProtocol, TheTokenMustBeTheSameCharacterForCharacter)
{
    for (int i = 0; i < 64; ++i)
        EXPECT_EQ (codeOf ({ { "token", token.replaceSection (i, 1, "x") } }), "unauthorized") << i;

    EXPECT_EQ (codeOf ({ { "token", token.toUpperCase() } }), "unauthorized");
    EXPECT_EQ (codeOf ({ { "token", token.dropLastCharacters (1) } }), "unauthorized") << "63 characters";
    EXPECT_EQ (codeOf ({ { "token", token + "0" } }), "unauthorized");
    EXPECT_EQ (codeOf ({ { "token", "" } }), "unauthorized");
    EXPECT_EQ (codeOf ({ { "token", juce::var() } }), "unauthorized");
    EXPECT_EQ (codeOf ({ { "token", juce::String::repeatedString (utf8 ("é"), 64) } }), "unauthorized") << "64 characters, 128 bytes";
}

TEST (BrokerProtocol, ABrokerWithoutATokenAdmitsNobody)
{
    EXPECT_EQ (judge (bytesOf (juce::JSON::toString (requestWith ({ { "token", "" } }))), {}).error, "unauthorized");
    const auto tooShort = token.dropLastCharacters (1);
    EXPECT_EQ (judge (bytesOf (juce::JSON::toString (requestWith ({ { "token", tooShort } }))), tooShort).error, "unauthorized");
}

TEST (BrokerProtocol, NothingIsReadBeforeTheTokenHasPassed)
{
    const auto judged = judge (requestWith ({ { "token", "wrong" }, { "op", "no.such.op" }, { "input", "x" } }));
    EXPECT_EQ (judged.error, "unauthorized");
    EXPECT_EQ (judged.request.op, "");
    EXPECT_EQ (judged.request.requestId, "");
    EXPECT_EQ (judged.request.input, "");
}

TEST (BrokerProtocol, OperationsAreComparedExactly)
{
    for (const auto* op : { "Broker.health", "broker.Health", "BROKER.HEALTH", "broker.health ", "", "openai", "creator.preview.draft" })
    {
        const auto judged = judge (requestWith ({ { "op", op } }));
        EXPECT_EQ (judged.error, "unsupported_operation") << op;
        EXPECT_EQ (judged.request.requestId, "request-1") << "echoed from here on";
    }
}

TEST (BrokerProtocol, ARequestIdIsOneTo80CharactersOfTheAllowedSet)
{
    for (const auto& id : { juce::String ("a"), juce::String ("A-Z.a_z-0.9"), juce::String::repeatedString ("x", 80), juce::String ("-._"),
                            juce::String::repeatedString (utf8 ("é"), 80) })
        EXPECT_EQ (codeOf ({ { "requestId", id } }), "") << id;

    for (const auto& id : { juce::String(), juce::String::repeatedString ("x", 81), juce::String ("with blank"), juce::String ("line\nfeed"),
                            juce::String ("a/b"), juce::String ("a:b"), juce::String ("a+b"), utf8 ("a–b"), juce::String::charToString (0x1f600) })
    {
        const auto judged = judge (requestWith ({ { "requestId", id } }));
        EXPECT_EQ (judged.error, "invalid_request_id") << id;
        EXPECT_EQ (judged.request.requestId, id) << "echoed unchanged";
    }
}

TEST (BrokerProtocol, AnInputIsOneTo262144BytesForTheOperationsThatNeedIt)
{
    for (const auto* op : { "openai.complete", "creator.preview.draft.save" })
    {
        EXPECT_EQ (codeOf ({ { "op", op } }), "input_size");
        EXPECT_EQ (codeOf ({ { "op", op }, { "input", "" } }), "input_size");
        EXPECT_EQ (codeOf ({ { "op", op }, { "input", "x" } }), "");
        EXPECT_EQ (codeOf ({ { "op", op }, { "input", juce::String::repeatedString ("x", 262144) } }), "");
        EXPECT_EQ (codeOf ({ { "op", op }, { "input", juce::String::repeatedString ("x", 262145) } }), "input_size");
    }

    // Bytes count, not characters; unescaped, so that the payload stays within its own limit.
    const auto framed = [] (const juce::String& input)
    {
        return "{\"version\":2,\"token\":\"" + token + "\",\"op\":\"openai.complete\",\"requestId\":\"r\",\"input\":\"" + input + "\"}";
    };
    EXPECT_EQ (codeOfBytes (framed (juce::String::repeatedString (utf8 ("é"), 131072))), "");
    EXPECT_EQ (codeOfBytes (framed (juce::String::repeatedString (utf8 ("é"), 131072) + "x")), "input_size");
}

TEST (BrokerProtocol, TheFirstFailureWins)
{
    const auto bad = [] (std::initializer_list<std::pair<const char*, juce::var>> changes) { return codeOf (changes); };
    EXPECT_EQ (bad ({ { "version", 1 }, { "token", "x" }, { "op", "x" }, { "requestId", "" } }), "protocol_version");
    EXPECT_EQ (bad ({ { "token", "x" }, { "op", "x" }, { "requestId", "" } }), "unauthorized");
    EXPECT_EQ (bad ({ { "op", "x" }, { "requestId", "" } }), "unsupported_operation");
    EXPECT_EQ (bad ({ { "op", "openai.complete" }, { "requestId", "" } }), "invalid_request_id");
    EXPECT_EQ (bad ({ { "op", "openai.complete" }, { "requestId", juce::String::repeatedString (" ", 81) } }), "invalid_request_id");
}

//==============================================================================
TEST (BrokerProtocol, RandomHexIsLowerCaseOfTwoDigitsAByte)
{
    for (const int count : { 1, 16, 32 })
    {
        const auto text = generateRandomHex (count);
        EXPECT_EQ (text.length(), count * 2);
        EXPECT_TRUE (text.containsOnly ("0123456789abcdef")) << text;
    }

    EXPECT_NE (generateRandomHex (32), generateRandomHex (32));
}

TEST (BrokerProtocol, TheDiscoveryFileIsNamedAndNotMade)
{
    EXPECT_EQ (discoveryFilePath(), HubPaths::runtimeDirectory().getChildFile ("ai-broker.json"));
    EXPECT_FALSE (discoveryFilePath().exists());
}
