#include "platform/PipeServer.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform
{
namespace
{
constexpr time_t secondsUntilAbandoned = 60;

/** A FIFO of this user that has not changed for a while and that no process reads. */
bool isAbandoned (const char* path)
{
    struct stat info {};

    if (::lstat (path, &info) != 0 || ! S_ISFIFO (info.st_mode) || info.st_uid != ::getuid()
        || info.st_mtime + secondsUntilAbandoned > ::time (nullptr))
        return false;

    const auto reader = ::open (path, O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);

    if (reader < 0)
        return errno == ENXIO;

    ::close (reader);
    return false;
}
}

void prepareToCreatePipe() {}
int pipeLingerMilliseconds() { return 0; }

void removeAbandonedPipes (const juce::String& namePrefix)
{
    // Where the framework keeps the FIFOs of a pipe with a bare name.
    for (const auto& entry : juce::RangedDirectoryIterator (juce::File ("/tmp"), false, namePrefix + "*", juce::File::findFiles))
        if (const auto path = entry.getFile().getFullPathName(); isAbandoned (path.toRawUTF8()))
            ::unlink (path.toRawUTF8());
}
}
