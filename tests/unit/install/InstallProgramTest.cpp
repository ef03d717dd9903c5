#include "InstallRun.h"
#include "support/ManifestBuilder.h"
#include "support/PrivateMounts.h"

using namespace zorva::test;

namespace
{
const char* const recordFailed = "The product was copied, but its atomic install record could not be committed: ";

juce::var recordOf (const juce::String& id)
{
    return juce::JSON::parse (HubPaths::installRecordFile())[juce::Identifier (id)];
}

/** Puts an older installed release in place, with its record. */
void putInstalled (const juce::String& id)
{
    const auto program = write (installedFile (id + "/old.exe"), "old program");
    write (installedFile (id + "/data/presets"), "old data");
    juce::String error;
    ASSERT_TRUE (InstallService::writeInstallRecord (id, program, error)) << error;
}
}

//==============================================================================
TEST (InstallService, AProgramIsCopiedIntoTheProductsDirectoryAndNotRun)
{
    const auto witness = in (freshFolder ("witness"), "ran");
    const auto program = ("#!/bin/sh\ntouch '" + witness.getFullPathName() + "'\n").toStdString();

    EXPECT_EQ (putAndInstall ("app", "Setup One.exe", program), installedTo ("app"));
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), (Tree { { "app", "folder" }, { "app/Setup One.exe", "file: " + program } }));
    EXPECT_EQ (recordOf ("app")["path"].toString(), installedFile ("app/Setup One.exe").getFullPathName());
    EXPECT_EQ (InstallService::findInstalledExecutable ("app").getFullPathName(), installedFile ("app/Setup One.exe").getFullPathName());
    pump (200);
    EXPECT_FALSE (isThere (witness));
}

TEST (InstallService, TheExtensionMayBeInCapitals)
{
    EXPECT_EQ (putAndInstall ("app", "SETUP.EXE", "program"), installedTo ("app"));
    EXPECT_EQ (InstallService::findInstalledExecutable ("app").getFileName(), "SETUP.EXE");
}

TEST (InstallService, ANewInstallReplacesTheOldOneWhole)
{
    putInstalled ("app");
    EXPECT_EQ (putAndInstall ("app", "new.exe", "new program"), installedTo ("app"));
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), (Tree { { "app", "folder" }, { "app/new.exe", "file: new program" } }));
    EXPECT_EQ (recordOf ("app")["path"].toString(), installedFile ("app/new.exe").getFullPathName());
    EXPECT_EQ (HubPaths::root().getNumberOfChildFiles (juce::File::findFiles), 1) << "only installed.json";
}

TEST (InstallService, AnOlderVaultedVersionInstalls)
{
    const auto vaulted = applicationOf ("app", "1.0.0", "old program");
    const auto installer = putInVault (vaulted, "setup.exe", "old program");
    auto catalogue = applicationOf ("app", "3.0.0", "new program");

    EXPECT_EQ (InstallRun().finish (catalogue, installer), installedTo ("app"));
    EXPECT_EQ (read (installedFile ("app/setup.exe")), "old program");
}

TEST (InstallService, OneChangedByteStartsNothing)
{
    putInstalled ("app");
    const auto before = treeOf (HubPaths::productsDirectory());
    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    write (installer, "installeR");

    EXPECT_EQ (InstallRun().finish (product, installer), "failed: The vaulted installer no longer matches its verified identity record.");
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), before);
}

TEST (InstallService, OtherKindsOfInstallersAreRefusedAfterVerification)
{
    const struct { const char* fileName; const char* extension; } rows[]
    {
        { "setup.dmg", ".dmg" }, { "setup.DMG", ".DMG" }, { "setup.msi", ".msi" }, { "setup", "" }, { "exe", "" }, { "setup.exe.bak", ".bak" },
    };

    for (const auto& row : rows)
        EXPECT_EQ (putAndInstall ("app", row.fileName, "installer"), std::string ("failed: Unsupported installer type for Windows: ") + row.extension);

    EXPECT_FALSE (isThere (HubPaths::productsDirectory()));
}

//==============================================================================
TEST (InstallService, ARecordOfAnotherCaseRefusesAndRestoresThePreviousInstall)
{
    putInstalled ("app");
    const auto installed = treeOf (HubPaths::productsDirectory());
    const juce::String record ("{ \"APP\": { \"path\": \"/x\" }, \"app\": { \"path\": \"/y\" } }");
    write (HubPaths::installRecordFile(), record);

    EXPECT_EQ (putAndInstall ("app", "setup.exe", "new program"),
               std::string ("failed: ") + recordFailed
                   + "A case-colliding product identity already exists in the install record. The previous install was restored.");
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), installed);
    EXPECT_EQ (read (HubPaths::installRecordFile()), record.toStdString());
    EXPECT_EQ (HubPaths::root().getNumberOfChildFiles (juce::File::findFiles), 1);
}

TEST (InstallService, AFirstInstallWithoutARecordLeavesNothing)
{
    write (HubPaths::installRecordFile(), "{ \"App\": {} }");
    EXPECT_EQ (putAndInstall ("app", "setup.exe", "program"),
               std::string ("failed: ") + recordFailed
                   + "A case-colliding product identity already exists in the install record. The previous install was restored.");
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), Tree());
}

TEST (InstallService, ARecordThatCannotBeWrittenRestoresThePreviousInstall)
{
    const auto product = applicationOf ("app", "1.0.0", "program");
    const auto installer = putInVault (product, "setup.exe", "program");
    write (installedFile ("app/old.exe"), "old program");
    const ReadOnlyFolder shut (HubPaths::root());

    EXPECT_EQ (InstallRun().finish (product, installer),
               std::string ("failed: ") + recordFailed + "Could not write the temporary install record. The previous install was restored.");
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), (Tree { { "app", "folder" }, { "app/old.exe", "file: old program" } }));
}

TEST (InstallService, ADirectoryInTheRecordsPlaceFailsTheInstall)
{
    write (in (HubPaths::installRecordFile(), "inside"), "x");
    EXPECT_EQ (putAndInstall ("app", "setup.exe", "program"),
               std::string ("failed: ") + recordFailed + "Could not atomically replace the install record. The previous install was restored.");
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), Tree());
}

TEST (InstallService, ARecordThatCannotBeRestoredSaysWhatIsKept)
{
    const auto product = applicationOf ("app", "1.0.0", "program");
    const auto installer = putInVault (product, "setup.exe", "program");
    putInstalled ("app");
    const auto record = read (HubPaths::installRecordFile());

    {
        const BusyPath stuck (HubPaths::installRecordFile());
        const auto end = InstallRun().finish (product, installer);
        const auto beginning = std::string ("failed: ") + recordFailed + "Could not atomically replace the install record. Durable recovery journal retained at "
                               + installedFile (".zorva-promotion-").getFullPathName().toStdString();
        EXPECT_EQ (end.substr (0, beginning.size()), beginning);
        EXPECT_EQ (end.substr (beginning.size() + 32), ".json");
        EXPECT_EQ (read (installedFile ("app/old.exe")), "old program");
    }

    const InstallService nextStart;
    EXPECT_EQ (nextStart.getRecoveryNotes().size(), 0);
    EXPECT_EQ (read (HubPaths::installRecordFile()), record);
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()),
               (Tree { { "app", "folder" }, { "app/data", "folder" }, { "app/data/presets", "file: old data" }, { "app/old.exe", "file: old program" } }));
}

TEST (InstallService, AnUnreadableRecordIsRebuiltAndItsSnapshotRemoved)
{
    write (HubPaths::installRecordFile(), "{ \"other\": { \"path\": \"/x\" }, broken");
    EXPECT_EQ (putAndInstall ("app", "setup.exe", "program"), installedTo ("app"));

    const auto record = juce::JSON::parse (HubPaths::installRecordFile());
    ASSERT_NE (record.getDynamicObject(), nullptr);
    EXPECT_EQ (record.getDynamicObject()->getProperties().size(), 1);
    EXPECT_EQ (record["app"]["path"].toString(), installedFile ("app/setup.exe").getFullPathName());
    EXPECT_EQ (HubPaths::root().getNumberOfChildFiles (juce::File::findFiles), 1) << "the snapshot is gone";
}

//==============================================================================
TEST (InstallService, SaysWhyTheDestinationCannotBeUsed)
{
    const auto products = HubPaths::productsDirectory();
    const auto elsewhere = freshFolder ("elsewhere");
    const char* const untrusted = "failed: The product destination has untrusted symlink/reparse ancestry.";

    write (products, "a file");
    EXPECT_EQ (putAndInstall ("app", "setup.exe", "program"), ("failed: Could not create " + products.getFullPathName()).toStdString());
    products.deleteFile();

    link (products, elsewhere.getFullPathName());
    EXPECT_EQ (putAndInstall ("app", "setup.exe", "program"), untrusted);
    products.deleteFile();

    link (installedFile ("app"), elsewhere.getFullPathName());
    EXPECT_EQ (putAndInstall ("app", "setup.exe", "program"), untrusted);
    installedFile ("app").deleteFile();

    ASSERT_TRUE (installedFile ("App").createDirectory().wasOk());
    EXPECT_EQ (putAndInstall ("app", "setup.exe", "program"), "failed: A case-colliding product install directory already exists.");
    EXPECT_EQ (treeOf (products), (Tree { { "App", "folder" } }));
    EXPECT_EQ (treeOf (elsewhere), Tree());
}

TEST (InstallService, SaysWhyNothingCouldBeStaged)
{
    ASSERT_TRUE (HubPaths::productsDirectory().createDirectory().wasOk());
    const auto destination = installedFile ("app").getFullPathName().toStdString();

    {
        const ReadOnlyFolder shut (HubPaths::productsDirectory());
        EXPECT_EQ (putAndInstall ("app", "setup.exe", "program"), "failed: Could not create a temporary install directory.");
    }

    const struct { int files; std::string end; } rows[]
    {
        { 1, "failed: Could not copy the installer to " + destination },         // room for the directory
        { 2, "failed: Could not create the durable promotion journal." },        // and for the program
        { 20, installedTo ("app") },
    };

    for (const auto& row : rows)
    {
        const SmallDisk disk (HubPaths::productsDirectory(), row.files);
        EXPECT_EQ (putAndInstall ("app", "setup.exe", "program"), row.end);
        EXPECT_EQ (treeOf (HubPaths::productsDirectory()).size(), row.files == 20 ? (size_t) 2 : 0) << row.files;
    }
}

TEST (InstallService, AProgramThatDoesNotFitIsNotInstalled)
{
    ASSERT_TRUE (HubPaths::productsDirectory().createDirectory().wasOk());
    const SmallDisk disk (HubPaths::productsDirectory(), 20);    // of 4 MiB

    EXPECT_EQ (putAndInstall ("app", "setup.exe", std::string (8 << 20, 'x')),
               "failed: Could not copy the installer to " + installedFile ("app").getFullPathName().toStdString());
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), Tree());
}

TEST (InstallService, AnInstalledDirectoryThatCannotBeMovedStays)
{
    putInstalled ("app");
    const auto before = treeOf (HubPaths::productsDirectory());
    const BusyPath stuck (installedFile ("app"));

    const auto end = putAndInstall ("app", "setup.exe", "program");
    const auto beginning = "failed: Could not preserve the current payload at " + installedFile ("app.backup-").getFullPathName().toStdString();
    EXPECT_EQ (end.substr (0, beginning.size()), beginning);
    EXPECT_EQ (end.substr (beginning.size() + 32), ".");
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), before);
}
