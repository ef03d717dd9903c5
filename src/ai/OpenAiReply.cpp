#include "ai/OpenAiReply.h"

#include "support/BoundedJson.h"

namespace OpenAiReply
{
namespace
{
using ErrorKind = HubOpenAiClient::ErrorKind;

constexpr int largestOutputTokens = 4096;
constexpr const char* outputText = "output_text";

/** A property that is not text counts as its text, but what has none, an object or an array, as empty. */
juce::String plainTextIn (const juce::var& value, const juce::Identifier& name)
{
    const auto property = value.getProperty (name, {});
    return property.isObject() || property.isArray() ? juce::String() : property.toString();
}

const juce::var* firstOutputText (const juce::var& output)
{
    const auto* items = output.getArray();

    if (items == nullptr)
        return nullptr;

    for (const auto& item : *items)
    {
        const auto* object = BoundedJson::objectIn (item);
        const auto* parts = object != nullptr ? object->getProperty ("content").getArray() : nullptr;

        if (parts == nullptr)
            continue;

        for (const auto& part : *parts)
            if (BoundedJson::objectIn (part) != nullptr && plainTextIn (part, "type") == outputText)
                return &part;
    }

    return nullptr;
}

struct Meaning
{
    ErrorKind error;
    const char* message;
};

bool speaksOfBilling (const juce::String& body)
{
    return body.containsIgnoreCase ("quota") || body.containsIgnoreCase ("billing") || body.containsIgnoreCase ("insufficient");
}

Meaning meaningOf (int status, const juce::String& body)
{
    constexpr Meaning billing { ErrorKind::billing, "The OpenAI API account has no available credit or quota." };

    switch (status)
    {
        case 401:
        case 403:
            return { ErrorKind::invalidKey, "OpenAI rejected the API key. Replace it in ZORVA Hub Settings." };

        case 402:
            return billing;

        case 429:
            return speaksOfBilling (body)
                     ? billing
                     : Meaning { ErrorKind::rateLimited, "OpenAI rate-limited the request. Wait briefly and try again." };

        case 400:
        case 404:
        case 422:
            return { ErrorKind::badRequest, "OpenAI rejected the pilot request configuration." };

        default:
            break;
    }

    return status < 500 ? Meaning { ErrorKind::internal, "The OpenAI request failed." }
                        : Meaning { ErrorKind::serviceUnavailable, "OpenAI is temporarily unavailable. Try again later." };
}
}

juce::String buildRequestBody (const juce::String& input, int maxOutputTokens)
{
    const juce::DynamicObject::Ptr body (new juce::DynamicObject());
    body->setProperty ("model", HubOpenAiClient::modelName);
    body->setProperty ("input", input);
    body->setProperty ("store", false);
    body->setProperty ("max_output_tokens", juce::jlimit (1, largestOutputTokens, maxOutputTokens));
    return juce::JSON::toString (body.get(), false, 15);
}

juce::String extractOutputText (const juce::String& body)
{
    const auto reply = BoundedJson::parse (body);

    if (BoundedJson::objectIn (reply) == nullptr)
        return {};

    if (const auto text = plainTextIn (reply, outputText); text.isNotEmpty())
        return text;

    const auto output = reply.getProperty ("output", {});
    const auto* part = firstOutputText (output);
    return part != nullptr ? plainTextIn (*part, "text") : juce::String();
}

HubOpenAiClient::Result mapHttpFailure (int status, const juce::String& body, bool connected, const juce::String& upstreamRequestId)
{
    const auto meaning = connected && status != 0
                           ? meaningOf (status, body)
                           : Meaning { ErrorKind::network, "ZORVA Hub could not reach OpenAI. Check your connection." };

    HubOpenAiClient::Result result;
    result.upstreamRequestId = upstreamRequestId;
    result.message = meaning.message;
    result.error = meaning.error;
    result.httpStatus = status;
    return result;
}
}
