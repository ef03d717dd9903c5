#pragma once

#include <juce_core/juce_core.h>
#include <vector>

namespace zorva::test
{
/** A folder of the Vault and what the rules make of it. */
struct VaultFolder
{
    juce::String name;
    juce::String fileName;    ///< of the installer that its record means
    bool trusted;             ///< the record names an installer that may be used
    bool listed;              ///< the folder shows as a vaulted item
};

/** Fills the empty Vault with many folders, good ones and one for every rule that a bad one breaks. */
std::vector<VaultFolder> makeMixedVault();
}
