#pragma once

#include "catalogue/Product.h"

namespace zorva::test
{
/** The SHA-256 of these bytes as 64 lower-case digits, computed by the framework. */
juce::String sha256Of (const std::string& bytes);

/** An application whose download under the key "win" is exactly these bytes. */
Product applicationOf (const juce::String& id, const juce::String& version, const std::string& installer,
                       const juce::String& url = "https://downloads.example/setup.exe");

/** A sound pack whose download under the key "win" is exactly these bytes. Its archive root is "pack", its patch
    "pack/patches/first.json" and its licence "pack/LICENSE.txt". */
Product packOf (const juce::String& id, const juce::String& version, const std::string& archive,
                const juce::String& url = "https://downloads.example/pack.zip");

/** The product's vault.json for an installer of this name and size. */
juce::var vaultRecordOf (const Product& product, const juce::String& fileName, juce::int64 size);

/** A file of the Vault by its path below the Vault's root. */
juce::File vaultFile (const juce::String& relativePath);

/** Puts installer and record into the product's folder as a download leaves them. Returns the installer. */
juce::File putInVault (const Product& product, const juce::String& fileName, const std::string& installer);
}
