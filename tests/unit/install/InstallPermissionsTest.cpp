#include "InstallRun.h"
#include "support/JudgedCalls.h"
#include "support/ManifestBuilder.h"
#include "support/ZipBuilder.h"

#include <cerrno>
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

TEST (InstallService, AProgramThatCannotBeGivenThePermissionToRunIsNotInstalled)
{
    write (installedFile ("app/old.exe"), "old program");
    const auto before = treeOf (HubPaths::productsDirectory());

    const struct { const char* fileName; std::string installer; } rows[]
    {
        { "setup.exe", "program" },
        { "package.zip", ZipBuilder().file ("App/bin/My App.exe", "program").bytes() },
    };

    for (const auto& row : rows)
    {
        const auto installer = putInVault (applicationOf ("app", "1.0.0", row.installer), row.fileName, row.installer);
        juce::String message;
        juce::File program;
        PromotionTransaction transaction;

        runJudged ([&] { EXPECT_FALSE (InstallService::installApplication ("app", installer, message, program, transaction)); },
                   [] (const JudgedCall& call) { return call.kind == JudgedCall::Kind::changeMode ? EPERM : 0; });

        EXPECT_EQ (message, "Could not give the application the permission to run.") << row.fileName;
        EXPECT_EQ (treeOf (HubPaths::productsDirectory()), before) << row.fileName;
        EXPECT_FALSE (transaction.isActive());
    }
}
