#pragma once

#include <juce_core/juce_core.h>

/** Where everything of the Hub lives on disk. Pure computations without state, for any thread; no path depends on a setting. */
namespace HubPaths
{
/** The Hub's own directory in the user's configuration: "ZORVA Hub". */
juce::File root();

/** The store of verified installers. */
juce::File vaultDirectory();

/** What lives only as long as a running Hub. */
juce::File runtimeDirectory();

/** The creator's private profile. */
juce::File creatorDirectory();

/** The preview drafts that the DAW hands over. */
juce::File publishDraftsDirectory();

/** settings.json */
juce::File settingsFile();

/** manifest.json, the cache of the last good catalogue. */
juce::File manifestCacheFile();

/** manifest.local.json, which a user may write by hand; the Hub never writes or deletes it. */
juce::File manifestLocalFile();

/** installed.json */
juce::File installRecordFile();

/** Where application products are installed, one directory a product. */
juce::File productsDirectory();

/** Where the DAW looks for sound packs, one directory a pack. */
juce::File factoryContentDirectory();

/** Makes the root and the four directories below it, each checked for redirections before and after it is made. False at the
    first that is missing and cannot be made or cannot be trusted; what was made so far stays. Any thread. */
bool ensureDirectories();
}
