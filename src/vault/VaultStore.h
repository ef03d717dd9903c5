#pragma once

#include "catalogue/ProductCardModel.h"

/** The rules of the Vault, the local store of verified installers: one folder a product, each with the installer and a vault.json
    that describes it.

    A record that fails any rule is not trusted, and the product does not show as vaulted. Nothing here shows a message: a refused
    id, path or record gives an empty juce::File, false or an omitted item. No lock; the static operations may be used by the
    workers, under the protection of a promotion. */
class VaultStore
{
public:
    /** Makes the Vault's root if need be and recovers every product folder in it, on the calling thread. */
    VaultStore();
    ~VaultStore();

    /** What recovery could not finish; one sentence each. */
    const juce::StringArray& getRecoveryNotes() const { return recoveryNotes; }

    /** Every product in the Vault whose record can be trusted, as cached models. Reads the small records, never hashes. */
    std::vector<ProductCardModel> listVaultedItems() const;

    /** Free bytes on the Vault's volume; 0 when the root is not trusted. For display only. */
    juce::int64 freeBytes() const;

    /** The product's folder, which may not exist yet; makes the root. Empty on any doubt. */
    static juce::File vaultFolderFor (const juce::String& id);

    /** The product's vault.json, which may not exist yet. Empty on any doubt. */
    static juce::File vaultRecordFileFor (const juce::String& id);

    /** The installer that the product's record names, existing. Empty on any doubt. Size and hash are not looked at. */
    static juce::File trustedInstallerFor (const juce::String& id);

    /** True when parent holds an entry whose name equals the identity only without regard to case. */
    static bool hasCaseCollision (const juce::File& parent, const juce::String& name);

    /** Writes vault.json for a payload in the product's folder. False with nothing written when any rule fails. */
    static bool writeVaultRecord (const Product& product, const juce::String& platformKey, const juce::File& payload);

    /** Removes the product's folder with everything in it. */
    static void deleteFromVault (const juce::String& id);

private:
    juce::File root;
    bool trusted = false;
    juce::StringArray recoveryNotes;

    JUCE_DECLARE_WEAK_REFERENCEABLE (VaultStore)
    JUCE_DECLARE_NON_COPYABLE (VaultStore)
};
