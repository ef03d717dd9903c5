#include "vault/VaultFolders.h"

#include "app/HubPaths.h"
#include "app/PathTrust.h"
#include "platform/CaseFold.h"
#include "support/ChildFile.h"
#include "vault/DirectoryEntries.h"

DirectoryNames::DirectoryNames (const juce::Array<juce::File>& entries)
{
    for (const auto& entry : entries)
    {
        const auto name = entry.getFileName();
        namesByFold.emplace (platform::foldCase (name), name);
    }
}

bool DirectoryNames::hasCaseCollision (const juce::String& name) const
{
    const auto [begin, end] = namesByFold.equal_range (platform::foldCase (name));

    return std::any_of (begin, end, [&name] (const auto& entry) { return entry.second != name; });
}

//==============================================================================
VaultFolders::VaultFolders()
    : root (HubPaths::vaultDirectory()),
      isTrusted (prepareRoot (root)),
      entries (isTrusted ? entriesOf (root, juce::File::findFilesAndDirectories) : juce::Array<juce::File>()),
      names (entries)
{
}

juce::File VaultFolders::folderFor (const juce::String& id) const
{
    if (! isTrusted || ! PathTrust::isSafeIdentity (id) || names.hasCaseCollision (id))
        return {};

    const auto folder = childOf (root, id);
    return PathTrust::isTrustedPathUnder (root, folder, true) ? folder : juce::File();
}

juce::Array<juce::File> VaultFolders::directories() const
{
    auto found = entries;
    found.removeIf ([] (const juce::File& entry) { return ! entry.isDirectory(); });
    return found;
}

bool VaultFolders::prepareRoot (const juce::File& root)
{
    return PathTrust::hasNoReparseAncestry (root)
        && (root.exists() || root.createDirectory().wasOk())
        && root.isDirectory()
        && PathTrust::hasNoReparseAncestry (root);
}
