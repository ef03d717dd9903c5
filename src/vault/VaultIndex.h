#pragma once

#include "catalogue/ProductCardModel.h"

#include <unordered_map>

/** One reading of the whole Vault that answers for every product what VaultStore would answer one by one.

    The root is listed once and each record is read once, so that deriving all cards costs time in proportion to the number of
    products. A plain snapshot: it doesn't follow later changes. Message thread. */
class VaultIndex
{
public:
    /** Reads the Vault; an untrusted root gives an empty index. */
    VaultIndex();

    /** What VaultStore::trustedInstallerFor answers: the installer that the record names, or the empty file. */
    juce::File trustedInstallerFor (const juce::String& id) const;

    /** What VaultStore::listVaultedItems answers, in the order of the listing. */
    const std::vector<ProductCardModel>& items() const { return vaultedItems; }

private:
    std::unordered_map<juce::String, juce::File> installers;
    std::vector<ProductCardModel> vaultedItems;
};
