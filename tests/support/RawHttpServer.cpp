#include "support/RawHttpServer.h"

#include <gtest/gtest.h>

namespace zorva::test
{
namespace
{
constexpr int lookAgainMs = 50;     // whether the end has come

size_t bodySizeIn (const std::string& head)
{
    return (size_t) juce::String (head).fromFirstOccurrenceOf ("Content-Length:", false, true).getLargeIntValue();
}

bool isWhole (const std::string& request)
{
    const auto end = request.find ("\r\n\r\n");
    return end != std::string::npos && request.size() >= end + 4 + bodySizeIn (request.substr (0, end));
}
}

RawHttpServer::RawHttpServer (std::vector<std::string> piecesToSend, int pause)
    : juce::Thread ("Raw HTTP server"), pieces (std::move (piecesToSend)), pauseMs (pause)
{
    if (! listener.createListener (0, "127.0.0.1") || ! startThread())
        ADD_FAILURE() << "Could not start the raw server";
}

RawHttpServer::~RawHttpServer()
{
    signalThreadShouldExit();
    notify();
    waitForThreadToExit (-1);
}

void RawHttpServer::run()
{
    while (! threadShouldExit())
    {
        if (listener.waitUntilReady (true, lookAgainMs) != 1)
            continue;

        const std::unique_ptr<juce::StreamingSocket> connection (listener.waitForNextConnection());

        if (connection != nullptr && takeRequest (*connection))
            answer (*connection);
    }
}

bool RawHttpServer::takeRequest (juce::StreamingSocket& connection) const
{
    std::string request;
    char bytes[65536];

    while (! isWhole (request))
    {
        if (threadShouldExit())
            return false;

        if (connection.waitUntilReady (true, lookAgainMs) != 1)
            continue;

        const auto count = connection.read (bytes, (int) sizeof (bytes), false);

        if (count < 1)
            return false;

        request.append (bytes, (size_t) count);
    }

    return true;
}

void RawHttpServer::answer (juce::StreamingSocket& connection)
{
    ++requests;

    for (const auto& piece : pieces)
    {
        if (pauseMs > 0)
            wait (pauseMs);

        if (threadShouldExit() || connection.write (piece.data(), (int) piece.size()) != (int) piece.size())
            return;
    }
}
}
