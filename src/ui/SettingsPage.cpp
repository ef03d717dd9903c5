#include "ui/SettingsPage.h"

#include "app/HubSettings.h"
#include "platform/SecureMemory.h"
#include "support/Text.h"
#include "ui/HubPalette.h"
#include "ui/KeepingFocus.h"
#include "ui/SettingsPageLayout.h"
#include "ui/SpaceKey.h"

namespace
{
void call (const std::function<void()>& callback)
{
    if (callback != nullptr)
        callback();
}
}

SettingsPage::SettingsPage (juce::var& hubSettings, HubCredentialStore& store, HubOpenAiClient& client)
    : settings (hubSettings), credentialStore (store), openAiClient (client)
{
    setMouseClickGrabsKeyboardFocus (false);    // else a click beside the fields would focus the first of them
    createKeySection();
    createManifestSection();
    createVaultSection();
    createAdvancedSection();
    addFocusRings();

    updateResetButton();
    updateAdvancedSection();
}

SettingsPage::~SettingsPage() = default;

void SettingsPage::visibilityChanged()
{
    if (isVisible())
        refreshKeyState();
}

//==============================================================================
void SettingsPage::refreshKeyState()
{
    const bool hasKey = credentialStore.hasKey();

    storageLabel.setText ("Storage: " + credentialStore.backendName() + utf8 (" \xc2\xb7 Model: ") + HubOpenAiClient::modelName,
                          juce::dontSendNotification);

    // While a test runs, which its button tells, the controls and the status are the test's.
    if (testKeyButton.isEnabled())
    {
        // With a key the result of the last action stays readable.
        if (! hasKey)
            keyStatusLabel.setText ("No API key stored in ZORVA Hub.", juce::dontSendNotification);

        setEnabledKeepingFocus (deleteKeyButton, hasKey);
    }

    apiKeyEditor.setTextToShowWhenEmpty (hasKey ? utf8 ("\xe2\x80\xa2\xe2\x80\xa2\xe2\x80\xa2\xe2\x80\xa2 stored \xe2\x80\x94 enter a new key to replace")
                                                : juce::String ("Paste an OpenAI API key"),
                                         HubPalette::textSecondary);
    apiKeyEditor.repaint();
}

void SettingsPage::setKeyControlsEnabled (bool shouldBeEnabled)
{
    // The page takes the focus from the one that had it, and keeps it for the test's button, unless it moves on meanwhile.
    setWantsKeyboardFocus (true);
    saveKeyButton.setEnabled (shouldBeEnabled);
    testKeyButton.setEnabled (shouldBeEnabled);
    deleteKeyButton.setEnabled (shouldBeEnabled && credentialStore.hasKey());
    apiKeyEditor.setEnabled (shouldBeEnabled);
    setWantsKeyboardFocus (false);

    if (shouldBeEnabled && hasKeyboardFocus (false))
        testKeyButton.grabKeyboardFocus();
}

void SettingsPage::wipeKeyEditor()
{
    // What the editor shares is a copy of its own, which it drops as it is.
    auto shared = apiKeyEditor.getTextValue().toString();
    platform::wipeText (shared);

    if (const int length = apiKeyEditor.getTotalNumChars(); length > 0)
        apiKeyEditor.setText (juce::String::repeatedString ("x", length), false);

    // The first empties the value that the editor shares, which would bring its text back; the second forgets what undo knows.
    apiKeyEditor.setText ({}, false);
    apiKeyEditor.clear();
}

juce::String SettingsPage::takeKeyFromEditor()
{
    auto typed = apiKeyEditor.getText();
    auto key = typed.trim();
    wipeKeyEditor();

    // Without blanks around it the two are one.
    if (typed.length() != key.length())
        platform::wipeText (typed);

    return key;
}

void SettingsPage::saveKey()
{
    auto key = takeKeyFromEditor();

    if (key.isEmpty())
    {
        keyStatusLabel.setText ("Enter an API key before saving.", juce::dontSendNotification);
        return;
    }

    juce::String error;
    const bool stored = credentialStore.storeKey (key, error);
    platform::wipeText (key);

    if (stored)
        refreshKeyState();

    keyStatusLabel.setText (stored ? juce::String ("Key saved securely. Select TEST to verify API access.") : error,
                            juce::dontSendNotification);
}

void SettingsPage::testKey()
{
    setKeyControlsEnabled (false);
    keyStatusLabel.setText (utf8 ("Testing OpenAI API access\xe2\x80\xa6"), juce::dontSendNotification);

    auto onDone = [safeThis = SafePointer (this)] (const HubOpenAiClient::Result& result)
    {
        if (safeThis != nullptr)
            safeThis->onKeyTested (result);
    };

    // A key in the field is tested without being stored.
    if (auto key = takeKeyFromEditor(); key.isNotEmpty())
        openAiClient.testKey (key, std::move (onDone));
    else
        openAiClient.testStoredKey (std::move (onDone));
}

void SettingsPage::onKeyTested (const HubOpenAiClient::Result& result)
{
    setKeyControlsEnabled (true);
    refreshKeyState();
    keyStatusLabel.setText (result.ok ? juce::String ("Key verified. ZORVA Hub can reach the OpenAI Responses API.") : result.message,
                            juce::dontSendNotification);
}

void SettingsPage::deleteKey()
{
    juce::String error;
    const bool deleted = credentialStore.deleteKey (error);
    wipeKeyEditor();
    refreshKeyState();
    keyStatusLabel.setText (deleted ? juce::String ("OpenAI API key deleted from ZORVA Hub.") : error, juce::dontSendNotification);
}

//==============================================================================
void SettingsPage::commitManifestUrl()
{
    const auto typed = manifestUrlEditor.getText().trim();

    if (typed.isEmpty())
    {
        manifestUrlEditor.setText (HubSettings::getManifestUrl (settings), false);
        return;
    }

    if (typed != HubSettings::getManifestUrl (settings))
    {
        HubSettings::setManifestUrl (settings, typed);
        call (onSettingsChanged);
    }

    updateResetButton();
}

void SettingsPage::resetManifestUrl()
{
    HubSettings::setManifestUrl (settings, HubSettings::defaultManifestUrl);
    manifestUrlEditor.setText (HubSettings::getManifestUrl (settings), false);
    updateResetButton();
    call (onSettingsChanged);
}

void SettingsPage::updateResetButton()
{
    const bool isDefault = HubSettings::isDefaultManifestUrl (settings);
    setEnabledKeepingFocus (resetManifestButton, ! isDefault);
    resetManifestButton.setTooltip (isDefault ? "Already using the default manifest URL" : "");
}

void SettingsPage::updateAdvancedSection()
{
    advancedButton.setButtonText (advancedVisible ? utf8 ("Hide Advanced \xe2\x96\xb2") : utf8 ("Show Advanced \xe2\x96\xbc"));

    for (auto* child : std::initializer_list<juce::Component*> { &clearCacheToggle, &clearAllCacheButton, &checkUpdatesButton })
        child->setVisible (advancedVisible);
}

//==============================================================================
void SettingsPage::paint (juce::Graphics& g)
{
    g.fillAll (HubPalette::windowBackground);
}

void SettingsPage::paintOverChildren (juce::Graphics& g)
{
    focusRing.paint (g);
}

bool SettingsPage::keyPressed (const juce::KeyPress& key)
{
    return clickFocusedButtonOnSpace (key);
}

void SettingsPage::resized()
{
    const SettingsPageLayout layout (getLocalBounds());

    aiSectionLabel.setBounds (layout.aiSection);
    apiKeyEditor.setBounds (layout.apiKey);
    saveKeyButton.setBounds (layout.saveKey);
    testKeyButton.setBounds (layout.testKey);
    deleteKeyButton.setBounds (layout.deleteKey);
    keyStatusLabel.setBounds (layout.keyStatus);
    storageLabel.setBounds (layout.storage);
    billingLabel.setBounds (layout.billing);
    manifestSectionLabel.setBounds (layout.manifestSection);
    manifestUrlEditor.setBounds (layout.manifestUrl);
    resetManifestButton.setBounds (layout.resetManifest);
    manifestNoticeLabel.setBounds (layout.manifestNotice);
    vaultSectionLabel.setBounds (layout.vaultSection);
    vaultPathLabel.setBounds (layout.vaultPath);
    openVaultButton.setBounds (layout.openVault);
    changeVaultButton.setBounds (layout.changeVault);
    advancedButton.setBounds (layout.advanced);
    clearCacheToggle.setBounds (layout.clearCache);
    clearAllCacheButton.setBounds (layout.clearAllCache);
    checkUpdatesButton.setBounds (layout.checkUpdates);

    // What a low window leaves no room for is no place for the focus.
    for (auto* child : getChildren())
        if (dynamic_cast<juce::Label*> (child) == nullptr)
            setFocusableKeepingFocus (*child, ! child->getBounds().isEmpty());
}
