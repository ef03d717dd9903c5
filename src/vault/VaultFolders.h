#pragma once

#include <juce_core/juce_core.h>

#include <unordered_map>

/** The names in a directory, listed once, to find those that a file system without regard to case would take for one. A plain
    snapshot; any thread. */
class DirectoryNames
{
public:
    explicit DirectoryNames (const juce::Array<juce::File>& entries);

    /** An entry is called by this name but for the case of its letters. An exact match is no collision. */
    bool hasCaseCollision (const juce::String& name) const;

private:
    std::unordered_multimap<juce::String, juce::String> namesByFold;
};

/** The Vault's root listed once, and the rules that decide which folder in it a product may use. Making one makes the root if
    need be. A plain snapshot; any thread. */
class VaultFolders
{
public:
    VaultFolders();

    /** The product's folder, which may not exist; the empty file on any doubt. */
    juce::File folderFor (const juce::String& id) const;

    /** The directories in the root, in the order of their names, not judged; none when the root is not trusted. */
    juce::Array<juce::File> directories() const;

    /** Makes the root if need be. True when it is a directory that nothing redirects. */
    static bool prepareRoot (const juce::File& root);

private:
    const juce::File root;
    const bool isTrusted;
    const juce::Array<juce::File> entries;
    const DirectoryNames names;
};
