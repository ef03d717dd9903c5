#include "vault/VaultIndex.h"
#include "MixedVault.h"
#include "app/HubPaths.h"
#include "support/Files.h"
#include "support/ManifestBuilder.h"
#include "support/VaultItems.h"
#include "vault/VaultStore.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
/** Everything that a model says, as text. */
std::string textOf (const ProductCardModel& model)
{
    const auto& p = model.product;
    juce::StringArray parts { p.id, p.name, p.vendor, p.version, p.description, p.category, juce::String (p.sizeBytes), p.releaseDate,
                              juce::String ((int) p.installType), p.packId, p.archiveRoot, p.defaultPatch, p.licenseFile, p.licenseId,
                              p.credit, p.sourceUrl, juce::String (p.releaseNotes.size()), juce::String ((int) model.state),
                              juce::String (model.progress), model.installedVersion, model.vaultFile.getFullPathName(),
                              model.updateAvailable ? "update" : "", model.latestVersion };

    for (const auto& [key, entry] : p.platforms)
        parts.addArray ({ juce::String (key), entry.url, entry.sha256, juce::String (entry.sizeBytes) });

    return parts.joinIntoString ("|").toStdString();
}

std::vector<std::string> textOf (const std::vector<ProductCardModel>& models)
{
    std::vector<std::string> texts;

    for (const auto& model : models)
        texts.push_back (textOf (model));

    return texts;
}
}

TEST (VaultIndex, NamesTheSameInstallersAsTheStore)
{
    const auto folders = makeMixedVault();
    const VaultIndex index;

    for (const auto& folder : folders)
        EXPECT_EQ (index.trustedInstallerFor (folder.name).getFullPathName().toStdString(),
                   VaultStore::trustedInstallerFor (folder.name).getFullPathName().toStdString()) << folder.name;
}

TEST (VaultIndex, NamesExactlyTheInstallersThatTheRulesAllow)
{
    const auto folders = makeMixedVault();
    const VaultIndex index;

    for (const auto& folder : folders)
        EXPECT_EQ (index.trustedInstallerFor (folder.name).getFullPathName(),
                   folder.trusted ? vaultFile (folder.name + "/" + folder.fileName).getFullPathName() : juce::String()) << folder.name;
}

TEST (VaultIndex, ListsTheSameItemsInTheSameOrderAsTheStore)
{
    makeMixedVault();
    const VaultStore store;
    const VaultIndex index;

    EXPECT_GT (index.items().size(), (size_t) 10);
    EXPECT_EQ (textOf (index.items()), textOf (store.listVaultedItems()));
}

TEST (VaultIndex, HasNoAnswerForOtherSpellingsOrUnsafeNames)
{
    putInVault (applicationOf ("app", "1.0.0", "x"), "setup.exe", "x");
    const VaultIndex index;

    for (const char* id : { "App", "APP", "app ", "", "..", "../Vault/app", "app/" })
        EXPECT_EQ (index.trustedInstallerFor (id).getFullPathName().toStdString(), "") << id;
}

TEST (VaultIndex, AnUntrustedRootGivesAnEmptyIndex)
{
    const auto elsewhere = freshFolder ("elsewhere");
    putInVault (applicationOf ("app", "1.0.0", "x"), "setup.exe", "x");
    ASSERT_TRUE (HubPaths::vaultDirectory().moveFileTo (in (elsewhere, "Vault")));
    link (HubPaths::vaultDirectory(), in (elsewhere, "Vault").getFullPathName());

    const VaultIndex index;
    EXPECT_EQ (index.items().size(), (size_t) 0);
    EXPECT_EQ (index.trustedInstallerFor ("app").getFullPathName().toStdString(), "");
}

TEST (VaultIndex, AnAbsentVaultGivesAnEmptyIndex)
{
    const VaultIndex index;

    EXPECT_EQ (index.items().size(), (size_t) 0);
    EXPECT_EQ (index.trustedInstallerFor ("app").getFullPathName().toStdString(), "");
}

TEST (VaultIndex, IsASnapshot)
{
    const auto installer = putInVault (applicationOf ("app", "1.0.0", "x"), "setup.exe", "x");
    const VaultIndex index;
    vaultFile ("app").deleteRecursively (false);

    EXPECT_EQ (index.trustedInstallerFor ("app").getFullPathName(), installer.getFullPathName());
    EXPECT_EQ (index.items().size(), (size_t) 1);
}
