#pragma once

#include "support/HttpsStream.h"
#include "support/TrustedTestServer.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zorva::test
{
/** Reads to the end in pieces of this size: the body, and after a failure "(failed)" behind it. */
inline std::string readAll (HttpsStream& stream, int pieceSize = 65536)
{
    std::string body;
    std::vector<char> piece ((size_t) pieceSize);

    for (;;)
    {
        const int count = stream.read (piece.data(), pieceSize);
        EXPECT_LE (count, pieceSize);

        if (count <= 0)
        {
            EXPECT_EQ (stream.failed(), count < 0);
            return count < 0 ? body + "(failed)" : body;
        }

        body.append (piece.data(), (size_t) count);
    }
}

/** What a fresh stream gives for an address: the body, or "(not connected)". */
inline std::string fetch (const juce::String& address, int timeoutMs = 0)
{
    HttpsStream stream (address, timeoutMs);

    if (! stream.connect())
    {
        char byte = 0;
        EXPECT_TRUE (stream.failed());
        EXPECT_LT (stream.read (&byte, 1), 0);
        return "(not connected)";
    }

    return readAll (stream);
}

/** The whole body of an answer. */
inline std::string asText (const TrustedTestServer::Answer& answer)
{
    std::string text;

    for (juce::int64 i = 0; i < answer.repeat; ++i)
        text.append (static_cast<const char*> (answer.body.getData()), answer.body.getSize());

    return text;
}
}
