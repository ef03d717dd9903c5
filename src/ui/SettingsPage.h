#pragma once

#include "ai/HubOpenAiClient.h"
#include "ui/FocusRing.h"

#include <juce_gui_basics/juce_gui_basics.h>

/** The settings tab: the OpenAI API key, the manifest address, the Vault's place, and the catalogue's cache. It holds no data of
    its own; the key goes one way, into the credential store, and is never read back into the page. Message thread only. */
class SettingsPage final : public juce::Component
{
public:
    /** The references are not owned and must outlive the page. The key's state is first read when the page becomes visible. */
    SettingsPage (juce::var& settings, HubCredentialStore& credentialStore, HubOpenAiClient& openAiClient);
    ~SettingsPage() override;

    /** What the owner does for the page; one that is not set is skipped. */
    std::function<void()> onOpenVault, onClearCache, onCheckForUpdates, onSettingsChanged;

    void visibilityChanged() override;
    void paint (juce::Graphics& g) override;
    void paintOverChildren (juce::Graphics& g) override;
    void resized() override;
    bool keyPressed (const juce::KeyPress& key) override;

private:
    void createKeySection();
    void createManifestSection();
    void createVaultSection();
    void createAdvancedSection();
    void addFocusRings();

    void refreshKeyState();
    void setKeyControlsEnabled (bool shouldBeEnabled);
    juce::String takeKeyFromEditor();
    void wipeKeyEditor();
    void saveKey();
    void testKey();
    void onKeyTested (const HubOpenAiClient::Result& result);
    void deleteKey();

    void commitManifestUrl();
    void resetManifestUrl();
    void updateResetButton();
    void updateAdvancedSection();

    juce::var& settings;
    HubCredentialStore& credentialStore;
    HubOpenAiClient& openAiClient;
    bool advancedVisible = false;

    juce::Label aiSectionLabel, keyStatusLabel, storageLabel, billingLabel;
    juce::TextEditor apiKeyEditor;
    juce::TextButton saveKeyButton, testKeyButton, deleteKeyButton;

    juce::Label manifestSectionLabel, manifestNoticeLabel;
    juce::TextEditor manifestUrlEditor;
    juce::TextButton resetManifestButton;

    juce::Label vaultSectionLabel, vaultPathLabel;
    juce::TextButton openVaultButton, changeVaultButton;

    juce::TextButton advancedButton, clearAllCacheButton, checkUpdatesButton;
    juce::ToggleButton clearCacheToggle;

    FocusRing focusRing { *this };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (SettingsPage)
};
