#include "support/ServerProcess.h"

#include "support/PrivateMounts.h"

#include <cerrno>
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

struct ServerProcess::Pimpl
{
    int connection = -1, process = -1, error = 0;
    juce::String unread;
};

ServerProcess::ServerProcess() : pimpl (std::make_unique<Pimpl>()) {}

ServerProcess::~ServerProcess()
{
    if (pimpl->connection >= 0)
        ::close (pimpl->connection);    // the end of its input ends the server

    if (pimpl->process > 0)
        ::waitpid (pimpl->process, nullptr, 0);
}

bool ServerProcess::start()
{
    int ends[2] = { -1, -1 };

    if (::socketpair (AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
    {
        pimpl->error = errno;
        return false;
    }

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init (&actions);
    ::posix_spawn_file_actions_adddup2 (&actions, ends[1], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2 (&actions, ends[1], STDOUT_FILENO);

    const char* arguments[] = { "python3", HUB_TEST_SUPPORT_FOLDER "/https_server.py", nullptr };
    pimpl->error = ::posix_spawnp (&pimpl->process, arguments[0], &actions, nullptr, const_cast<char**> (arguments), environ);
    ::posix_spawn_file_actions_destroy (&actions);
    ::close (ends[1]);
    pimpl->connection = ends[0];
    return pimpl->error == 0;
}

juce::String ServerProcess::problem() const    { return juce::String::fromUTF8 (std::strerror (pimpl->error)); }

bool ServerProcess::sendLine (const juce::String& line)
{
    const auto text = line + "\n";
    const auto size = text.getNumBytesAsUTF8();

    for (size_t sent = 0; sent < size;)
    {
        const auto count = ::send (pimpl->connection, text.toRawUTF8() + sent, size - sent, MSG_NOSIGNAL);

        if (count <= 0)
            return false;

        sent += (size_t) count;
    }

    return true;
}

juce::String ServerProcess::readLine()
{
    auto& unread = pimpl->unread;

    while (! unread.containsChar ('\n'))
    {
        pollfd waiting { pimpl->connection, POLLIN, 0 };
        char bytes[4096];

        if (::poll (&waiting, 1, answerTimeoutMs) != 1)
            break;

        const auto count = ::read (pimpl->connection, bytes, sizeof (bytes));

        if (count <= 0)
            break;

        unread += juce::String::fromUTF8 (bytes, (int) count);    // the server writes ASCII only
    }

    const auto line = unread.upToFirstOccurrenceOf ("\n", false, false);
    unread = unread.fromFirstOccurrenceOf ("\n", false, false);
    return line;
}

void ServerProcess::trustAuthority (const juce::String& certificate)
{
    if (! authorityList().appendText (certificate))
        ADD_FAILURE() << "Could not extend the list of authorities " << authorityList().getFullPathName();
}

juce::String ServerProcess::hostName()    { return "127.0.0.1"; }
}
