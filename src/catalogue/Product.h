#pragma once

#include <juce_graphics/juce_graphics.h>
#include <string>
#include <unordered_map>
#include <vector>

/** One line of what a release brings; both texts are trimmed and not empty. */
struct ReleaseNote
{
    juce::String title;      ///< at most 80 characters
    juce::String summary;    ///< at most 320 characters
};

/** Where a product's installer for one platform is, and what it must be. */
struct ProductPlatform
{
    juce::String url;            ///< https, as written
    juce::String sha256;         ///< lower case, not trimmed
    juce::int64 sizeBytes = 0;   ///< at least 1 in a parsed manifest
};

/** A record of the catalogue: a plain value, copied freely, also across threads. */
struct Product
{
    enum class InstallType
    {
        application,     ///< a program, installed into a directory of its own
        factoryContent   ///< a sound pack, unpacked where the DAW looks for it
    };

    juce::String id;             ///< as written; unique without regard to case
    juce::String name;
    juce::String vendor;
    juce::String version;
    juce::String description;
    juce::String category;
    juce::int64 sizeBytes = 0;   ///< 0 when unknown
    juce::String releaseDate;    ///< as written, not parsed as a date
    InstallType installType = InstallType::application;

    // The rest of the texts are for sound packs; they are empty for an application.
    juce::String packId;
    juce::String archiveRoot;    ///< the one directory at the top of the archive
    juce::String defaultPatch;   ///< path inside the archive
    juce::String licenseFile;    ///< path of the content licence inside the archive
    juce::String licenseId;
    juce::String credit;
    juce::String sourceUrl;

    std::vector<ReleaseNote> releaseNotes;                        ///< at most 8
    std::unordered_map<std::string, ProductPlatform> platforms;   ///< by platform key, such as "win"
    juce::Image image;                                            ///< null after parsing

    /** The entry of the platform key "win", owned by this product, or null. The Hub downloads no other. */
    const ProductPlatform* windowsPlatform() const;
};

/** The form in which two ids are the same product: lower case, or empty for an id that may not be used. Pure, any thread. */
juce::String normalisedId (const juce::String& id);
