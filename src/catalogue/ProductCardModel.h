#pragma once

#include "catalogue/Product.h"

/** What a product is to this machine now. */
enum class ProductCardState
{
    notInstalled,     ///< not installed, no installer in the Vault
    downloading,      ///< a download of it is active or queued
    cached,           ///< a verified installer is in the Vault, nothing installed
    installing,       ///< an install of it is active
    installed,        ///< installed, at the catalogue's version or of unknown version
    updateAvailable   ///< installed at a version older than the catalogue's
};

/** A product as the views show it: a plain value that is rebuilt from the services and never the source of truth. */
struct ProductCardModel
{
    Product product;
    ProductCardState state = ProductCardState::notInstalled;
    double progress = 0.0;          ///< 0.0 to 1.0, valid while downloading
    juce::String installedVersion;  ///< may be empty
    juce::File vaultFile;           ///< the installer in the Vault; may not exist
    bool updateAvailable = false;
    juce::String latestVersion;     ///< the catalogue's version, set in updateAvailable only
};
