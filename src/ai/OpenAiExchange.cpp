#include "ai/OpenAiExchange.h"

#include "ai/OpenAiReply.h"
#include "support/Utf8.h"

namespace
{
using ErrorKind = HubOpenAiClient::ErrorKind;
using Result = HubOpenAiClient::Result;

constexpr size_t maximumKeyBytes = 2048, maximumResponseBytes = 393216;
constexpr int readBufferBytes = 8192;

bool isRequestIdName (const juce::String& name)
{
    return name.equalsIgnoreCase ("x-request-id") || name.equalsIgnoreCase ("openai-request-id");
}

juce::String requestIdIn (const juce::StringPairArray& headers)
{
    for (const auto& name : headers.getAllKeys())
    {
        if (isRequestIdName (name))
            return headers[name].trim();

        // The framework separates name and value at a colon with a blank, which HTTP (RFC 9110) does not ask for, and otherwise
        // takes the whole line for the name.
        if (isRequestIdName (name.upToFirstOccurrenceOf (":", false, false)))
            return name.fromFirstOccurrenceOf (":", false, false).trim();
    }

    return {};
}

juce::String textOf (const juce::MemoryOutputStream& body)
{
    return juce::String::fromUTF8 (static_cast<const char*> (body.getData()), (int) body.getDataSize());
}

/** Bytes that are no UTF-8, with all but their ASCII characters replaced: enough to look for words in. */
juce::String asciiOf (const juce::MemoryOutputStream& body)
{
    std::string text (static_cast<const char*> (body.getData()), body.getDataSize());

    for (auto& character : text)
        if (! juce::isPositiveAndBelow ((int) character, 128))
            character = '?';

    return text;
}
}

OpenAiExchange::OpenAiExchange (juce::WebInputStream& streamToUse) : stream (streamToUse) {}

bool OpenAiExchange::authorise (const juce::MemoryBlock& key)
{
    if (key.isEmpty() || key.getSize() > maximumKeyBytes || ! isUtf8 (key.getData(), key.getSize()))
        return false;

    auto text = juce::String::fromUTF8 (static_cast<const char*> (key.getData()), (int) key.getSize());

    // A text that a zero byte has cut short is not the key that is stored.
    const bool isUsable = text.getNumBytesAsUTF8() == key.getSize() && isAcceptableApiKey (text);

    if (isUsable)
    {
        // With room for what the stream itself appends, and for the UTF-16 form that Windows wants, which lies behind it in the same
        // buffer: a text that has to grow leaves the old one behind on the heap. The stream takes this very buffer over, so nothing
        // here may overwrite it.
        juce::String headers;
        headers.preallocateBytes (3 * (maximumKeyBytes + 512));
        headers << "Content-Type: application/json\r\nAuthorization: Bearer " << text << "\r\n";
        stream.withExtraHeaders (headers);
    }

    platform::wipeText (text);
    return isUsable;
}

void OpenAiExchange::run()
{
    isConnected = stream.connect (nullptr);

    if (isConnected)
        requestId = requestIdIn (stream.getResponseHeaders());

    // A stream that was cancelled before any answer calls its status -1.
    status = juce::jmax (0, stream.getStatusCode());

    if (isConnected)
        isTooLarge = ! readBody();
}

bool OpenAiExchange::readBody()
{
    juce::HeapBlock<char> buffer (readBufferBytes);

    while (! stream.isExhausted())
    {
        const auto count = stream.read (buffer, readBufferBytes);

        // After a cancel a stream need not call itself exhausted.
        if (count < 1)
            break;

        if (body.getDataSize() + (size_t) count > maximumResponseBytes)
        {
            stream.cancel();
            return false;
        }

        body.write (buffer, (size_t) count);
    }

    return true;
}

Result OpenAiExchange::result() const
{
    Result whole;

    if (isTooLarge)
    {
        whole.error = ErrorKind::responseTooLarge;
        whole.message = "The OpenAI response exceeded the 384 KB safety limit.";
    }
    else
    {
        whole = resultOfBody();
    }

    whole.upstreamRequestId = requestId;
    whole.httpStatus = status;
    return whole;
}

Result OpenAiExchange::resultOfBody() const
{
    const bool isText = isUtf8 (body.getData(), body.getDataSize());

    if (! isConnected || status < 200 || status > 299)
        return OpenAiReply::mapHttpFailure (status, isText ? textOf (body) : asciiOf (body), isConnected, requestId);

    Result answer;
    answer.text = isText ? OpenAiReply::extractOutputText (textOf (body)) : juce::String();
    answer.ok = answer.text.isNotEmpty();

    if (! answer.ok)
    {
        answer.error = ErrorKind::invalidResponse;
        answer.message = "OpenAI returned an empty or unsupported response.";
    }

    return answer;
}
