#include "app/HubPaths.h"
#include "app/HubSettings.h"
#include "support/Text.h"
#include "ui/HubPalette.h"
#include "ui/SettingsPage.h"
#include "ui/TextPainting.h"

// The children of the settings page, in the order of the column.

namespace
{
void setUp (juce::Label& label, const char* id, const juce::String& text, const juce::Font& font, juce::Colour colour,
            juce::Justification justification = juce::Justification::centredLeft)
{
    label.setComponentID (id);
    label.setText (text, juce::dontSendNotification);
    label.setFont (font);
    label.setColour (juce::Label::textColourId, colour);
    label.setJustificationType (justification);
    label.setBorderSize (juce::BorderSize<int> (0));
}

/** The words that a screen reader says; what it does is the tooltip too. */
template <typename Widget>
void describe (Widget& widget, const char* title, const char* whatItDoes)
{
    widget.setTitle (title);
    widget.setDescription (whatItDoes);
    widget.setTooltip (whatItDoes);
}

void setUp (juce::TextButton& button, const char* id, const juce::String& text, juce::Colour textColour = HubPalette::textPrimary)
{
    button.setComponentID (id);
    button.setButtonText (text);
    button.setColour (juce::TextButton::textColourOffId, textColour);
    button.setColour (juce::TextButton::buttonColourId, HubPalette::raised);
}

void setUp (juce::TextEditor& editor, const char* id)
{
    editor.setComponentID (id);
    editor.setFont (plainFont (12.0f));
    editor.setIndents (8, 6);
}
}

void SettingsPage::createKeySection()
{
    setUp (aiSectionLabel, "aiSectionLabel", utf8 ("OPENAI API \xe2\x80\x94 BYOK PILOT"), boldFont (11.0f), HubPalette::textSecondary);

    apiKeyEditor.setPasswordCharacter (0x2022);
    setUp (apiKeyEditor, "apiKeyEditor");
    describe (apiKeyEditor, "OpenAI API key", "Masked API key entry stored only by ZORVA Hub in the operating system credential vault.");
    apiKeyEditor.setHelpText ("The key is never read back into this field.");

    setUp (saveKeyButton, "saveKeyButton", "SAVE KEY", HubPalette::accent);
    describe (saveKeyButton, "Save OpenAI API key", "Store the key in the operating system credential vault.");
    saveKeyButton.onClick = [this] { saveKey(); };

    setUp (testKeyButton, "testKeyButton", "TEST", HubPalette::success);
    describe (testKeyButton, "Test OpenAI API key", "Ask OpenAI for a word with the key in the field, or with the stored one.");
    testKeyButton.onClick = [this] { testKey(); };

    setUp (deleteKeyButton, "deleteKeyButton", "DELETE", HubPalette::warning);
    describe (deleteKeyButton, "Delete OpenAI API key", "Remove the stored key from the operating system credential vault.");
    deleteKeyButton.setEnabled (false);
    deleteKeyButton.onClick = [this] { deleteKey(); };

    setUp (keyStatusLabel, "keyStatusLabel", "Open Settings to check ZORVA Hub AI status.", plainFont (10.5f), HubPalette::textPrimary);
    keyStatusLabel.setTitle ("OpenAI API key status");
    setUp (storageLabel, "storageLabel", "Storage: " + credentialStore.backendName() + utf8 (" \xc2\xb7 Model: ") + HubOpenAiClient::modelName,
           plainFont (10.0f), HubPalette::textSecondary);
    setUp (billingLabel, "billingLabel",
           "OpenAI API access and billing are separate from ChatGPT subscriptions.\nOpenAI bills usage to your API account.",
           plainFont (10.0f), HubPalette::warning, juce::Justification::topLeft);
    billingLabel.setTitle ("OpenAI billing notice");

    for (auto* child : std::initializer_list<juce::Component*> { &aiSectionLabel, &apiKeyEditor, &saveKeyButton, &testKeyButton,
                                                                  &deleteKeyButton, &keyStatusLabel, &storageLabel, &billingLabel })
        addAndMakeVisible (child);
}

void SettingsPage::createManifestSection()
{
    setUp (manifestSectionLabel, "manifestSectionLabel", "MANIFEST URL", boldFont (11.0f), HubPalette::textSecondary);

    setUp (manifestUrlEditor, "manifestUrlEditor");
    manifestUrlEditor.setText (HubSettings::getManifestUrl (settings), false);
    describe (manifestUrlEditor, "Manifest URL", "The https address that the list of products is read from.");
    manifestUrlEditor.onReturnKey = [this] { commitManifestUrl(); };
    manifestUrlEditor.onFocusLost = [this] { commitManifestUrl(); };

    setUp (resetManifestButton, "resetManifestButton", "Reset to Default");
    resetManifestButton.setTitle ("Reset manifest URL to default");
    resetManifestButton.setDescription ("Use the built-in manifest address again.");
    resetManifestButton.onClick = [this] { resetManifestUrl(); };

    setUp (manifestNoticeLabel, "manifestNoticeLabel", utf8 ("\xe2\x9a\xa0 Applied on the next manifest refresh"), plainFont (10.0f),
           HubPalette::warning);

    for (auto* child : std::initializer_list<juce::Component*> { &manifestSectionLabel, &manifestUrlEditor, &resetManifestButton,
                                                                  &manifestNoticeLabel })
        addAndMakeVisible (child);
}

void SettingsPage::createVaultSection()
{
    const auto path = HubPaths::vaultDirectory().getFullPathName();

    setUp (vaultSectionLabel, "vaultSectionLabel", "VAULT DIRECTORY", boldFont (11.0f), HubPalette::textSecondary);
    setUp (vaultPathLabel, "vaultPathLabel", path, plainFont (11.0f), HubPalette::textPrimary);
    vaultPathLabel.setTooltip (path);
    vaultPathLabel.setMinimumHorizontalScale (0.7f);

    setUp (openVaultButton, "openVaultButton", "Open Vault", HubPalette::accent);
    describe (openVaultButton, "Open Vault", "Show the Vault's folder in the file manager.");
    openVaultButton.onClick = [this] { if (onOpenVault) onOpenVault(); };

    changeVaultButton.setComponentID ("changeVaultButton");
    changeVaultButton.setButtonText (utf8 ("Change\xe2\x80\xa6"));
    describe (changeVaultButton, "Change Vault directory", "Not available in this release");
    changeVaultButton.setEnabled (false);

    for (auto* child : std::initializer_list<juce::Component*> { &vaultSectionLabel, &vaultPathLabel, &openVaultButton,
                                                                  &changeVaultButton })
        addAndMakeVisible (child);
}

void SettingsPage::createAdvancedSection()
{
    setUp (advancedButton, "advancedButton", {});
    describe (advancedButton, "Advanced settings", "Show or hide the settings for the catalogue's cache.");
    advancedButton.onClick = [this]
    {
        advancedVisible = ! advancedVisible;
        updateAdvancedSection();
        resized();
        repaint();
    };
    addAndMakeVisible (advancedButton);

    clearCacheToggle.setComponentID ("clearCacheToggle");
    clearCacheToggle.setButtonText ("Clear Manifest Cache on Startup");
    clearCacheToggle.setToggleState (HubSettings::getClearManifestCacheOnStartup (settings), juce::dontSendNotification);
    describe (clearCacheToggle, "Clear Manifest Cache on Startup", "Delete the cached manifest whenever ZORVA Hub starts.");
    clearCacheToggle.onClick = [this]
    {
        HubSettings::setClearManifestCacheOnStartup (settings, clearCacheToggle.getToggleState());

        if (onSettingsChanged)
            onSettingsChanged();
    };

    setUp (clearAllCacheButton, "clearAllCacheButton", "Clear All Cache", HubPalette::warning);
    describe (clearAllCacheButton, "Clear All Cache", "Deletes the cached manifest. The Vault is never touched.");
    clearAllCacheButton.onClick = [this] { if (onClearCache) onClearCache(); };

    setUp (checkUpdatesButton, "checkUpdatesButton", "Check for Updates Manually", HubPalette::accent);
    describe (checkUpdatesButton, "Check for Updates Manually", "Read the list of products again now.");
    checkUpdatesButton.onClick = [this] { if (onCheckForUpdates) onCheckForUpdates(); };

    for (auto* child : std::initializer_list<juce::Component*> { &clearCacheToggle, &clearAllCacheButton, &checkUpdatesButton })
        addChildComponent (child);
}

void SettingsPage::addFocusRings()
{
    for (auto* child : std::initializer_list<juce::Component*> { &saveKeyButton, &testKeyButton, &deleteKeyButton, &resetManifestButton,
                                                                  &openVaultButton, &changeVaultButton, &advancedButton, &clearCacheToggle,
                                                                  &clearAllCacheButton, &checkUpdatesButton })
        focusRing.watch (*child);
}
