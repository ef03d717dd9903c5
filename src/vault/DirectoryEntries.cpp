#include "vault/DirectoryEntries.h"

#include "app/PathTrust.h"

#include <algorithm>

bool isPresent (const juce::File& file)
{
    return file.exists() || PathTrust::isReparseOrSymlink (file);
}

juce::Array<juce::File> entriesOf (const juce::File& directory, int kinds, const juce::String& pattern)
{
    auto entries = directory.findChildFiles (kinds, false, pattern, juce::File::FollowSymlinks::no);
    std::sort (entries.begin(), entries.end());
    return entries;
}
