#include "support/ServerProcess.h"

#include "platform/windows/WindowsHeaders.h"

#include <gtest/gtest.h>
#include <wincrypt.h>

namespace zorva::test
{
namespace
{
constexpr juce::uint32 answerTimeoutMs = 20000;
}

/** The server is told of a port of ours, connects to it, and takes its orders from there: unlike a pipe this also works when it is
    not a program of Windows, as under Wine. */
struct ServerProcess::Pimpl
{
    bool start()
    {
        juce::StreamingSocket listener;

        if (! listener.createListener (0, "127.0.0.1"))
            return fail ("no port to listen on");

        const auto port = juce::String (listener.getBoundPort());
        const auto host = juce::SystemStats::getEnvironmentVariable ("HUB_TEST_HOST", {});    // under Wine, see Host.h
        const auto command = host.isNotEmpty() ? "on-host server " + port
                                               : "python \"" HUB_TEST_SUPPORT_FOLDER "/https_server.py\" --connect " + port;
        std::wstring line (command.toWideCharPointer());
        STARTUPINFOW startup {};
        startup.cb = sizeof (startup);
        PROCESS_INFORMATION process {};

        if (! ::CreateProcessW (host.isEmpty() ? nullptr : host.toWideCharPointer(), line.data(), nullptr, nullptr, FALSE,
                                CREATE_NO_WINDOW, nullptr, nullptr, &startup, &process))
            return fail ("error " + juce::String (::GetLastError()) + " starting " + host + " " + command);

        ::CloseHandle (process.hThread);
        ::CloseHandle (process.hProcess);

        if (listener.waitUntilReady (true, (int) answerTimeoutMs) == 1)
            connection.reset (listener.waitForNextConnection());

        return connection != nullptr || fail ("it did not connect");
    }

    bool fail (const juce::String& reason)
    {
        problem = reason;
        return false;
    }

    std::unique_ptr<juce::StreamingSocket> connection;    // its end ends the server
    juce::String unread, problem;
};

ServerProcess::ServerProcess() : pimpl (std::make_unique<Pimpl>()) {}
ServerProcess::~ServerProcess() = default;

bool ServerProcess::start()                    { return pimpl->start(); }
juce::String ServerProcess::problem() const    { return pimpl->problem; }

bool ServerProcess::sendLine (const juce::String& line)
{
    const auto text = line + "\n";
    const auto size = (int) text.getNumBytesAsUTF8();

    const auto begin = juce::Time::getMillisecondCounter();

    for (int sent = 0; sent < size;)
    {
        if (pimpl->connection == nullptr || juce::Time::getMillisecondCounter() - begin > answerTimeoutMs)
            return false;

        // Writing does not wait: it takes what there is room for, and says no when there is none.
        const auto count = pimpl->connection->write (text.toRawUTF8() + sent, size - sent);
        sent += juce::jmax (0, count);

        if (count <= 0)
            juce::Thread::sleep (1);
    }

    return true;
}

juce::String ServerProcess::readLine()
{
    auto& unread = pimpl->unread;

    while (pimpl->connection != nullptr && ! unread.containsChar ('\n'))
    {
        char bytes[4096];

        if (pimpl->connection->waitUntilReady (true, (int) answerTimeoutMs) != 1)
            break;

        const auto count = pimpl->connection->read (bytes, (int) sizeof (bytes), false);

        if (count <= 0)
            break;

        unread += juce::String::fromUTF8 (bytes, count);    // the server writes ASCII only
    }

    const auto line = unread.upToFirstOccurrenceOf ("\n", false, false);
    unread = unread.fromFirstOccurrenceOf ("\n", false, false);
    return line;
}

void ServerProcess::trustAuthority (const juce::String& certificate)
{
    const auto body = certificate.fromFirstOccurrenceOf ("-----BEGIN CERTIFICATE-----", false, false)
                                 .upToFirstOccurrenceOf ("-----END", false, false);
    juce::MemoryOutputStream bytes;

    if (! juce::Base64::convertFromBase64 (bytes, body.removeCharacters ("\r\n")))
    {
        ADD_FAILURE() << "The test server's authority has no certificate.";
        return;
    }

    // The user's list of authorities lies in the registry, of which a test process has its own.
    auto* const store = ::CertOpenStore (CERT_STORE_PROV_SYSTEM_W, 0, 0, CERT_SYSTEM_STORE_CURRENT_USER, L"Root");

    if (store == nullptr || ! ::CertAddEncodedCertificateToStore (store, X509_ASN_ENCODING, static_cast<const BYTE*> (bytes.getData()),
                                                                  (DWORD) bytes.getDataSize(), CERT_STORE_ADD_REPLACE_EXISTING, nullptr))
        ADD_FAILURE() << "Could not extend the list of authorities: error " << ::GetLastError();

    if (store != nullptr)
        ::CertCloseStore (store, 0);
}

// Only names are looked for in a certificate here, not numbers.
juce::String ServerProcess::hostName()    { return "localhost"; }
}
