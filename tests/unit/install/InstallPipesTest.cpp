#include "InstallRun.h"
#include "install/InstallRecord.h"
#include "support/ManifestBuilder.h"
#include "support/RecordPipe.h"

using namespace zorva::test;

namespace
{
const char* const noted = "Invalid promotion journal retained: ";
}

//==============================================================================
TEST (InstallRecord, APipeInItsPlaceHasNoPathsAndIsReplaced)
{
    const auto program = write (installedFile ("app/app.exe"), "program");
    const RecordPipe pipe (HubPaths::installRecordFile());

    EXPECT_EQ (InstallRecord::readPaths().size(), 0);
    EXPECT_EQ (InstallRecord::readPath ("app"), "");
    EXPECT_EQ (InstallService::findInstalledExecutable ("app").getFullPathName(), program.getFullPathName()) << "by its name";
    EXPECT_TRUE (pipe.isStillThere());

    juce::String error;
    EXPECT_TRUE (InstallService::writeInstallRecord ("app", program, error)) << error;
    EXPECT_FALSE (pipe.isStillThere());
    EXPECT_EQ (InstallRecord::readPath ("app"), program.getFullPathName());
}

TEST (InstallService, APipeInTheInstallRecordsPlaceFailsAnInstallWithNothingChanged)
{
    write (installedFile ("app/old.exe"), "old program");
    const auto before = treeOf (HubPaths::productsDirectory());
    const RecordPipe pipe (HubPaths::installRecordFile());

    EXPECT_EQ (putAndInstall ("app", "setup.exe", "program"), "failed: Could not snapshot the current metadata record.");
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), before);
    EXPECT_TRUE (pipe.isStillThere());
}

TEST (InstallService, APipeInAVaultRecordsPlaceVerifiesNothing)
{
    const auto product = applicationOf ("app", "1.0.0", "program");
    const auto installer = putInVault (product, "setup.exe", "program");
    const RecordPipe pipe (vaultFile ("app/vault.json"));

    EXPECT_EQ (InstallRun().finish (product, installer), "failed: The vaulted installer no longer matches its verified identity record.");
    EXPECT_TRUE (pipe.isStillThere());
}

TEST (InstallService, PipesWithAJournalsNameAreNotedAtTheStart)
{
    const RecordPipe ofProducts (installedFile (".zorva-promotion-1.json"));
    const RecordPipe ofPack (in (HubPaths::factoryContentDirectory(), "sounds/.zorva-promotion-1.json"));
    const InstallService service;

    EXPECT_EQ (service.getRecoveryNotes().joinIntoString ("\n"),
               noted + ofProducts.place.getFullPathName() + "\n" + noted + ofPack.place.getFullPathName());
    EXPECT_TRUE (ofProducts.isStillThere() && ofPack.isStillThere());
}

//==============================================================================
TEST (InstallService, APipeInAPacksManifestsPlaceIsNoInstalledPack)
{
    const auto product = packOf ("sounds", "1.0.0", "x");
    const auto folder = in (HubPaths::factoryContentDirectory(), "sounds/1.0.0");
    write (in (folder, product.defaultPatch), "patch");
    write (in (folder, product.licenseFile), "licence");
    const RecordPipe pipe (in (folder, "manifest.json"));

    EXPECT_EQ (InstallService::locateInstalledContent (product, {}).getFullPathName(), "");
}

TEST (InstallService, APipeIsNoPacksArchive)
{
    const RecordPipe pipe (in (freshFolder ("archives"), "pack.zip"));
    juce::String message;

    EXPECT_FALSE (InstallService::installContent (packOf ("sounds", "1.0.0", "x"), pipe.place, message, {}));
    EXPECT_EQ (message, "The factory-content identity or archive is invalid.");
}

TEST (InstallService, APipeIsNoInstalledProgramAndHasNoVersion)
{
    const RecordPipe pipe (installedFile ("app/app.exe"));
    write (HubPaths::installRecordFile(), "{ \"app\": { \"path\": " + json (pipe.place.getFullPathName()) + " } }");

    EXPECT_FALSE (InstallService::isOwnedInstallPath ("app", pipe.place));
    EXPECT_EQ (InstallService::findInstalledExecutable ("app").getFullPathName(), "");
    EXPECT_EQ (InstallService::installedVersion (pipe.place), "");
    EXPECT_FALSE (InstallService::launch ("app"));
}
