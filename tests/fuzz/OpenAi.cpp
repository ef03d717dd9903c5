#include "FuzzHome.h"

#include "ai/OpenAiReply.h"
#include "support/BoundedJson.h"
#include "support/Utf8.h"

namespace
{
void require (bool condition)
{
    if (! condition)
        std::abort();
}

void checkExtraction (const juce::String& body)
{
    const auto text = OpenAiReply::extractOutputText (body);
    const auto reply = BoundedJson::parse (body);

    if (BoundedJson::objectIn (reply) == nullptr)
        return require (text.isEmpty());

    const auto topLevel = reply["output_text"];

    if (topLevel.isString() && topLevel.toString().isNotEmpty())
        require (text == topLevel.toString());
    else if (topLevel.isVoid() && ! reply["output"].isArray())
        require (text.isEmpty());
}

void checkFailure (int status, const juce::String& body, bool connected)
{
    const auto result = OpenAiReply::mapHttpFailure (status, body, connected, "id");
    require (! result.ok && result.text.isEmpty() && result.message.isNotEmpty());
    require (result.error != HubOpenAiClient::ErrorKind::none && result.httpStatus == status && result.upstreamRequestId == "id");
    require (connected || result.error == HubOpenAiClient::ErrorKind::network);
    require (HubOpenAiClient::errorKindName (result.error) != "none");
}

/** Whatever the prompt, the request says it word for word. */
void checkRequest (const juce::String& prompt, int tokens)
{
    const auto request = BoundedJson::parse (OpenAiReply::buildRequestBody (prompt, tokens));
    require (BoundedJson::textIn (request, "input") == prompt);
    require (BoundedJson::integerIn (request, "max_output_tokens") >= 1 && BoundedJson::integerIn (request, "max_output_tokens") <= 4096);
}
}

/** Two bytes of status, then a body as the service may send it. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    if (size < 2 || ! isUtf8 (data + 2, size - 2))
        return 0;

    const auto status = (int) juce::ByteOrder::bigEndianShort (data);
    const auto body = juce::String::fromUTF8 (reinterpret_cast<const char*> (data) + 2, (int) size - 2);
    checkExtraction (body);
    checkFailure (status, body, true);
    checkFailure (status, body, false);
    checkRequest (body, status - 32768);
    return 0;
}
