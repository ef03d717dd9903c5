#pragma once

#include "catalogue/ProductCardModel.h"

#include <optional>

/** vault.json, the record that describes one vaulted installer: how it is read, judged and made. Any thread. */
namespace VaultRecord
{
/** The record's file in a product's folder, which may not exist. */
juce::File fileIn (const juce::File& folder);

/** The record of a product's folder as an object; a void var unless it is a plain file and names exactly this folder's product. */
juce::var read (const juce::File& folder);

/** The installer that a record names, existing in the record's folder; the empty file on any doubt. */
juce::File installerOf (const juce::var& record, const juce::File& folder);

/** The vaulted product as a cached model. Sizes are those of the installer on disk; nothing is hashed. Nothing when the record's
    install type is unknown or its sound pack fields break a rule. */
std::optional<ProductCardModel> modelOf (const juce::var& record, const juce::File& installer);

/** The record for a product's installer. Nothing when the product has no such platform, or breaks a rule, or the installer is not
    of the published size. */
std::optional<juce::var> create (const Product& product, const juce::String& platformKey, const juce::File& installer);
}
