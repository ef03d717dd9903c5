#include "support/RecordPipe.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zorva::test
{
RecordPipe::RecordPipe (const juce::File& placeOfAFile) : place (placeOfAFile)
{
    EXPECT_TRUE (place.getParentDirectory().createDirectory().wasOk() && place.deleteFile()) << place.getFullPathName();

    if (::mkfifo (place.getFullPathName().toRawUTF8(), 0600) == 0)
        watcher = std::thread ([this] { watch(); });
    else
        ADD_FAILURE() << "Could not make the pipe " << place.getFullPathName() << ": " << std::strerror (errno);
}

RecordPipe::~RecordPipe()
{
    ended.signal();

    if (watcher.joinable())
        watcher.join();

    if (isStillThere())
        ::unlink (place.getFullPathName().toRawUTF8());

    EXPECT_FALSE (wasOpened) << "The pipe was opened, and would have been waited for: " << place.getFullPathName();
}

bool RecordPipe::isStillThere() const
{
    struct stat info {};
    return ::lstat (place.getFullPathName().toRawUTF8(), &info) == 0 && S_ISFIFO (info.st_mode);
}

void RecordPipe::watch()
{
    do
    {
        // Succeeds only while somebody has it open to read, or waits for that, and then ends the wait.
        if (const auto end = ::open (place.getFullPathName().toRawUTF8(), O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC); end >= 0)
        {
            // What replaced the pipe is opened here, too, and is no pipe any more.
            struct stat info {};
            wasOpened = wasOpened || (::fstat (end, &info) == 0 && S_ISFIFO (info.st_mode));
            ::close (end);
        }
    }
    while (! ended.wait (1.0));
}
}
