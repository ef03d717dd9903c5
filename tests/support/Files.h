#pragma once

#include "support/Links.h"

#include <juce_core/juce_core.h>
#include <map>
#include <string>

namespace zorva::test
{
/** A new, empty folder of this name under the test's own HOME. */
juce::File freshFolder (const juce::String& name);

/** The file of this relative path, taken literally. */
juce::File in (const juce::File& folder, const juce::String& relativePath);

/** Makes a file of exactly these bytes, and the folders above it; a failure to do so fails the test. Returns the file. */
juce::File write (const juce::File& file, const juce::String& content);

/** As write(), from raw bytes. */
juce::File writeBytes (const juce::File& file, const std::string& bytes);

/** All bytes of a file; "(absent)" when there is none. */
std::string read (const juce::File& file);

/** Makes a symbolic link; a failure to do so fails the test. Returns the link. */
juce::File link (const juce::File& at, const juce::String& destination);

/** Everything below a folder by relative path: "folder", "file: " and its bytes, or "link: " and where it points. Links are not
    followed. Two equal trees are the same tree. */
using Tree = std::map<std::string, std::string>;
Tree treeOf (const juce::File& folder);
}
