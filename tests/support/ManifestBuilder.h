#pragma once

#include <initializer_list>
#include <juce_core/juce_core.h>

/** Manifests as a publisher writes them: products are JSON values that every function copies and none changes. */
namespace zorva::test
{
/** A SHA-256 in lower case that belongs to nothing. */
extern const char* const someSha256;

/** A complete application without platforms. */
juce::var application (const juce::String& id, const juce::String& version = "1.0.0");

/** A complete sound pack without platforms; its archive root is "pack". */
juce::var soundPack (const juce::String& id, const juce::String& version = "1.0.0");

/** An entry of "platforms". */
juce::var platform (const juce::String& url = "https://downloads.example/setup.exe",
                    const juce::String& sha256 = someSha256, juce::int64 sizeBytes = 1000);

/** The product with one platform, under the key "win" unless told. */
juce::var withPlatform (const juce::var& product, const juce::var& entry, const juce::String& key = "win");

/** The object with one property set; the path goes through objects by dots. */
juce::var with (const juce::var& object, const juce::String& path, const juce::var& value);

/** The object with one property removed; the path as above. */
juce::var without (const juce::var& object, const juce::String& path);

/** An array of these values. */
juce::var list (std::initializer_list<juce::var> values);

/** A whole manifest of version 1. */
juce::var document (std::initializer_list<juce::var> products);

/** The text of a value. */
juce::String json (const juce::var& value);

/** The text of a whole manifest of version 1. */
juce::String manifest (std::initializer_list<juce::var> products);
}
