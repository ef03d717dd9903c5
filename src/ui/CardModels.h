#pragma once

#include "catalogue/ProductCardModel.h"
#include "install/InstalledIndex.h"
#include "vault/VaultIndex.h"

#include <map>
#include <set>

/** One model for each product of the catalogue, in its order, and behind them one for each product that only the Vault still
    knows. Reads versions of installed programs from disk; otherwise pure. Message thread. */
std::vector<ProductCardModel> deriveCardModels (const std::vector<Product>& catalogue, const VaultIndex& vault,
                                                const InstalledIndex& installed,
                                                const std::map<juce::String, double>& downloadProgress,
                                                const std::set<juce::String>& activeInstalls);
