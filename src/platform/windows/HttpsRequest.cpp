#include "platform/HttpsRequest.h"

#include <atomic>

namespace platform
{
struct HttpsRequest::Pimpl
{
    explicit Pimpl (int timeout) : timeoutMs (timeout) {}

    /** The stream for a new request, known to cancel(); null after that, and for an address that is not for https. */
    juce::WebInputStream* begin (const juce::String& address)
    {
        location.clear();
        bodyLength = -1;
        position = statusCode = 0;

        if (! address.startsWithIgnoreCase ("https://"))
            return nullptr;

        auto created = std::make_unique<juce::WebInputStream> (juce::URL::createWithoutParsing (address), false);
        created->withConnectionTimeout (timeoutMs).withNumRedirectsToFollow (0);

        const juce::ScopedLock scope (lock);
        stream = isCancelled ? nullptr : std::move (created);
        return stream.get();
    }

    const int timeoutMs;
    juce::CriticalSection lock;    // between cancel() and the replacement of the stream
    std::unique_ptr<juce::WebInputStream> stream;
    std::atomic<bool> isCancelled { false };
    juce::String location;
    juce::int64 bodyLength = -1, position = 0;
    int statusCode = 0;
    bool isBroken = false;
};

HttpsRequest::HttpsRequest (int timeoutMs) : pimpl (std::make_unique<Pimpl> (timeoutMs)) {}
HttpsRequest::~HttpsRequest() = default;

bool HttpsRequest::open (const juce::String& httpsAddress)
{
    auto* stream = pimpl->begin (httpsAddress);
    pimpl->isBroken = stream == nullptr || ! stream->connect (nullptr) || pimpl->isCancelled;

    if (pimpl->isBroken)
        return false;

    const auto headers = stream->getResponseHeaders();
    const auto length = headers["Content-Length"];
    pimpl->statusCode = stream->getStatusCode();
    pimpl->location = headers["Location"].trim();
    pimpl->bodyLength = length.isEmpty() ? -1 : length.getLargeIntValue();    // the stream's own answer has 32 bits
    pimpl->position = 0;
    return true;
}

int HttpsRequest::statusCode() const             { return pimpl->statusCode; }
juce::String HttpsRequest::location() const      { return pimpl->location; }
juce::int64 HttpsRequest::bodyLength() const     { return pimpl->bodyLength; }
bool HttpsRequest::isBroken() const              { return pimpl->isBroken || pimpl->isCancelled; }

int HttpsRequest::read (void* buffer, int size)
{
    if (pimpl->isBroken || pimpl->stream == nullptr)
        return -1;

    const auto count = pimpl->stream->read (buffer, size);
    pimpl->position += juce::jmax (0, count);
    pimpl->isBroken = pimpl->isCancelled || count < 0 || (count == 0 && pimpl->position < pimpl->bodyLength);
    return pimpl->isBroken ? -1 : count;
}

void HttpsRequest::cancel()
{
    const juce::ScopedLock scope (pimpl->lock);
    pimpl->isCancelled = true;

    if (pimpl->stream != nullptr)
        pimpl->stream->cancel();
}
}
