#include "support/TrustedTestServer.h"

#include <gtest/gtest.h>

namespace zorva::test
{
namespace
{
juce::DynamicObject::Ptr order (const char* what)
{
    juce::DynamicObject::Ptr object = new juce::DynamicObject();
    object->setProperty ("do", what);
    return object;
}
}

//==============================================================================
TrustedTestServer::Answer TrustedTestServer::Answer::text (const juce::String& content, int status)
{
    Answer answer;
    answer.status = status;
    answer.body.append (content.toRawUTF8(), content.getNumBytesAsUTF8());
    return answer;
}

TrustedTestServer::Answer TrustedTestServer::Answer::bytes (juce::int64 size)
{
    jassert (size % 256 == 0 || size < 65536);
    Answer answer;
    answer.repeat = size % 256 == 0 ? size / 256 : 1;
    answer.body.setSize ((size_t) (size % 256 == 0 ? juce::jmin (size, (juce::int64) 256) : size));

    for (size_t i = 0; i < answer.body.getSize(); ++i)
        answer.body[i] = (char) (i % 256);

    return answer;
}

TrustedTestServer::Answer TrustedTestServer::Answer::redirect (const juce::String& to)
{
    Answer answer;
    answer.status = 302;
    answer.location = to;
    return answer;
}

TrustedTestServer::Answer TrustedTestServer::Answer::truncatedTo (int size) const
{
    auto answer = *this;
    answer.statedLength = (juce::int64) body.getSize();
    answer.body.setSize ((size_t) size);
    return answer;
}

TrustedTestServer::Answer TrustedTestServer::Answer::heldAfter (juce::int64 size) const
{
    auto answer = *this;
    answer.holdAfter = size;
    return answer;
}

TrustedTestServer::Answer TrustedTestServer::Answer::silenced() const
{
    auto answer = *this;
    answer.silent = true;
    return answer;
}

//==============================================================================
TrustedTestServer::TrustedTestServer (Trust trust)
{
    if (! process.start())
    {
        ADD_FAILURE() << "Could not start the test server: " << process.problem();
        return;
    }

    const auto greeting = juce::JSON::parse (process.readLine());
    httpsPort = greeting["https"];
    httpPort = greeting["http"];
    silentPort = greeting["silent"];

    if (httpsPort == 0)
        ADD_FAILURE() << "The test server did not start; it needs python3 and openssl.";
    else if (trust == Trust::trusted)
        ServerProcess::trustAuthority (greeting["authority"].toString());
}

TrustedTestServer::~TrustedTestServer() = default;

juce::var TrustedTestServer::tell (const juce::var& orderObject)
{
    const juce::ScopedLock lock (mutex);

    if (! process.sendLine (juce::JSON::toString (orderObject, true)))
    {
        ADD_FAILURE() << "The test server is gone.";
        return {};
    }

    const auto answer = juce::JSON::parse (process.readLine());

    if (answer.getDynamicObject() == nullptr)
        ADD_FAILURE() << "The test server does not answer.";

    return answer;
}

juce::String TrustedTestServer::address (const char* scheme, int port, const juce::String& path)
{
    return scheme + juce::String ("://") + ServerProcess::hostName() + ":" + juce::String (port) + path;
}

//==============================================================================
void TrustedTestServer::serve (const juce::String& path, const Answer& answer)
{
    const auto object = order ("answer");
    object->setProperty ("path", path);
    object->setProperty ("status", answer.status);
    object->setProperty ("body", juce::Base64::toBase64 (answer.body.getData(), answer.body.getSize()));
    object->setProperty ("repeat", answer.repeat);
    object->setProperty ("silent", answer.silent);
    object->setProperty ("pieceBytes", answer.pieceBytes);
    object->setProperty ("pauseMs", answer.pauseMs);

    if (answer.statedLength.has_value())
        object->setProperty ("stated", *answer.statedLength);

    if (answer.holdAfter.has_value())
        object->setProperty ("holdAfter", *answer.holdAfter);

    object->setProperty ("headerLines", answer.headerLines);

    if (answer.location.isNotEmpty())
    {
        juce::DynamicObject::Ptr headers = new juce::DynamicObject();
        headers->setProperty ("Location", answer.location);
        object->setProperty ("headers", headers.get());
    }

    tell (object.get());
}

void TrustedTestServer::release (const juce::String& path)
{
    const auto object = order ("release");
    object->setProperty ("path", path);
    tell (object.get());
}

std::vector<TrustedTestServer::Request> TrustedTestServer::requests()
{
    const auto log = tell (order ("log").get());
    std::vector<Request> result;

    if (const auto* entries = log["requests"].getArray())
        for (const auto& entry : *entries)
        {
            juce::MemoryOutputStream body;
            juce::Base64::convertFromBase64 (body, entry["body"].toString());
            result.push_back ({ entry["scheme"], entry["path"], entry["sent"], entry["finished"], entry["method"], entry["headers"],
                                body.getMemoryBlock() });
        }

    return result;
}

int TrustedTestServer::requestCount (const juce::String& path)
{
    const auto all = requests();
    return (int) std::count_if (all.begin(), all.end(), [&] (const Request& request) { return request.path == path; });
}

int TrustedTestServer::silentConnections()
{
    return tell (order ("log").get())["silent"];
}
}
