#include "MixedVault.h"
#include "app/HubPaths.h"
#include "support/Files.h"
#include "support/ManifestBuilder.h"
#include "support/VaultItems.h"
#include "vault/VaultStore.h"

#include <gtest/gtest.h>
#include <set>

using namespace zorva::test;

namespace
{
std::string pathOf (const juce::File& file)
{
    return file.getFullPathName().toStdString();
}

/** Puts a complete item in the Vault, its record changed in one place. */
void putChanged (const juce::String& id, const juce::String& key, const juce::var& value)
{
    const auto product = applicationOf (id, "1.0.0", "installer");
    putInVault (product, "setup.exe", "installer");
    write (vaultFile (id + "/vault.json"), json (with (vaultRecordOf (product, "setup.exe", 9), key, value)));
}

std::set<std::string> listedIds()
{
    std::set<std::string> ids;

    for (const auto& model : VaultStore().listVaultedItems())
        ids.insert (model.product.id.toStdString());

    return ids;
}
}

//==============================================================================
TEST (VaultStore, TrustsExactlyTheInstallersThatTheRulesAllow)
{
    for (const auto& folder : makeMixedVault())
        EXPECT_EQ (pathOf (VaultStore::trustedInstallerFor (folder.name)),
                   folder.trusted ? pathOf (vaultFile (folder.name + "/" + folder.fileName)) : "") << folder.name;
}

TEST (VaultStore, ListsExactlyTheFoldersThatTheRulesAllow)
{
    std::set<std::string> expected;

    for (const auto& folder : makeMixedVault())
        if (folder.listed)
            expected.insert (folder.name.toStdString());

    EXPECT_EQ (listedIds(), expected);
}

TEST (VaultStore, RefusesAFolderWhoseNameDiffersInCase)
{
    putInVault (applicationOf ("app", "1.0.0", "x"), "setup.exe", "x");
    ASSERT_EQ (listedIds(), (std::set<std::string> { "app" }));

    ASSERT_TRUE (vaultFile ("app").moveFileTo (vaultFile ("App")));
    EXPECT_EQ (listedIds(), std::set<std::string>());
    EXPECT_EQ (pathOf (VaultStore::trustedInstallerFor ("App")), "");
}

TEST (VaultStore, ARecordWhoseFileNameHoldsAPathIsNotVaulted)
{
    putChanged ("app", "fileName", "sub/setup.exe");
    write (vaultFile ("app/sub/setup.exe"), "installer");

    EXPECT_EQ (pathOf (VaultStore::trustedInstallerFor ("app")), "");
    EXPECT_EQ (listedIds(), std::set<std::string>());
}

TEST (VaultStore, ARecordWithoutInstallTypeCountsAsApplication)
{
    putInVault (applicationOf ("app", "1.0.0", "x"), "setup.exe", "x");
    write (vaultFile ("app/vault.json"), json (without (vaultRecordOf (applicationOf ("app", "1.0.0", "x"), "setup.exe", 1), "installType")));

    const auto items = VaultStore().listVaultedItems();
    ASSERT_EQ (items.size(), (size_t) 1);
    EXPECT_TRUE (items[0].product.installType == Product::InstallType::application);
}

TEST (VaultStore, AnUnknownInstallTypeDropsTheItem)
{
    putChanged ("app", "installType", "plugin");
    EXPECT_EQ (listedIds(), std::set<std::string>());
}

TEST (VaultStore, APackWhosePatchLiesOutsideItsRootIsNotListed)
{
    const auto product = packOf ("sounds", "1.0.0", "archive");
    putInVault (product, "pack.zip", "archive");
    ASSERT_EQ (listedIds(), (std::set<std::string> { "sounds" }));

    write (vaultFile ("sounds/vault.json"), json (with (vaultRecordOf (product, "pack.zip", 7), "content.defaultPatch", "elsewhere/first.json")));
    EXPECT_EQ (listedIds(), std::set<std::string>());
}

TEST (VaultStore, ALinkAsAProductFolderIsNotListed)
{
    const auto elsewhere = freshFolder ("elsewhere");
    write (in (elsewhere, "vault.json"), json (vaultRecordOf (applicationOf ("app", "1.0.0", "x"), "setup.exe", 1)));
    write (in (elsewhere, "setup.exe"), "x");
    link (vaultFile ("app"), elsewhere.getFullPathName());

    EXPECT_EQ (listedIds(), std::set<std::string>());
}

//==============================================================================
TEST (VaultStore, AListedApplicationIsRebuiltFromItsRecord)
{
    putInVault (applicationOf ("app", "2.1.0", "installer", "https://downloads.example/app.exe"), "app.exe", "installer");

    const auto items = VaultStore().listVaultedItems();
    ASSERT_EQ (items.size(), (size_t) 1);
    const auto& model = items[0];

    EXPECT_TRUE (model.state == ProductCardState::cached);
    EXPECT_EQ (model.progress, 0.0);
    EXPECT_FALSE (model.updateAvailable);
    EXPECT_EQ (model.installedVersion, "");
    EXPECT_EQ (model.latestVersion, "");
    EXPECT_EQ (pathOf (model.vaultFile), pathOf (vaultFile ("app/app.exe")));

    EXPECT_EQ (model.product.id, "app");
    EXPECT_EQ (model.product.name, "Name of app");
    EXPECT_EQ (model.product.vendor, "Vendor");
    EXPECT_EQ (model.product.version, "2.1.0");
    EXPECT_EQ (model.product.description, "Description");
    EXPECT_EQ (model.product.category, "Category");
    EXPECT_EQ (model.product.sizeBytes, 9);
    EXPECT_TRUE (model.product.installType == Product::InstallType::application);
    EXPECT_EQ (model.product.packId, "");

    ASSERT_EQ (model.product.platforms.size(), (size_t) 1);
    ASSERT_NE (model.product.windowsPlatform(), nullptr);
    EXPECT_EQ (model.product.windowsPlatform()->url, "https://downloads.example/app.exe");
    EXPECT_EQ (model.product.windowsPlatform()->sha256, sha256Of ("installer"));
    EXPECT_EQ (model.product.windowsPlatform()->sizeBytes, 9);
}

TEST (VaultStore, AListedPackCarriesItsContentFields)
{
    putInVault (packOf ("sounds", "1.0.0", "archive"), "pack.zip", "archive");

    const auto items = VaultStore().listVaultedItems();
    ASSERT_EQ (items.size(), (size_t) 1);
    const auto& product = items[0].product;

    EXPECT_TRUE (product.installType == Product::InstallType::factoryContent);
    EXPECT_EQ (product.packId, "sounds");
    EXPECT_EQ (product.archiveRoot, "pack");
    EXPECT_EQ (product.defaultPatch, "pack/patches/first.json");
    EXPECT_EQ (product.licenseFile, "pack/LICENSE.txt");
    EXPECT_EQ (product.licenseId, "CC-BY-4.0");
    EXPECT_EQ (product.credit, "");
    EXPECT_EQ (product.sourceUrl, "");
}

TEST (VaultStore, TheListedSizeIsTheSizeOnDisk)
{
    putChanged ("app", "sizeBytes", 123456);

    const auto items = VaultStore().listVaultedItems();
    ASSERT_EQ (items.size(), (size_t) 1);
    EXPECT_EQ (items[0].product.sizeBytes, 9);
    ASSERT_NE (items[0].product.windowsPlatform(), nullptr);
    EXPECT_EQ (items[0].product.windowsPlatform()->sizeBytes, 9);
}

TEST (VaultStore, TheListedPlatformIsTheRecords)
{
    putChanged ("app", "platform", "mac");

    const auto items = VaultStore().listVaultedItems();
    ASSERT_EQ (items.size(), (size_t) 1);
    EXPECT_EQ (items[0].product.windowsPlatform(), nullptr);
    ASSERT_EQ (items[0].product.platforms.count ("mac"), (size_t) 1);
    EXPECT_EQ (items[0].product.platforms.at ("mac").sizeBytes, 9);
}

TEST (VaultStore, AnEmptyVaultListsNothing)
{
    EXPECT_EQ (VaultStore().listVaultedItems().size(), (size_t) 0);
}
