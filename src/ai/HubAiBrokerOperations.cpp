#include "ai/HubAiBrokerService.h"

// What the broker's four operations do. A log line carries the request's id and a status word, and nothing else.

namespace
{
constexpr int maximumOutputTokens = 2048;

void log (const char* tag, const BrokerRequest& request, const juce::String& status)
{
    juce::Logger::writeToLog (juce::String (tag) + " request id=" + request.requestId + " status=" + status);
}

void logAi (const BrokerRequest& request, const juce::String& status)           { log ("[HUB.AI]", request, status); }
void logCreator (const BrokerRequest& request, const juce::String& status)      { log ("[HUB.CREATOR]", request, status); }
}

juce::MemoryBlock HubAiBrokerService::handleRequest (const juce::MemoryBlock& requestPayload)
{
    BrokerRequest request;
    juce::String error;

    if (! parseBrokerRequest (requestPayload, token, request, error))
        return makeErrorResponse (request.requestId, error, "The local broker request was rejected.", 0);

    if (request.op == "broker.health")
        return answerHealth (request);

    if (request.op == "key.status")
        return answerKeyStatus (request);

    if (request.op == "creator.preview.draft.save")
        return answerDraft (request);

    return answerCompletion (request);
}

juce::MemoryBlock HubAiBrokerService::answerHealth (const BrokerRequest& request)
{
    const juce::DynamicObject::Ptr payload (new juce::DynamicObject());
    payload->setProperty ("ready", true);
    payload->setProperty ("model", HubOpenAiClient::modelName);

    logAi (request, "health_ok");
    return makeSuccessResponse (request.requestId, payload.get());
}

juce::MemoryBlock HubAiBrokerService::answerKeyStatus (const BrokerRequest& request)
{
    const juce::DynamicObject::Ptr payload (new juce::DynamicObject());
    payload->setProperty ("present", credentialStore.hasKey());
    payload->setProperty ("backend", credentialStore.backendName());

    logAi (request, "key_status");
    return makeSuccessResponse (request.requestId, payload.get());
}

juce::MemoryBlock HubAiBrokerService::answerDraft (const BrokerRequest& request)
{
    const auto result = draftStore.save (request.input);

    if (! result.accepted)
    {
        logCreator (request, "draft_rejected reason=" + result.reason);
        return makeErrorResponse (request.requestId, result.reason, "ZORVA Hub could not save the local preview draft.", 0);
    }

    const juce::DynamicObject::Ptr payload (new juce::DynamicObject());
    payload->setProperty ("accepted", true);
    payload->setProperty ("jobId", result.jobId);
    payload->setProperty ("status", "draft-local");
    payload->setProperty ("idempotentReplay", result.idempotentReplay);
    payload->setProperty ("serviceAvailable", false);
    payload->setProperty ("requiresFreshHubConfirmation", true);

    logCreator (request, "draft_saved");
    return makeSuccessResponse (request.requestId, payload.get());
}

juce::MemoryBlock HubAiBrokerService::answerCompletion (const BrokerRequest& request)
{
    const auto result = openAiClient.complete (request.input, maximumOutputTokens);

    if (! result.ok)
    {
        const auto kind = HubOpenAiClient::errorKindName (result.error);
        logAi (request, kind);
        return makeErrorResponse (request.requestId, kind, result.message, result.httpStatus);
    }

    const juce::DynamicObject::Ptr payload (new juce::DynamicObject());
    payload->setProperty ("text", result.text);
    payload->setProperty ("upstreamRequestId", result.upstreamRequestId);

    logAi (request, "complete_ok");
    return makeSuccessResponse (request.requestId, payload.get());
}
