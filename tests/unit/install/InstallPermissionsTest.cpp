#include "InstallRun.h"
#include "support/ManifestBuilder.h"
#include "support/ZipBuilder.h"

#include <sys/stat.h>

using namespace zorva::test;

namespace
{
int permissionsOf (const juce::File& file)
{
    struct stat info {};
    EXPECT_EQ (::stat (file.getFullPathName().toRawUTF8(), &info), 0) << file.getFullPathName();
    return (int) info.st_mode & 0777;
}
}

TEST (InstallService, AnInstalledProgramMayBeRun)
{
    ::umask (077);
    ASSERT_EQ (putAndInstall ("app", "setup.exe", "program"), installedTo ("app"));
    EXPECT_NE (permissionsOf (installedFile ("app/setup.exe")) & 0100, 0);
    EXPECT_EQ (permissionsOf (vaultFile ("app/setup.exe")) & 0111, 0) << "the vaulted installer stays what it is";
}

TEST (InstallService, TheProgramOfAPackageMayBeRun)
{
    ASSERT_EQ (putAndInstall ("app", "package.zip", ZipBuilder().file ("App/bin/My App.exe", "program").bytes()), installedTo ("app"));
    EXPECT_NE (permissionsOf (installedFile ("app/App/bin/My App.exe")) & 0100, 0);
}
