#include "app/HubPaths.h"
#include "install/InstallService.h"
#include "support/Files.h"
#include "support/FolderWatch.h"
#include "support/ManifestBuilder.h"
#include "support/VaultItems.h"

#include <functional>
#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
const char* const notTheExactPayload = "The installer is not the exact trusted payload recorded for this product.";
const char* const noLongerMatches = "The vaulted installer no longer matches its verified identity record.";
const char* const otherManifest = "The vaulted sound pack does not match its current trusted manifest.";

/** "good" and the version, or the error. */
std::string verify (const Product& product, const juce::File& installer)
{
    juce::String version, error;

    if (InstallService::verifyVaultedInstaller (product, installer, version, error))
        return ("good " + version + error).toStdString();

    return error.toStdString();
}

void putRecord (const juce::String& id, const juce::var& record)
{
    write (vaultFile (id + "/vault.json"), json (record));
}
}

//==============================================================================
TEST (InstallService, AVaultedInstallerThatMatchesItsRecordIsVerified)
{
    const auto product = applicationOf ("app", "1.2.3", "installer");
    EXPECT_EQ (verify (product, putInVault (product, "setup.exe", "installer")), "good 1.2.3");
}

TEST (InstallService, VerificationReadsTheRecordWithSomeTolerance)
{
    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    const auto record = vaultRecordOf (product, "setup.exe", 9);

    const struct { const char* what; juce::var record; const char* verdict; } rows[]
    {
        { "an upper-case hash", with (record, "sha256", sha256Of ("installer").toUpperCase()), "good 1.0.0" },
        { "blanks around the hash", with (record, "sha256", " " + sha256Of ("installer") + "\n"), "good 1.0.0" },
        { "blanks around the version", with (record, "version", "  2.0 "), "good 2.0" },
        { "a size as text", with (record, "sizeBytes", "9"), "good 1.0.0" },
        { "no more than is asked for", without (without (record, "installType"), "url"), "good 1.0.0" },
    };

    for (const auto& row : rows)
    {
        putRecord ("app", row.record);
        EXPECT_EQ (verify (product, installer), row.verdict) << row.what;
    }
}

TEST (InstallService, AFileThatIsNotTheProductsOwnIsNotVerified)
{
    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    const auto outside = write (in (freshFolder ("outside"), "setup.exe"), "installer");

    const struct { const char* what; juce::File file; } rows[]
    {
        { "outside the Vault", outside },
        { "at the Vault's top", write (vaultFile ("setup.exe"), "installer") },
        { "in another product's folder", write (vaultFile ("other/setup.exe"), "installer") },
        { "deeper in the folder", write (vaultFile ("app/deeper/setup.exe"), "installer") },
        { "a link to the installer", link (vaultFile ("app/link.exe"), installer.getFullPathName()) },
        { "a link to the outside", link (vaultFile ("app/out.exe"), outside.getFullPathName()) },
        { "the folder itself", vaultFile ("app") },
    };

    for (const auto& row : rows)
        EXPECT_EQ (verify (product, row.file), notTheExactPayload) << row.what;
}

TEST (InstallService, AProductWithoutATrustedFolderOrRecordIsNotVerified)
{
    for (const char* id : { "../app", "con", "" })
        EXPECT_EQ (verify (applicationOf (id, "1.0.0", "installer"), vaultFile ("app/setup.exe")), notTheExactPayload) << id;

    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    const auto record = vaultFile ("app/vault.json");
    const auto kept = in (freshFolder ("kept"), "vault.json");
    ASSERT_TRUE (record.moveFileTo (kept));
    EXPECT_EQ (verify (product, installer), notTheExactPayload) << "no record";

    link (record, kept.getFullPathName());
    EXPECT_EQ (verify (product, installer), notTheExactPayload) << "a record that is a link";
    record.deleteFile();

    write (in (record, "inside"), "x");
    EXPECT_EQ (verify (product, installer), notTheExactPayload) << "a record that is a directory";
    record.deleteRecursively();

    ASSERT_TRUE (vaultFile ("App").createDirectory().wasOk());
    ASSERT_TRUE (kept.copyFileTo (record));
    EXPECT_EQ (verify (product, installer), notTheExactPayload) << "a folder whose name another takes away";
    vaultFile ("App").deleteFile();
    EXPECT_EQ (verify (product, installer), "good 1.0.0");
}

TEST (InstallService, AnInstallerThatDiffersFromItsRecordIsNotVerified)
{
    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    const auto record = vaultRecordOf (product, "setup.exe", 9);

    const struct { const char* what; juce::var record; } rows[]
    {
        { "not an object", list ({ record }) },
        { "null", juce::var() },
        { "no id", without (record, "id") },
        { "another id", with (record, "id", "other") },
        { "the id in another case", with (record, "id", "App") },
        { "another file", with (record, "fileName", "other.exe") },
        { "the file in another case", with (record, "fileName", "Setup.exe") },
        { "no file", without (record, "fileName") },
        { "a short hash", with (record, "sha256", sha256Of ("installer").substring (1)) },
        { "no hash", without (record, "sha256") },
        { "a hash that is none", with (record, "sha256", juce::String::repeatedString ("x", 64)) },
        { "another hash", with (record, "sha256", sha256Of ("installeR")) },
        { "a smaller size", with (record, "sizeBytes", 8) },
        { "a larger size", with (record, "sizeBytes", 10) },
        { "no size", without (record, "sizeBytes") },
        { "a negative size", with (record, "sizeBytes", -9) },
        { "no version", without (record, "version") },
        { "an empty version", with (record, "version", "") },
        { "a version of blanks", with (record, "version", "  ") },
    };

    for (const auto& row : rows)
    {
        putRecord ("app", row.record);
        EXPECT_EQ (verify (product, installer), noLongerMatches) << row.what;
    }

    write (vaultFile ("app/vault.json"), "{ broken");
    EXPECT_EQ (verify (product, installer), noLongerMatches) << "no JSON";

    putRecord ("app", record);
    EXPECT_EQ (verify (product, installer), "good 1.0.0");
}

TEST (InstallService, OneChangedByteIsFound)
{
    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    write (installer, "instaLler");
    EXPECT_EQ (verify (product, installer), noLongerMatches);
}

TEST (InstallService, AnEmptyInstallerIsNotVerified)
{
    const auto product = applicationOf ("app", "1.0.0", "");
    EXPECT_EQ (verify (product, putInVault (product, "setup.exe", "")), noLongerMatches);
}

TEST (InstallService, AMissingInstallerIsNotVerified)
{
    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    installer.deleteFile();
    EXPECT_EQ (verify (product, installer), noLongerMatches);
}

TEST (InstallService, TheFileIsReadOnlyWhenEverythingElseMatches)
{
    const auto product = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (product, "setup.exe", "installer");
    const auto record = vaultRecordOf (product, "setup.exe", 9);
    FolderWatch watch (vaultFile ("app"));

    for (const auto& bad : { with (record, "id", "other"), with (record, "fileName", "x"), with (record, "sha256", "x"),
                             with (record, "sizeBytes", 10), with (record, "version", "") })
    {
        putRecord ("app", bad);
        EXPECT_EQ (verify (product, installer), noLongerMatches);
    }

    EXPECT_EQ (watch.count ("read setup.exe"), 0);
    putRecord ("app", record);
    EXPECT_EQ (verify (product, installer), "good 1.0.0");
    EXPECT_EQ (watch.count ("read setup.exe"), 1) << "the watch sees a reading";
}

//==============================================================================
TEST (InstallService, AnApplicationIsNotHeldToTheCataloguesVersion)
{
    const auto vaulted = applicationOf ("app", "1.0.0", "installer");
    const auto installer = putInVault (vaulted, "setup.exe", "installer");

    for (const char* version : { "2.0.0", "0.9.0", "" })
    {
        auto product = applicationOf ("app", version, "another installer");
        EXPECT_EQ (verify (product, installer), "good 1.0.0") << version;
    }
}

TEST (InstallService, APackMustMatchTheCatalogueInEveryField)
{
    const auto product = packOf ("sounds", "1.0.0", "archive");
    const auto archive = putInVault (product, "pack.zip", "archive");
    EXPECT_EQ (verify (product, archive), "good 1.0.0");

    const struct { const char* what; std::function<void (Product&)> change; } rows[]
    {
        { "a newer version", [] (Product& p) { p.version = "1.0.1"; } },
        { "an older version", [] (Product& p) { p.version = "0.9"; } },
        { "the pack", [] (Product& p) { p.packId = "other"; } },
        { "the root", [] (Product& p) { p.archiveRoot = "Pack"; } },
        { "the patch", [] (Product& p) { p.defaultPatch = "pack/second.json"; } },
        { "the licence", [] (Product& p) { p.licenseFile = "pack/license.txt"; } },
        { "the licence's name", [] (Product& p) { p.licenseId = "CC0-1.0"; } },
    };

    for (const auto& row : rows)
    {
        auto changed = product;
        row.change (changed);
        EXPECT_EQ (verify (changed, archive), otherManifest) << row.what;
    }

    const auto record = vaultRecordOf (product, "pack.zip", 7);

    for (const auto& changed : { with (record, "installType", "application"), without (record, "installType"), without (record, "content"),
                                 with (record, "content", list ({ "pack" })), without (record, "content.licenseId"),
                                 with (record, "content.packId", "Sounds") })
    {
        putRecord ("sounds", changed);
        EXPECT_EQ (verify (product, archive), otherManifest) << json (changed);
    }
}

TEST (InstallService, AChangedPackIsFoundBeforeItsManifestIsCompared)
{
    auto product = packOf ("sounds", "1.0.0", "archive");
    const auto archive = putInVault (product, "pack.zip", "archive");
    write (archive, "Archive");
    product.version = "2.0.0";
    EXPECT_EQ (verify (product, archive), noLongerMatches);
}
