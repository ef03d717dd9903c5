#include "DownloadRun.h"
#include "support/Files.h"
#include "support/ManifestBuilder.h"
#include "support/PrivateMounts.h"
#include "vault/VaultStore.h"

using namespace zorva::test;

namespace
{
/** Puts release 1 of an application in the Vault as setup-1.exe. */
void putOldRelease()
{
    putInVault (applicationOf ("app", "1.0.0", "old installer"), "setup-1.exe", "old installer");
}

/** Release 2, served as setup-2.exe. */
Product newRelease (TrustedTestServer& server)
{
    auto product = serveApplication (server, "app", "new installer", "/setup-2.exe");
    product.version = "2.0.0";
    return product;
}

/** The text with every token of 32 hexadecimal digits replaced by "TOKEN". */
juce::String withoutTokens (const juce::String& text)
{
    juce::String result, digits;

    for (auto c = text.getCharPointer(); ; ++c)
    {
        if (juce::CharacterFunctions::getHexDigitValue (*c) >= 0)
        {
            digits += *c;
            continue;
        }

        result += digits.length() == 32 ? juce::String ("TOKEN") : digits;
        digits.clear();

        if (c.isEmpty())
            return result;

        result += *c;
    }
}

/** The names in a product's folder, tokens left out. */
juce::StringArray namesIn (const juce::File& folder)
{
    juce::StringArray names;

    for (const auto& [name, content] : treeOf (folder))
        names.add (withoutTokens (name));

    return names;
}

std::string expectedNames (std::initializer_list<const char*> names)
{
    return juce::StringArray (names).joinIntoString ("\n").toStdString();
}
}

//==============================================================================
TEST (DownloadService, ANewReleaseUnderAnotherNameRetiresTheOldInstaller)
{
    TrustedTestServer server;
    putOldRelease();
    DownloadRun run;

    EXPECT_EQ (run.finish (newRelease (server)), "app done: ");
    EXPECT_EQ (namesIn (vaultFile ("app")).joinIntoString ("\n").toStdString(), expectedNames ({ "setup-2.exe", "vault.json" }));
    EXPECT_EQ (read (vaultFile ("app/setup-2.exe")), "new installer");
    EXPECT_EQ (juce::JSON::parse (vaultFile ("app/vault.json"))["version"].toString(), "2.0.0");
}

TEST (DownloadService, ANewReleaseUnderTheSameNameReplacesTheOldInstaller)
{
    TrustedTestServer server;
    putInVault (applicationOf ("app", "1.0.0", "old"), "setup.exe", "old");
    DownloadRun run;

    EXPECT_EQ (run.finish (serveApplication (server, "app", "new installer")), "app done: ");
    EXPECT_EQ (namesIn (vaultFile ("app")).joinIntoString ("\n").toStdString(), expectedNames ({ "setup.exe", "vault.json" }));
    EXPECT_EQ (read (vaultFile ("app/setup.exe")), "new installer");
}

TEST (DownloadService, OnlyTheInstallerOfTheRecordIsRetired)
{
    TrustedTestServer server;
    putOldRelease();
    write (vaultFile ("app/notes.txt"), "somebody's");
    DownloadRun run;

    EXPECT_EQ (run.finish (newRelease (server)), "app done: ");
    EXPECT_EQ (read (vaultFile ("app/notes.txt")), "somebody's");
}

TEST (DownloadService, AnObsoleteInstallerThatCannotBeRemovedIsNamed)
{
    TrustedTestServer server;
    putOldRelease();
    const BusyPath stuck (vaultFile ("app/setup-1.exe"));
    DownloadRun run;

    EXPECT_EQ (run.finish (newRelease (server)),
               ("app done: The obsolete installer was retained at " + vaultFile ("app/setup-1.exe").getFullPathName() + ".").toStdString());
    EXPECT_EQ (VaultStore::trustedInstallerFor ("app").getFileName(), "setup-2.exe");
}

TEST (DownloadService, ARecordThatNamesItselfAsInstallerRetiresNothing)
{
    TrustedTestServer server;
    write (vaultFile ("app/vault.json"), json (vaultRecordOf (applicationOf ("app", "1.0.0", "x"), "vault.json", 1)));
    DownloadRun run;

    EXPECT_EQ (run.finish (newRelease (server)), "app done: ");
    EXPECT_EQ (VaultStore::trustedInstallerFor ("app").getFileName(), "setup-2.exe");
}

//==============================================================================
TEST (DownloadService, AFailedRecordRestoresTheOldInstallerAndRecord)
{
    TrustedTestServer server;
    putOldRelease();
    const auto before = treeOf (vaultFile ("app"));

    auto product = newRelease (server);
    product.installType = Product::InstallType::factoryContent;
    product.packId = "another";    // no record can be written for it

    DownloadRun run;
    EXPECT_EQ (run.finish (product), "app failed: Could not update the vault record; the last-good installer was restored.");
    EXPECT_EQ (treeOf (vaultFile ("app")), before);
}

TEST (DownloadService, AFailedRecordRestoresAnInstallerOfTheSameName)
{
    TrustedTestServer server;
    putInVault (applicationOf ("app", "1.0.0", "old"), "setup.exe", "old");
    const auto before = treeOf (vaultFile ("app"));

    auto product = serveApplication (server, "app", "new installer");
    product.installType = Product::InstallType::factoryContent;

    DownloadRun run;
    EXPECT_EQ (run.finish (product), "app failed: Could not update the vault record; the last-good installer was restored.");
    EXPECT_EQ (treeOf (vaultFile ("app")), before);
}

TEST (DownloadService, AFailedRecordOfAFirstDownloadLeavesNothing)
{
    TrustedTestServer server;
    auto product = serveApplication (server, "app", "installer");
    product.installType = Product::InstallType::factoryContent;

    DownloadRun run;
    EXPECT_EQ (run.finish (product), "app failed: Could not update the vault record; the last-good installer was restored.");
    EXPECT_EQ (treeOf (vaultFile ("app")), Tree());
}

TEST (DownloadService, ADirectoryInTheRecordsPlaceFailsTheRecord)
{
    TrustedTestServer server;
    write (vaultFile ("app/vault.json/inside"), "x");
    DownloadRun run;

    EXPECT_EQ (run.finish (serveApplication (server, "app", "installer")),
               "app failed: Could not update the vault record; the last-good installer was restored.");
    EXPECT_FALSE (isThere (vaultFile ("app/setup.exe")));
}

TEST (DownloadService, AFailedRecordThatCannotBeRolledBackSaysWhatIsKept)
{
    TrustedTestServer server;
    putInVault (applicationOf ("app", "1.0.0", "old"), "setup.exe", "old");
    const auto record = read (vaultFile ("app/vault.json"));

    {
        const BusyPath stuck (vaultFile ("app/vault.json"));
        DownloadRun run;
        const auto end = run.finish (serveApplication (server, "app", "new installer"));
        EXPECT_EQ (withoutTokens (juce::String::fromUTF8 (end.c_str())).toStdString(),
                   ("app failed: Could not update the vault record. Durable recovery journal retained at "
                    + vaultFile ("app").getFullPathName() + "/.zorva-promotion-TOKEN.json").toStdString());
        EXPECT_EQ (read (vaultFile ("app/setup.exe")), "old");
        EXPECT_EQ (read (vaultFile ("app/vault.json")), record);
    }

    const VaultStore nextStart;
    EXPECT_EQ (nextStart.getRecoveryNotes().size(), 0);
    EXPECT_EQ (treeOf (vaultFile ("app")), (Tree { { "setup.exe", "file: old" }, { "vault.json", "file: " + record } }));
}

TEST (DownloadService, AFailedPromotionReportsItsOwnTextAndLeavesTheOldInstaller)
{
    TrustedTestServer server;
    putInVault (applicationOf ("app", "1.0.0", "old"), "setup.exe", "old");
    const auto record = read (vaultFile ("app/vault.json"));
    const BusyPath stuck (vaultFile ("app/setup.exe"));

    DownloadRun run;
    const auto end = run.finish (serveApplication (server, "app", "new installer"));
    EXPECT_EQ (withoutTokens (juce::String::fromUTF8 (end.c_str())).toStdString(),
               ("app failed: Could not preserve the current payload at " + vaultFile ("app/setup.exe").getFullPathName()
                + ".backup-TOKEN.").toStdString());
    EXPECT_EQ (treeOf (vaultFile ("app")),
               (Tree { { "setup.exe", "file: old" }, { "setup.exe.part", "file: new installer" }, { "vault.json", "file: " + record } }));
}
