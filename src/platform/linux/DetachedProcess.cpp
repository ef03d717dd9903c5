#include "platform/linux/DetachedProcess.h"

#include "platform/linux/CreationMask.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace platform
{
namespace
{
/** All that the child needs, made before the fork: a child of a process with threads may allocate nothing. */
struct Start
{
    std::vector<char*> arguments;
    const char* folder = nullptr;
    int reportTo = -1;
};

[[noreturn]] void reportAndExit (int descriptor)
{
    const int error = errno;
    const auto written = ::write (descriptor, &error, sizeof (error));
    ::_exit (written == (ssize_t) sizeof (error) ? 127 : 126);
}

void closeAllAtExec()
{
    constexpr int firstOfOurs = 3;

    if (::close_range (firstOfOurs, ~0u, CLOSE_RANGE_CLOEXEC) == 0)
        return;

    // A kernel that does not know the call.
    constexpr rlim_t enough = 65536;
    struct rlimit limit {};
    const auto end = ::getrlimit (RLIMIT_NOFILE, &limit) == 0 ? std::min (limit.rlim_cur, enough) : enough;

    for (int descriptor = firstOfOurs; descriptor < (int) end; ++descriptor)
        ::fcntl (descriptor, F_SETFD, FD_CLOEXEC);
}

bool silenceStandardStreams()
{
    const int null = ::open ("/dev/null", O_RDWR | O_CLOEXEC);

    return null >= 0 && ::dup2 (null, STDIN_FILENO) >= 0 && ::dup2 (null, STDOUT_FILENO) >= 0 && ::dup2 (null, STDERR_FILENO) >= 0;
}

void restoreSignals()
{
    // Ignored signals and the mask would be inherited.
    for (int number = 1; number < NSIG; ++number)
        std::signal (number, SIG_DFL);

    sigset_t none;
    ::sigemptyset (&none);
    ::sigprocmask (SIG_SETMASK, &none, nullptr);
}

/** The program's own process, until it becomes the program. Only calls that are safe between fork and exec. */
[[noreturn]] void becomeProgram (const Start& start)
{
    // Above the standard streams, which the Hub itself may have been started without.
    const int reportTo = ::fcntl (start.reportTo, F_DUPFD_CLOEXEC, 3);

    if (const auto mask = userCreationMask())
        ::umask (*mask);

    if (reportTo >= 0 && ::setsid() >= 0 && ::chdir (start.folder) == 0 && silenceStandardStreams())
    {
        restoreSignals();
        closeAllAtExec();
        ::execv (start.arguments.front(), start.arguments.data());
    }

    reportAndExit (reportTo >= 0 ? reportTo : start.reportTo);
}

/** The process between, whose end makes the program a child of the system. */
[[noreturn]] void forkProgram (const Start& start)
{
    const auto program = ::fork();

    if (program == 0)
        becomeProgram (start);

    if (program < 0)
        reportAndExit (start.reportTo);

    ::_exit (0);
}

/** True when the pipe closed without a report, which the program's start does. */
bool closedWithoutReport (int descriptor)
{
    int error = 0;
    ssize_t count = 0;

    do
        count = ::read (descriptor, &error, sizeof (error));
    while (count < 0 && errno == EINTR);

    return count == 0;
}

void waitFor (pid_t child)
{
    while (::waitpid (child, nullptr, 0) < 0 && errno == EINTR)
    {
    }
}
}

bool startDetached (const juce::StringArray& arguments, const juce::File& workingFolder)
{
    std::vector<std::string> texts;

    for (const auto& argument : arguments)
        texts.push_back (argument.toStdString());

    const auto folder = workingFolder.getFullPathName().toStdString();
    int report[2] = { -1, -1 };

    if (texts.empty() || ::pipe2 (report, O_CLOEXEC) != 0)
        return false;

    Start start;
    start.folder = folder.c_str();
    start.reportTo = report[1];

    for (auto& text : texts)
        start.arguments.push_back (text.data());

    start.arguments.push_back (nullptr);

    const auto child = ::fork();

    if (child == 0)
        forkProgram (start);

    ::close (report[1]);

    const bool started = child > 0 && closedWithoutReport (report[0]);
    ::close (report[0]);

    if (child > 0)
        waitFor (child);

    return started;
}
}
