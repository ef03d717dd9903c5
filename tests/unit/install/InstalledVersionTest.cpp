#include "InstallRun.h"
#include "support/PeImage.h"

using namespace zorva::test;

TEST (InstallService, TheInstalledVersionIsThreeNumbersOfTheProductVersion)
{
    const struct { std::uint32_t upper, lower; const char* version; } rows[]
    {
        { 0x000d0000, 0x00000000, "13.0.0" },
        { 0x00010002, 0x00030004, "1.2.3" },      // the fourth number is not shown
        { 0xffffffff, 0xffffffff, "65535.65535.65535" },
        { 0x00000000, 0x00000001, "0.0.0" },
    };

    for (const auto& row : rows)
        for (const auto format : { PeImage::Format::pe32, PeImage::Format::pe32Plus })
        {
            const auto program = writeBytes (installedFile ("app/app.exe"), PeImage (format, row.upper, row.lower).bytes);
            EXPECT_EQ (InstallService::installedVersion (program), row.version);
        }
}

TEST (InstallService, WhatIsNoProgramHasNoVersion)
{
    const auto image = PeImage (PeImage::Format::pe32Plus, 0x00010002, 0x00030004).bytes;

    EXPECT_EQ (InstallService::installedVersion (writeBytes (installedFile ("app/APP.EXE"), image)), "1.2.3");
    EXPECT_EQ (InstallService::installedVersion (writeBytes (installedFile ("app/app.dll"), image)), "");
    EXPECT_EQ (InstallService::installedVersion (writeBytes (installedFile ("app/app"), image)), "");
    EXPECT_EQ (InstallService::installedVersion (installedFile ("app/missing.exe")), "");
    EXPECT_EQ (InstallService::installedVersion (installedFile ("app")), "");
    EXPECT_EQ (InstallService::installedVersion (juce::File()), "");
    EXPECT_EQ (InstallService::installedVersion (write (installedFile ("app/text.exe"), "#!/bin/sh\n")), "");
    EXPECT_EQ (InstallService::installedVersion (write (installedFile ("app/empty.exe"), "")), "");
    EXPECT_EQ (InstallService::installedVersion (writeBytes (installedFile ("app/cut.exe"), image.substr (0, image.size() / 2))), "");
    ASSERT_TRUE (installedFile ("app/folder.exe").createDirectory().wasOk());
    EXPECT_EQ (InstallService::installedVersion (installedFile ("app/folder.exe")), "");
}
