#include "vault/VaultIndex.h"

#include "app/PathTrust.h"
#include "vault/VaultFolders.h"
#include "vault/VaultRecord.h"

VaultIndex::VaultIndex()
{
    const VaultFolders folders;

    for (const auto& folder : folders.directories())
    {
        const auto id = folder.getFileName();

        if (PathTrust::isReparseOrSymlink (folder) || folders.folderFor (id) != folder)
            continue;

        const auto record = VaultRecord::read (folder);
        const auto installer = VaultRecord::installerOf (record, folder);

        if (installer == juce::File())
            continue;

        installers[id] = installer;

        if (auto model = VaultRecord::modelOf (record, installer))
            vaultedItems.push_back (std::move (*model));
    }
}

juce::File VaultIndex::trustedInstallerFor (const juce::String& id) const
{
    const auto found = installers.find (id);
    return found != installers.end() ? found->second : juce::File();
}
