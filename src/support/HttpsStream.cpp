#include "support/HttpsStream.h"

#include "platform/HttpsRequest.h"
#include "support/HttpsAddress.h"

namespace
{
constexpr int maximumRedirects = 5;

bool isRedirect (int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}
}

struct HttpsStream::Connection
{
    juce::String address;
    platform::HttpsRequest request;
};

HttpsStream::HttpsStream (const juce::String& address, int connectTimeoutMs)
    : connection (new Connection { address.trim(), platform::HttpsRequest (connectTimeoutMs) })
{
}

HttpsStream::~HttpsStream() = default;

bool HttpsStream::connect()
{
    auto& request = connection->request;
    auto address = connection->address;

    for (int redirects = 0; isHttpsAddress (address) && request.open (address); ++redirects)
    {
        if (! isRedirect (request.statusCode()) || request.location().isEmpty())
            return true;

        if (redirects == maximumRedirects)
            break;

        address = redirectTarget (address, request.location());
    }

    request.cancel();
    return false;
}

juce::int64 HttpsStream::totalLength() const
{
    return connection->request.bodyLength();
}

int HttpsStream::read (void* buffer, int size)
{
    return connection->request.read (buffer, size);
}

bool HttpsStream::failed() const
{
    return connection->request.isBroken();
}

void HttpsStream::cancel()
{
    connection->request.cancel();
}
