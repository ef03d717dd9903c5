#include "platform/linux/CreationMask.h"
#include "platform/ProcessSetup.h"
#include "support/Files.h"

#include <clocale>
#include <cwctype>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace zorva::test;

namespace
{
int permissionsOf (const juce::File& file)
{
    struct stat info {};
    EXPECT_EQ (::stat (file.getFullPathName().toRawUTF8(), &info), 0);
    return (int) (info.st_mode & 07777);
}
}

TEST (ProcessSetup, WhatIsMadeFromThenOnIsPrivate)
{
    const auto folder = freshFolder ("private");
    platform::prepareProcess();
    ASSERT_TRUE (in (folder, "made").createDirectory().wasOk());

    EXPECT_EQ (permissionsOf (write (in (folder, "file"), "x")), 0600);
    EXPECT_EQ (permissionsOf (in (folder, "made")), 0700);
}

TEST (ProcessSetup, TheUsersOwnMaskIsKept)
{
    EXPECT_FALSE (platform::userCreationMask().has_value());
    ::umask (027);

    platform::prepareProcess();
    EXPECT_EQ (platform::userCreationMask(), (mode_t) 027);

    platform::prepareProcess();
    EXPECT_EQ (platform::userCreationMask(), (mode_t) 027) << "a second call";
}

TEST (ProcessSetup, LettersOutsideAsciiAreLetters)
{
    std::setlocale (LC_ALL, "C");
    ASSERT_EQ (std::iswalpha (L'\u00e4'), 0);

    platform::prepareProcess();
    EXPECT_NE (std::iswalpha (L'\u00e4'), 0);
    EXPECT_NE (std::iswalpha (L'\u0436'), 0);
}
