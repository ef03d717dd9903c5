#pragma once

#include <juce_core/juce_core.h>

/** The user's settings, settings.json: a juce::var that holds a juce::DynamicObject. MainHubComponent owns the value and passes
    it in; keys that the Hub does not know survive a save. Message thread only. */
namespace HubSettings
{
/** The built-in manifest address. The reserved top-level domain keeps an unconfigured Hub from ever calling a stranger. */
extern const char* const defaultManifestUrl;

/** Reads settings.json. An empty object when the file is absent, unreadable or not a JSON object; never fails. */
juce::var load();

/** The address of the catalogue as it stands in the settings, or the built-in one when that is absent or empty. Neither trimmed
    nor validated. */
juce::String getManifestUrl (const juce::var& settings);

/** True when getManifestUrl() is exactly the built-in address. */
bool isDefaultManifestUrl (const juce::var& settings);

/** Trims the address and saves it; an empty one reads back as the built-in address. */
void setManifestUrl (juce::var& settings, const juce::String& url);

/** Whether the cached catalogue is deleted at every start; false when absent. */
bool getClearManifestCacheOnStartup (const juce::var& settings);

/** Saves whether the cached catalogue is deleted at every start. */
void setClearManifestCacheOnStartup (juce::var& settings, bool shouldClear);

/** Sets one property in memory and replaces settings.json in one step. A failed save keeps the old file and the new value in
    memory, without a report. Does nothing when the settings are not an object. */
void setProperty (juce::var& settings, const juce::Identifier& key, const juce::var& value);
}
