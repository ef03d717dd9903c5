#include "support/TrustedTestServer.h"
#include "support/PrivateMounts.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zorva::test
{
namespace
{
constexpr int answerTimeoutMs = 20000;

juce::DynamicObject::Ptr order (const char* what)
{
    juce::DynamicObject::Ptr object = new juce::DynamicObject();
    object->setProperty ("do", what);
    return object;
}

/** The list of authorities that stands in for the system's, one a process. */
const juce::File& authorityList()
{
    static const auto list = []
    {
        const auto file = juce::File::createTempFile (".pem");
        const juce::File systemList ("/etc/ssl/certs/ca-certificates.crt");

        if (! systemList.existsAsFile())
            ADD_FAILURE() << "No " << systemList.getFullPathName() << ": install ca-certificates";
        else if (file.create().wasOk())
            PrivateMounts::showInPlaceOf (file, systemList);

        return file;
    }();

    return list;
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
    if (! start())
    {
        ADD_FAILURE() << "Could not start the test server: " << std::strerror (errno);
        return;
    }

    const auto greeting = readLine();
    httpsPort = greeting["https"];
    httpPort = greeting["http"];
    silentPort = greeting["silent"];

    if (httpsPort == 0)
        ADD_FAILURE() << "The test server did not start; it needs python3 and openssl.";
    else if (trust == Trust::trusted)
        trustAuthority (juce::File (greeting["authority"].toString()));
}

TrustedTestServer::~TrustedTestServer()
{
    if (connection >= 0)
        ::close (connection);    // the end of its input ends the server

    if (process > 0)
        ::waitpid (process, nullptr, 0);
}

bool TrustedTestServer::start()
{
    int ends[2] = { -1, -1 };

    if (::socketpair (AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return false;

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init (&actions);
    ::posix_spawn_file_actions_adddup2 (&actions, ends[1], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2 (&actions, ends[1], STDOUT_FILENO);

    const char* arguments[] = { "python3", HUB_TEST_SUPPORT_FOLDER "/https_server.py", nullptr };
    const auto error = ::posix_spawnp (&process, arguments[0], &actions, nullptr, const_cast<char**> (arguments), environ);
    ::posix_spawn_file_actions_destroy (&actions);
    ::close (ends[1]);
    connection = ends[0];
    errno = error;
    return error == 0;
}

void TrustedTestServer::trustAuthority (const juce::File& certificate)
{
    if (! authorityList().appendText (certificate.loadFileAsString()))
        ADD_FAILURE() << "Could not extend the list of authorities " << authorityList().getFullPathName();
}

juce::var TrustedTestServer::readLine()
{
    while (! unread.containsChar ('\n'))
    {
        pollfd waiting { connection, POLLIN, 0 };
        char bytes[4096];

        if (::poll (&waiting, 1, answerTimeoutMs) != 1)
            break;

        const auto count = ::read (connection, bytes, sizeof (bytes));

        if (count <= 0)
            break;

        unread += juce::String::fromUTF8 (bytes, (int) count);    // the server writes ASCII only
    }

    const auto line = unread.upToFirstOccurrenceOf ("\n", false, false);
    unread = unread.fromFirstOccurrenceOf ("\n", false, false);
    return juce::JSON::parse (line);
}

juce::var TrustedTestServer::tell (const juce::var& orderObject)
{
    const juce::ScopedLock lock (mutex);
    const auto line = juce::JSON::toString (orderObject, true) + "\n";
    const auto size = line.getNumBytesAsUTF8();

    for (size_t sent = 0; sent < size;)
    {
        const auto count = ::send (connection, line.toRawUTF8() + sent, size - sent, MSG_NOSIGNAL);

        if (count <= 0)
        {
            ADD_FAILURE() << "The test server is gone.";
            return {};
        }

        sent += (size_t) count;
    }

    const auto answer = readLine();

    if (answer.getDynamicObject() == nullptr)
        ADD_FAILURE() << "The test server does not answer.";

    return answer;
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
