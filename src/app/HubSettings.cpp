#include "app/HubSettings.h"

#include "app/HubPaths.h"
#include "support/BoundedJson.h"
#include "support/RecordFile.h"

namespace HubSettings
{
namespace
{
const juce::Identifier manifestUrlKey ("manifestUrl");
const juce::Identifier clearManifestCacheKey ("clearManifestCacheOnStartup");
}

const char* const defaultManifestUrl = "https://hub.zorvadaw.example/manifest.json";

juce::var load()
{
    const auto stored = BoundedJson::parseFile (HubPaths::settingsFile());
    return BoundedJson::objectIn (stored) != nullptr ? stored : juce::var (new juce::DynamicObject());
}

juce::String getManifestUrl (const juce::var& settings)
{
    const auto url = BoundedJson::textIn (settings, manifestUrlKey);
    return url.isNotEmpty() ? url : juce::String (defaultManifestUrl);
}

bool isDefaultManifestUrl (const juce::var& settings)
{
    return getManifestUrl (settings) == defaultManifestUrl;
}

void setManifestUrl (juce::var& settings, const juce::String& url)
{
    setProperty (settings, manifestUrlKey, url.trim());
}

bool getClearManifestCacheOnStartup (const juce::var& settings)
{
    const auto* object = BoundedJson::objectIn (settings);
    return object != nullptr && (bool) object->getProperty (clearManifestCacheKey);
}

void setClearManifestCacheOnStartup (juce::var& settings, bool shouldClear)
{
    setProperty (settings, clearManifestCacheKey, shouldClear);
}

void setProperty (juce::var& settings, const juce::Identifier& key, const juce::var& value)
{
    auto* object = BoundedJson::objectIn (settings);

    if (object == nullptr)
        return;

    object->setProperty (key, value);
    HubPaths::ensureDirectories();

    // A failed save keeps the old file and, for this run, the new value.
    RecordFile::replace (HubPaths::settingsFile(), RecordFile::toText (settings));
}
}
