#include "vault/VaultStore.h"

#include "app/HubPaths.h"
#include "app/PathTrust.h"
#include "support/RecordFile.h"
#include "vault/DirectoryEntries.h"
#include "vault/PromotionTransaction.h"
#include "vault/RecoveryScanner.h"
#include "vault/VaultFolders.h"
#include "vault/VaultIndex.h"
#include "vault/VaultRecord.h"

VaultStore::VaultStore()
    : root (HubPaths::vaultDirectory()), trusted (VaultFolders::prepareRoot (root))
{
    if (! trusted)
        return;

    for (const auto& folder : entriesOf (root, juce::File::findDirectories))
        if (PathTrust::isSafeIdentity (folder.getFileName()) && PathTrust::isTrustedPathUnder (root, folder, true))
            RecoveryScanner::recoverRoot (folder, VaultRecord::fileIn (folder), recoveryNotes, true);

    for (const auto& note : recoveryNotes)
        juce::Logger::writeToLog ("[VAULT RECOVERY] " + note);
}

VaultStore::~VaultStore()
{
    masterReference.clear();
}

std::vector<ProductCardModel> VaultStore::listVaultedItems() const
{
    return trusted ? VaultIndex().items() : std::vector<ProductCardModel>();
}

juce::int64 VaultStore::freeBytes() const
{
    return trusted ? root.getBytesFreeOnVolume() : 0;
}

//==============================================================================
juce::File VaultStore::vaultFolderFor (const juce::String& id)
{
    return PathTrust::isSafeIdentity (id) ? VaultFolders().folderFor (id) : juce::File();
}

juce::File VaultStore::vaultRecordFileFor (const juce::String& id)
{
    const auto folder = vaultFolderFor (id);
    return folder != juce::File() ? VaultRecord::fileIn (folder) : juce::File();
}

juce::File VaultStore::trustedInstallerFor (const juce::String& id)
{
    const auto folder = vaultFolderFor (id);

    if (folder == juce::File() || PathTrust::isReparseOrSymlink (folder))
        return {};

    return VaultRecord::installerOf (VaultRecord::read (folder), folder);
}

bool VaultStore::hasCaseCollision (const juce::File& parent, const juce::String& name)
{
    return PathTrust::isSafeIdentity (name) && parent.isDirectory()
        && DirectoryNames (entriesOf (parent, juce::File::findFilesAndDirectories)).hasCaseCollision (name);
}

bool VaultStore::writeVaultRecord (const Product& product, const juce::String& platformKey, const juce::File& payload)
{
    if (! PathTrust::isSafeIdentity (product.id))
        return false;

    const auto record = VaultRecord::create (product, platformKey, payload);
    const auto folder = vaultFolderFor (product.id);

    if (! record.has_value() || folder == juce::File() || ! PathTrust::isTrustedPathUnder (folder, payload, true))
        return false;

    folder.createDirectory();    // if it could not be made, the writing fails and says so
    return RecordFile::replace (VaultRecord::fileIn (folder), RecordFile::toText (*record)) == RecordFile::Outcome::written;
}

void VaultStore::deleteFromVault (const juce::String& id)
{
    const auto vault = HubPaths::vaultDirectory();
    const auto folder = vaultFolderFor (id);

    if (folder != juce::File() && vault.isDirectory()
        && PathTrust::hasNoReparseAncestry (vault)
        && PathTrust::isCanonicallyInside (vault, folder, true)
        && PathTrust::hasNoReparseAncestry (folder))
        PromotionTransaction::removePath (folder);
}
