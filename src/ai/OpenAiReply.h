#pragma once

#include "ai/HubOpenAiClient.h"

/** The request body and the reading of replies of the OpenAI Responses API: pure functions, any thread. */
namespace OpenAiReply
{
/** The JSON body of a request; maxOutputTokens is clamped to 1 to 4096. */
juce::String buildRequestBody (const juce::String& input, int maxOutputTokens);

/** The text in a 2xx body: "output_text", or the first element of type "output_text" in "output", even when its text is empty.
    Empty when there is none, when the body is no JSON object, and when it nests deeper than BoundedJson allows. */
juce::String extractOutputText (const juce::String& body);

/** What a failed exchange means to the user; connected is false when no exchange took place. */
HubOpenAiClient::Result mapHttpFailure (int status, const juce::String& body, bool connected, const juce::String& upstreamRequestId);
}
