#include "support/SecretServiceSession.h"

#include "ai/HubCredentialStore.h"
#include "support/Files.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zorva::test
{
namespace
{
constexpr auto serviceName = "org.freedesktop.secrets";
constexpr auto servicePath = "/org/freedesktop/secrets";
constexpr auto defaultCollection = "/org/freedesktop/secrets/aliases/default";
constexpr auto password = "test";

/** Any program may do anything on this bus, and none is started by it. */
juce::String busConfiguration (const juce::File& socket)
{
    return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=)" + socket.getFullPathName() + R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
}

bool waitUntil (const std::function<bool()>& condition)
{
    for (const auto end = juce::Time::getMillisecondCounterHiRes() + 20000; juce::Time::getMillisecondCounterHiRes() < end;)
    {
        if (condition())
            return true;

        juce::Thread::sleep (10);
    }

    return false;
}

/** What a command prints, to both streams. One that waits for an answer by a person is ended. */
juce::String outputOf (const juce::StringArray& command)
{
    juce::StringArray bounded { "timeout", "20" };
    bounded.addArray (command);
    juce::ChildProcess process;

    if (! process.start (bounded))
    {
        ADD_FAILURE() << "Could not start " << command[0];
        return {};
    }

    return process.readAllProcessOutput();
}

juce::StringArray send (const juce::String& path, const juce::String& destination)
{
    return { "dbus-send", "--session", "--print-reply", "--dest=" + destination, path };
}

void end (int& process)
{
    if (process < 0)
        return;

    ::kill (process, SIGKILL);    // ends a stopped one too
    ::waitpid (process, nullptr, 0);
    process = -1;
}

void freeze (int process)
{
    int status = 0;

    if (process < 0 || ::kill (process, SIGSTOP) != 0 || ::waitpid (process, &status, WUNTRACED) != process || ! WIFSTOPPED (status))
        ADD_FAILURE() << "Could not stop the process.";
}

juce::File nextFolder()
{
    static int number = 0;
    return freshFolder ("bus" + juce::String (++number));    // short, because a socket's path must be
}
}

//==============================================================================
SecretServiceSession::SecretServiceSession (Keyring wanted) : folder (nextFolder())
{
    for (const auto* name : { "home", "runtime" })
        if (folder.getChildFile (name).createDirectory().failed())
            ADD_FAILURE() << "Could not make a folder for the keyring.";

    ::chmod (folder.getChildFile ("runtime").getFullPathName().toRawUTF8(), 0700);
    startBus();

    if (wanted == Keyring::running)
        startKeyring();
}

SecretServiceSession::~SecretServiceSession()
{
    end (keyring);
    end (bus);
}

void SecretServiceSession::startBus()
{
    const auto socket = folder.getChildFile ("socket");
    const auto configuration = write (folder.getChildFile ("bus.conf"), busConfiguration (socket));
    ::setenv ("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + socket.getFullPathName()).toRawUTF8(), 1);

    // The bus ends with this process however that ends, and the keyring with the bus.
    bus = start ({ "setpriv", "--pdeathsig", "KILL", "dbus-daemon", "--config-file=" + configuration.getFullPathName(), "--nofork",
                   "--nopidfile" },
                 -1, folder.getChildFile ("bus.log"));

    if (! waitUntil ([&] { return socket.exists(); }))
        ADD_FAILURE() << "No session bus: " << read (folder.getChildFile ("bus.log"));
}

void SecretServiceSession::startKeyring()
{
    int ends[2] = { -1, -1 };

    if (::pipe2 (ends, O_CLOEXEC) != 0 || ::write (ends[1], password, std::strlen (password)) != (ssize_t) std::strlen (password))
        ADD_FAILURE() << "Could not make a pipe for the keyring's password.";

    ::close (ends[1]);

    // The password makes the keyring and opens it; without one every call would ask the user.
    keyring = start ({ "env", "HOME=" + folder.getChildFile ("home").getFullPathName(),
                       "XDG_RUNTIME_DIR=" + folder.getChildFile ("runtime").getFullPathName(), "gnome-keyring-daemon", "--foreground",
                       "--unlock", "--components=secrets",
                       "--control-directory=" + folder.getChildFile ("runtime").getFullPathName() },
                     ends[0], folder.getChildFile ("keyring.log"));
    ::close (ends[0]);

    if (! waitUntil ([this] { return hasOwner(); }))
        ADD_FAILURE() << "No keyring: " << read (folder.getChildFile ("keyring.log"));
}

int SecretServiceSession::start (const juce::StringArray& command, int input, const juce::File& output) const
{
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init (&actions);

    if (input >= 0)
        ::posix_spawn_file_actions_adddup2 (&actions, input, STDIN_FILENO);
    else
        ::posix_spawn_file_actions_addopen (&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);

    ::posix_spawn_file_actions_addopen (&actions, STDOUT_FILENO, output.getFullPathName().toRawUTF8(), O_WRONLY | O_CREAT | O_TRUNC,
                                        0600);
    ::posix_spawn_file_actions_adddup2 (&actions, STDOUT_FILENO, STDERR_FILENO);

    std::vector<char*> arguments;

    for (const auto& word : command)
        arguments.push_back (const_cast<char*> (word.toRawUTF8()));

    arguments.push_back (nullptr);
    int process = -1;
    const auto error = ::posix_spawnp (&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy (&actions);

    if (error == 0)
        return process;

    ADD_FAILURE() << "Could not start " << command.joinIntoString (" ") << ": " << std::strerror (error);
    return -1;
}

bool SecretServiceSession::hasOwner() const
{
    auto question = send ("/", "org.freedesktop.DBus");
    question.addArray ({ "org.freedesktop.DBus.NameHasOwner", "string:" + juce::String (serviceName) });
    return outputOf (question).contains ("boolean true");
}

//==============================================================================
void SecretServiceSession::lock()
{
    auto order = send (servicePath, serviceName);
    order.addArray ({ "org.freedesktop.Secret.Service.Lock", "array:objpath:" + juce::String (defaultCollection) });
    const auto answer = outputOf (order);
    EXPECT_TRUE (answer.contains (defaultCollection)) << answer;
}

void SecretServiceSession::plant (const juce::MemoryBlock& secret, const juce::StringArray& moreAttributes)
{
    const auto input = writeBytes (folder.getChildFile ("planted"), { (const char*) secret.getData(), secret.getSize() });

    juce::StringArray command { "sh", "-c", R"(input=$1; shift; secret-tool store --label=planted "$@" < "$input" && echo stored)", "sh",
                                input.getFullPathName(), "target", credentialTargetName, "user", credentialUserName };
    command.addArray (moreAttributes);
    const auto answer = outputOf (command);
    EXPECT_EQ (answer, "stored\n");
}

juce::String SecretServiceSession::lookUp() const
{
    return outputOf ({ "secret-tool", "lookup", "target", credentialTargetName, "user", credentialUserName });
}

juce::StringArray SecretServiceSession::items() const
{
    return juce::StringArray::fromLines (outputOf ({ "secret-tool", "search", "--all", "target", credentialTargetName }));
}

int SecretServiceSession::itemCount() const
{
    int count = 0;

    for (const auto& line : items())
        count += line.startsWith ("[/") ? 1 : 0;

    return count;
}

juce::File SecretServiceSession::keyringFolder() const
{
    return folder.getChildFile ("home/.local/share/keyrings");
}

//==============================================================================
void SecretServiceSession::stopAnswering()
{
    freeze (keyring);
}

void SecretServiceSession::answerAgain()
{
    EXPECT_EQ (::kill (keyring, SIGCONT), 0);
}

void SecretServiceSession::stopBus()
{
    freeze (bus);
}

void SecretServiceSession::endKeyring()
{
    end (keyring);
    EXPECT_TRUE (waitUntil ([this] { return ! hasOwner(); })) << "The keyring's name stays on the bus.";
}

void SecretServiceSession::killBus()
{
    end (bus);
}

//==============================================================================
void SecretServiceSession::sendMarker (const juce::String& name) const
{
    outputOf ({ "dbus-send", "--session", "/", "org.zorva.test." + name });
}

juce::String SecretServiceSession::messagesDuring (const std::function<void()>& action)
{
    const auto log = folder.getChildFile ("messages.log");
    const juce::String first ("member=Begin"), last ("member=End");
    auto monitor = start ({ "dbus-monitor", "--session" }, -1, log);

    const auto hasSeen = [&] (const juce::String& marker) { return log.loadFileAsString().contains (marker); };

    EXPECT_TRUE (waitUntil ([&] { sendMarker ("Begin"); return hasSeen (first); })) << "No message is seen on the bus.";
    action();
    sendMarker ("End");
    EXPECT_TRUE (waitUntil ([&] { return hasSeen (last); })) << "The last message is not seen on the bus.";
    end (monitor);
    return log.loadFileAsString().fromLastOccurrenceOf (first, false, false).upToFirstOccurrenceOf (last, false, false);
}
}
