#include "support/Files.h"
#include "support/PrivateMounts.h"

#include <cerrno>
#include <cstdlib>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace zorva::test;

TEST (TestHome, IsAnEmptyFolderThatCanBeWritten)
{
    const juce::File home (juce::String::fromUTF8 (std::getenv ("HOME")));

    EXPECT_TRUE (home.isDirectory());
    EXPECT_EQ (read (write (in (home, "a/b"), "x")), "x");
    EXPECT_EQ (juce::File::getSpecialLocation (juce::File::tempDirectory).getParentDirectory(), home.getParentDirectory());
}

TEST (TestHome, ATestCanChangeNothingOnTheMachine)
{
    ASSERT_EQ (PrivateMounts::problem(), "");

    for (const char* path : { "/", "/etc", "/etc/passwd", "/usr/bin", "/var/tmp", "/tmp", "/home", "/proc/sys", "/dev/shm" })
    {
        errno = 0;
        EXPECT_EQ (::access (path, W_OK), -1) << path;
        EXPECT_TRUE (errno == EROFS || errno == EACCES) << path << ": " << errno;
    }
}
