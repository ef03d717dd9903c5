#pragma once

#include "catalogue/Product.h"

/** Reads a manifest. The products in document order, or an empty list when the document breaks any rule of the format: one bad
    product makes all of it unusable, since products name download addresses and directories. Products without a name or version
    are left out, and a document that is left with none counts as unusable too. Pure, any thread. */
std::vector<Product> parseManifest (const juce::String& text);

/** What checkManifest found. */
struct ManifestProblem
{
    juce::String product;    ///< the id of the product concerned, or "products[n]" when it has none; empty for the document
    juce::String rule;       ///< the rule that failed, one sentence
    bool fatal = true;       ///< false when only this entry is left out
};

/** The same reading as parseManifest with its reasons, for people who publish a catalogue: the fatal problem that stopped it, if
    any, is the last entry; the others name what was left out. Pure, any thread. */
std::vector<ManifestProblem> checkManifest (const juce::String& text);

/** 1 when a is the later version, -1 when b is, 0 when neither. Parts between dots are compared as numbers; a missing part is 0,
    and a part counts as the number it begins with. Pure, any thread. */
int compareVersions (const juce::String& a, const juce::String& b);
