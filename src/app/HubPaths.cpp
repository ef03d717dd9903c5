#include "app/HubPaths.h"

#include "app/PathTrust.h"
#include "platform/KnownFolders.h"

namespace HubPaths
{
namespace
{
bool isPlainDirectory (const juce::File& directory)
{
    return directory.isDirectory() && PathTrust::hasNoReparseAncestry (directory);
}

/** Checked before it is made, so that nothing is made through a redirection, and after, in case one took its place meanwhile. */
bool makeDirectory (const juce::File& directory)
{
    return PathTrust::hasNoReparseAncestry (directory)
        && (directory.exists() || directory.createDirectory().wasOk())
        && isPlainDirectory (directory);
}
}

juce::File root()                       { return platform::configurationFolder().getChildFile ("ZORVA Hub"); }
juce::File vaultDirectory()             { return root().getChildFile ("Vault"); }
juce::File runtimeDirectory()           { return root().getChildFile ("Runtime"); }
juce::File creatorDirectory()           { return root().getChildFile ("Creator"); }
juce::File publishDraftsDirectory()     { return creatorDirectory().getChildFile ("Publish Drafts"); }
juce::File settingsFile()               { return root().getChildFile ("settings.json"); }
juce::File manifestCacheFile()          { return root().getChildFile ("manifest.json"); }
juce::File manifestLocalFile()          { return root().getChildFile ("manifest.local.json"); }
juce::File installRecordFile()          { return root().getChildFile ("installed.json"); }

juce::File productsDirectory()
{
    return platform::localDataFolder().getChildFile ("ZORVA").getChildFile ("Products");
}

juce::File factoryContentDirectory()
{
    return platform::configurationFolder().getChildFile ("ZORVA DAW").getChildFile ("Factory Content");
}

bool ensureDirectories()
{
    const auto home = root();

    if (! makeDirectory (home))
        return false;

    for (const auto& directory : { vaultDirectory(), runtimeDirectory(), creatorDirectory(), publishDraftsDirectory() })
        if (! isPlainDirectory (home) || ! PathTrust::isCanonicallyInside (home, directory, false) || ! makeDirectory (directory))
            return false;

    return true;
}
}
