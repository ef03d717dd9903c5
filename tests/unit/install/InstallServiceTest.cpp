#include "install/InstallService.h"
#include "InstallRun.h"
#include "support/FolderWatch.h"
#include "support/LogCapture.h"
#include "support/ManifestBuilder.h"
#include "support/ThreadRefusal.h"
#include "support/ZipBuilder.h"

#include <set>

using namespace zorva::test;

namespace
{
using Lines = std::vector<std::string>;

const char* const notInVault = "Installer not found in the vault. Download it first.";

std::string joined (juce::StringArray lines)
{
    lines.sort (false);
    return lines.joinIntoString ("\n").toStdString();
}
}

//==============================================================================
TEST (InstallService, RefusesInTheOrderInstallerIdentityVerification)
{
    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    const auto unsafe = applicationOf ("../app", "1.0.0", "installer");

    EXPECT_EQ (InstallRun().finish (unsafe, vaultFile ("app/missing.exe")), std::string ("failed: ") + notInVault);
    EXPECT_EQ (InstallRun().finish (product, vaultFile ("app")), std::string ("failed: ") + notInVault) << "a directory is no installer";
    EXPECT_EQ (InstallRun().finish (product, juce::File()), std::string ("failed: ") + notInVault);
    EXPECT_EQ (InstallRun().finish (unsafe, installer), "failed: The product identity is invalid.");

    write (installer, "Installer");
    EXPECT_EQ (InstallRun().finish (product, installer), "failed: The vaulted installer no longer matches its verified identity record.");
    EXPECT_FALSE (isThere (HubPaths::productsDirectory())) << "nothing was begun";
}

TEST (InstallService, EvenAnImmediateFailureIsReportedLater)
{
    InstallRun run;
    run.install (applicationOf ("app", "1.0.0", "x"), vaultFile ("app/missing.exe"));
    EXPECT_EQ (run.ended, Lines());

    ASSERT_TRUE (run.waitForEnds (1));
    pump (50);
    EXPECT_EQ (run.ended, (Lines { std::string ("install failed: ") + notInVault }));
}

TEST (InstallService, ReportsOnceThoughTheServiceHasGone)
{
    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    InstallRun run;
    run.install (product, installer, "worker");
    run.install (product, vaultFile ("app/missing.exe"), "immediate");
    run.service.reset();

    ASSERT_TRUE (run.waitForEnds (2));
    pump (100);
    std::set<std::string> ends (run.ended.begin(), run.ended.end());
    EXPECT_EQ (run.ended.size(), (size_t) 2);
    EXPECT_EQ (ends, (std::set<std::string> { "worker " + installedTo ("app"), std::string ("immediate failed: ") + notInVault }));
}

TEST (InstallService, WorksWithoutACallback)
{
    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    InstallService service;
    service.install (product, installer, {});
    service.install (product, vaultFile ("app/missing.exe"), {});

    EXPECT_TRUE (pumpUntil ([] { return InstallService::findInstalledExecutable ("app").existsAsFile(); }));
    InstallRun run;
    EXPECT_EQ (run.finish (product, installer), installedTo ("app")) << "the lock is free again";
}

TEST (InstallService, ReinstallingIsTheSameOperation)
{
    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    InstallRun run;
    run.service->reinstall (product, installer, run.noteUnder ("first"));
    run.service->reinstall (product, vaultFile ("app/missing.exe"), run.noteUnder ("second"));

    ASSERT_TRUE (run.waitForEnds (2));
    std::set<std::string> ends (run.ended.begin(), run.ended.end());
    EXPECT_EQ (ends, (std::set<std::string> { "first " + installedTo ("app"), std::string ("second failed: ") + notInVault }));
}

TEST (InstallService, InstallsRunOneAfterTheOther)
{
    ASSERT_TRUE (HubPaths::productsDirectory().createDirectory().wasOk());
    FolderWatch watch (HubPaths::productsDirectory());
    InstallRun run;
    constexpr int count = 6;
    ZipBuilder builder;
    builder.file ("app.exe", "program");

    for (int i = 0; i < 300; ++i)    // quickly verified, slowly unpacked
        builder.file (std::to_string (i), "x");

    const auto package = builder.bytes();
    const auto first = applicationOf ("first", "1.0.0", package), second = applicationOf ("second", "1.0.0", package);
    const auto firstPackage = putInVault (first, "setup.zip", package), secondPackage = putInVault (second, "setup.zip", package);

    for (int i = 0; i < count; ++i)
        run.install (i % 2 == 0 ? first : second, i % 2 == 0 ? firstPackage : secondPackage, std::to_string (i));

    ASSERT_TRUE (run.waitForEnds (count));

    for (const auto& end : run.ended)
        EXPECT_NE (end.find (" done: Installed to "), std::string::npos) << end;

    std::string open;
    int staged = 0;

    for (const auto& event : watch.events())
    {
        if (event.find (".installing-") == std::string::npos || event.rfind ("read ", 0) == 0)
            continue;

        const auto name = event.substr (9);    // after "appeared " or "vanished "

        if (event.rfind ("appeared ", 0) == 0)
        {
            EXPECT_EQ (open, "") << "while another install was at work";
            open = name;
            ++staged;
        }
        else if (name == open)
        {
            open.clear();
        }
    }

    EXPECT_EQ (staged, count);
    EXPECT_EQ (open, "");
}

TEST (InstallService, AWorkerThatCannotBeStartedIsReported)
{
    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    InstallRun run;
    refuseNewThreads();

    const auto end = run.finish (product, installer);
    EXPECT_EQ (end.substr (0, 8), "failed: ");
    EXPECT_GT (end.size(), (size_t) 8) << "with a reason";
    EXPECT_FALSE (isThere (installedFile ("app")));
}

//==============================================================================
TEST (InstallService, ConstructionMakesNoDirectory)
{
    const InstallService service;
    EXPECT_EQ (service.getRecoveryNotes().size(), 0);
    EXPECT_FALSE (isThere (HubPaths::productsDirectory()));
    EXPECT_FALSE (isThere (HubPaths::factoryContentDirectory()));
    EXPECT_FALSE (isThere (HubPaths::root()));
}

TEST (InstallService, ConstructionRecoversProductsAndPacks)
{
    write (installedFile ("app.installing-0123/half.exe"), "x");
    write (installedFile ("lost.backup-0123/lost.exe"), "lost");
    write (in (HubPaths::factoryContentDirectory(), "sounds/1.0.0.installing-0123/half"), "x");
    write (in (HubPaths::factoryContentDirectory(), "sounds/1.0.0.backup-0123/manifest.json"), "{}");

    const InstallService service;
    EXPECT_EQ (service.getRecoveryNotes().size(), 0);
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), (Tree { { "lost", "folder" }, { "lost/lost.exe", "file: lost" } }));
    EXPECT_EQ (treeOf (HubPaths::factoryContentDirectory()),
               (Tree { { "sounds", "folder" }, { "sounds/1.0.0", "folder" }, { "sounds/1.0.0/manifest.json", "file: {}" } }));
}

TEST (InstallService, ConstructionUndoesAnInterruptedInstallWithItsRecord)
{
    const juce::String token ("0123456789abcdef0123456789abcdef");
    const auto products = HubPaths::productsDirectory().getFullPathName(), record = HubPaths::installRecordFile().getFullPathName();
    juce::DynamicObject::Ptr journal = new juce::DynamicObject();
    journal->setProperty ("version", 1);
    journal->setProperty ("state", "activated");
    journal->setProperty ("staged", products + "/app.installing-" + token);
    journal->setProperty ("target", products + "/app");
    journal->setProperty ("backup", products + "/app.backup-" + token);
    journal->setProperty ("hadTarget", true);
    journal->setProperty ("metadata", record);
    journal->setProperty ("metadataBackup", record + ".promotion-backup-" + token);
    journal->setProperty ("metadataExisted", true);
    write (installedFile (".zorva-promotion-" + token + ".json"), json (journal.get()));
    write (installedFile ("app/app.exe"), "new");
    write (installedFile ("app.backup-" + token + "/app.exe"), "old");
    write (HubPaths::installRecordFile(), "new record");
    write (in (HubPaths::root(), "installed.json.promotion-backup-" + token), "old record");

    const InstallService service;
    EXPECT_EQ (service.getRecoveryNotes().size(), 0);
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), (Tree { { "app", "folder" }, { "app/app.exe", "file: old" } }));
    EXPECT_EQ (treeOf (HubPaths::root()), (Tree { { "installed.json", "file: old record" } }));
}

TEST (InstallService, WritesEveryRecoveryNoteToTheLog)
{
    const auto application = write (installedFile (".zorva-promotion-0123.json"), "");
    const auto content = write (in (HubPaths::factoryContentDirectory(), "sounds/.zorva-promotion-0123.json"), "");
    const auto expected = juce::StringArray { "Invalid promotion journal retained: " + application.getFullPathName(),
                                              "Invalid promotion journal retained: " + content.getFullPathName() };
    juce::StringArray expectedLines;

    for (const auto& note : expected)
        expectedLines.add ("[INSTALL RECOVERY] " + note);

    const LogCapture log;
    const InstallService service;
    EXPECT_EQ (joined (service.getRecoveryNotes()), joined (expected));
    EXPECT_EQ (joined (log.lines()), joined (expectedLines));
}

TEST (InstallService, ConstructionLeavesRootsThatAreLinksAlone)
{
    const auto elsewhere = freshFolder ("elsewhere");
    write (in (elsewhere, "app.installing-0123/x"), "x");
    write (in (elsewhere, "sounds/1.0.0.installing-0123/x"), "x");
    const auto before = treeOf (elsewhere);
    link (HubPaths::productsDirectory(), elsewhere.getFullPathName());
    link (HubPaths::factoryContentDirectory(), elsewhere.getFullPathName());

    const InstallService service;
    EXPECT_EQ (treeOf (elsewhere), before);
    EXPECT_EQ (service.getRecoveryNotes().size(), 0);
}
