#include "ai/OpenAiReply.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using Kind = HubOpenAiClient::ErrorKind;

//==============================================================================
TEST (OpenAiReply, TheRequestBodyHoldsFourKeysInOrder)
{
    EXPECT_EQ (OpenAiReply::buildRequestBody ("Say \"hi\"", 128),
               "{\r\n  \"model\": \"gpt-5.6-terra\",\r\n  \"input\": \"Say \\\"hi\\\"\",\r\n  \"store\": false,\r\n"
               "  \"max_output_tokens\": 128\r\n}");
}

TEST (OpenAiReply, TheNumberOfTokensIsClamped)
{
    const std::pair<int, int> cases[] { { -5, 1 }, { 0, 1 }, { 1, 1 }, { 2048, 2048 }, { 4096, 4096 }, { 4097, 4096 }, { 5000, 4096 } };

    for (const auto& [asked, sent] : cases)
        EXPECT_EQ ((int) juce::JSON::parse (OpenAiReply::buildRequestBody ("x", asked))["max_output_tokens"], sent);
}

TEST (OpenAiReply, TheTextIsFoundWhereItStands)
{
    const auto element = [] (const char* type, const char* text) { return R"({"type":")" + juce::String (type) + R"(","text":")" + text + R"("})"; };
    const auto output = [] (const juce::String& content) { return R"({"output":[{"content":[)" + content + "]}]}"; };

    const std::pair<juce::String, const char*> cases[]
    {
        { R"({"output_text":"hello"})", "hello" },
        { R"({"output_text":"first","output":[{"content":[{"type":"output_text","text":"second"}]}]})", "first" },
        { R"({"output_text":"","output":[{"content":[{"type":"output_text","text":"second"}]}]})", "second" },
        { output (element ("output_text", "deep")), "deep" },
        { output (element ("reasoning", "no") + "," + element ("output_text", "yes")), "yes" },
        { output (element ("output_text", "") + "," + element ("output_text", "later")), "" },       // the first decides
        { R"({"output":[7,"x",null,{"content":7},{"content":[7,null]},{"content":[{"type":"output_text","text":"found"}]}]})", "found" },
        { R"({"output":[{"content":[{"type":"output_text","text":""}]},{"content":[{"type":"output_text","text":"later"}]}]})", "" },
        { R"({"output":[{"content":[{"type":"Output_Text","text":"case"}]}]})", "" },
        { R"({"output":[]})", "" },
        { R"({"output":{"content":[]}})", "" },
        { R"({"output":"text"})", "" },
        { "{}", "" },
        { "[]", "" },
        { R"(["output_text"])", "" },
        { "no JSON", "" },
        { "", "" },
        { R"({"output_text":42})", "42" },
    };

    for (const auto& [body, text] : cases)
        EXPECT_EQ (OpenAiReply::extractOutputText (body), text) << body;

    EXPECT_EQ (OpenAiReply::extractOutputText (utf8 (R"({"output_text":"größe"})")), utf8 ("größe"));
}

TEST (OpenAiReply, AReplyThatNestsTooDeepHoldsNoText)
{
    EXPECT_EQ (OpenAiReply::extractOutputText (R"({"output_text":"x","more":)" + juce::String::repeatedString ("[", 100000)), "");
}

//==============================================================================
TEST (OpenAiReply, EachStatusMeansOneThing)
{
    const struct { int status; const char* body; bool connected; Kind kind; const char* message; } cases[]
    {
        { 0, "", false, Kind::network, "ZORVA Hub could not reach OpenAI. Check your connection." },
        { 500, "", false, Kind::network, "ZORVA Hub could not reach OpenAI. Check your connection." },
        { 0, "", true, Kind::network, "ZORVA Hub could not reach OpenAI. Check your connection." },
        { 401, "", true, Kind::invalidKey, "OpenAI rejected the API key. Replace it in ZORVA Hub Settings." },
        { 403, "", true, Kind::invalidKey, "OpenAI rejected the API key. Replace it in ZORVA Hub Settings." },
        { 402, "", true, Kind::billing, "The OpenAI API account has no available credit or quota." },
        { 429, "You exceeded your QUOTA.", true, Kind::billing, "The OpenAI API account has no available credit or quota." },
        { 429, "see bIlLiNg", true, Kind::billing, "The OpenAI API account has no available credit or quota." },
        { 429, "{\"code\":\"Insufficient_funds\"}", true, Kind::billing, "The OpenAI API account has no available credit or quota." },
        { 429, "slow down", true, Kind::rateLimited, "OpenAI rate-limited the request. Wait briefly and try again." },
        { 429, "", true, Kind::rateLimited, "OpenAI rate-limited the request. Wait briefly and try again." },
        { 400, "quota", true, Kind::badRequest, "OpenAI rejected the pilot request configuration." },
        { 404, "", true, Kind::badRequest, "OpenAI rejected the pilot request configuration." },
        { 422, "", true, Kind::badRequest, "OpenAI rejected the pilot request configuration." },
        { 100, "", true, Kind::internal, "The OpenAI request failed." },
        { 302, "", true, Kind::internal, "The OpenAI request failed." },
        { 409, "", true, Kind::internal, "The OpenAI request failed." },
        { 499, "", true, Kind::internal, "The OpenAI request failed." },
        { 500, "", true, Kind::serviceUnavailable, "OpenAI is temporarily unavailable. Try again later." },
        { 503, "", true, Kind::serviceUnavailable, "OpenAI is temporarily unavailable. Try again later." },
        { 599, "", true, Kind::serviceUnavailable, "OpenAI is temporarily unavailable. Try again later." },
    };

    for (const auto& each : cases)
    {
        const auto result = OpenAiReply::mapHttpFailure (each.status, each.body, each.connected, "req_1");
        EXPECT_FALSE (result.ok);
        EXPECT_EQ (result.text, "");
        EXPECT_EQ (result.error, each.kind) << each.status;
        EXPECT_EQ (result.message, each.message) << each.status;
        EXPECT_EQ (result.httpStatus, each.status);
        EXPECT_EQ (result.upstreamRequestId, "req_1");
    }
}

TEST (OpenAiReply, KindsHaveFixedNumbersAndNames)
{
    const char* const names[] { "none", "missing_key", "invalid_key", "billing", "rate_limited", "bad_request", "service_unavailable", "timeout",
                                "network", "response_too_large", "invalid_response", "internal" };

    for (int i = 0; i < 12; ++i)
        EXPECT_EQ (HubOpenAiClient::errorKindName (static_cast<Kind> (i)), names[i]);

    EXPECT_EQ (HubOpenAiClient::errorKindName (static_cast<Kind> (12)), "internal");
    EXPECT_EQ (HubOpenAiClient::errorKindName (static_cast<Kind> (-1)), "internal");
}
