#pragma once

#include <juce_graphics/juce_graphics.h>

/** Where everything of the settings page lies: one centred column, each row cut to the height that is left. Pure. */
struct SettingsPageLayout
{
    explicit SettingsPageLayout (juce::Rectangle<int> page);

    juce::Rectangle<int> aiSection, apiKey, saveKey, testKey, deleteKey, keyStatus, storage, billing;
    juce::Rectangle<int> manifestSection, manifestUrl, resetManifest, manifestNotice;
    juce::Rectangle<int> vaultSection, vaultPath, openVault, changeVault;
    juce::Rectangle<int> advanced, clearCache, clearAllCache, checkUpdates;
};
