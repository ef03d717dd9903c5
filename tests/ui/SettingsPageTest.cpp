#include "SettingsPageScene.h"
#include "app/HubPaths.h"

using namespace zorva::test;
using Scene = SettingsScene;

namespace
{
constexpr auto left = juce::Justification::centredLeft;

juce::String vaultPath()     { return HubPaths::vaultDirectory().getFullPathName(); }
juce::File settingsFile()    { return HubPaths::settingsFile(); }

struct LabelRow
{
    const char* id;
    juce::String text;
    float fontHeight;
    bool bold;
    juce::Colour colour;
    juce::Justification justification = left;
    juce::String title {};
};

std::vector<LabelRow> labelRows()
{
    return {
        { "aiSectionLabel", utf8 ("OPENAI API — BYOK PILOT"), 11.0f, true, HubPalette::textSecondary },
        { "keyStatusLabel", "Open Settings to check ZORVA Hub AI status.", 10.5f, false, HubPalette::textPrimary, left, "OpenAI API key status" },
        { "storageLabel", utf8 ("Storage: Test Vault · Model: gpt-5.6-terra"), 10.0f, false, HubPalette::textSecondary },
        { "billingLabel", "OpenAI API access and billing are separate from ChatGPT subscriptions.\nOpenAI bills usage to your API account.", 10.0f,
          false, HubPalette::warning, juce::Justification::topLeft, "OpenAI billing notice" },
        { "manifestSectionLabel", "MANIFEST URL", 11.0f, true, HubPalette::textSecondary },
        { "manifestNoticeLabel", utf8 ("⚠ Applied on the next manifest refresh"), 10.0f, false, HubPalette::warning },
        { "vaultSectionLabel", "VAULT DIRECTORY", 11.0f, true, HubPalette::textSecondary },
        { "vaultPathLabel", vaultPath(), 11.0f, false, HubPalette::textPrimary },
    };
}

struct ButtonRow
{
    const char* id;
    juce::String text;
    juce::Colour colour = HubPalette::textPrimary;
    bool enabled = true;
    bool advanced = false;
    juce::String title {};
};

std::vector<ButtonRow> buttonRows()
{
    return {
        { "saveKeyButton", "SAVE KEY", HubPalette::accent, true, false, "Save OpenAI API key" },
        { "testKeyButton", "TEST", HubPalette::success, true, false, "Test OpenAI API key" },
        { "deleteKeyButton", "DELETE", HubPalette::warning, false, false, "Delete OpenAI API key" },
        { "resetManifestButton", "Reset to Default", HubPalette::textPrimary, false },
        { "openVaultButton", "Open Vault", HubPalette::accent },
        { "changeVaultButton", utf8 ("Change…"), HubPalette::textPrimary, false },
        { "advancedButton", utf8 ("Show Advanced ▼") },
        { "clearAllCacheButton", "Clear All Cache", HubPalette::warning, true, true },
        { "checkUpdatesButton", "Check for Updates Manually", HubPalette::accent, true, true },
    };
}

const char* const advancedIds[] { "clearCacheToggle", "clearAllCacheButton", "checkUpdatesButton" };

/** All that a person can operate, in the order of the column. */
const char* const interactiveIds[] { "apiKeyEditor", "saveKeyButton", "testKeyButton", "deleteKeyButton", "manifestUrlEditor",
                                     "resetManifestButton", "openVaultButton", "changeVaultButton", "advancedButton",
                                     "clearCacheToggle", "clearAllCacheButton", "checkUpdatesButton" };

std::string tooltipOf (juce::Component& component)
{
    auto* const client = dynamic_cast<juce::TooltipClient*> (&component);
    return client != nullptr ? client->getTooltip().toStdString() : std::string ("has no tooltip");
}

/** A page on which everything can be operated: a key is stored, the address is no longer the default, the advanced part is shown. */
struct FullScene : Scene
{
    FullScene() : Scene ("sk-test-1")
    {
        HubSettings::setManifestUrl (settings, "https://example.com/manifest.json");
        page = std::make_unique<SettingsPage> (settings, store, client);
        page->setSize (width, height);
        show();
        click ("advancedButton");
        juce::Component::unfocusAllComponents();
        window->mouse ({ 2.0f, 2.0f }, 0);
    }
};
}

//==============================================================================
TEST (SettingsPage, LabelsReadAsTheTableSays)
{
    Scene scene;

    for (const auto& row : labelRows())
    {
        SCOPED_TRACE (row.id);
        auto& label = scene.child<juce::Label> (row.id);
        EXPECT_EQ (label.getText(), row.text);
        EXPECT_FLOAT_EQ (label.getFont().getHeight(), row.fontHeight);
        EXPECT_EQ (label.getFont().isBold(), row.bold);
        EXPECT_EQ (hex (label.findColour (juce::Label::textColourId)), hex (row.colour));
        EXPECT_EQ (label.getJustificationType().getFlags(), row.justification.getFlags());
        EXPECT_EQ (label.getBorderSize(), juce::BorderSize<int> (0));
        EXPECT_EQ (label.getTitle(), row.title);
        EXPECT_TRUE (label.isVisible());
        EXPECT_FALSE (label.isEditable());
    }
}

TEST (SettingsPage, ButtonsReadAsTheTableSays)
{
    Scene scene;

    for (const auto& row : buttonRows())
    {
        SCOPED_TRACE (row.id);
        auto& button = scene.button (row.id);
        EXPECT_EQ (button.getButtonText(), row.text);
        EXPECT_EQ (hex (button.findColour (juce::TextButton::textColourOffId)), hex (row.colour));
        EXPECT_EQ (hex (button.findColour (juce::TextButton::buttonColourId)), hex (HubPalette::raised));
        EXPECT_EQ (button.isEnabled(), row.enabled);
        EXPECT_EQ (button.isVisible(), ! row.advanced);

        if (row.title.isNotEmpty())
            EXPECT_EQ (button.getTitle(), row.title);
    }
}

TEST (SettingsPage, TheKeysFieldIsMaskedAndDescribed)
{
    Scene scene;
    auto& editor = scene.editor ("apiKeyEditor");

    EXPECT_EQ (editor.getText(), "");
    EXPECT_EQ (editor.getPasswordCharacter(), (juce::juce_wchar) 0x2022);
    EXPECT_FLOAT_EQ (editor.getFont().getHeight(), 12.0f);
    EXPECT_EQ (editor.getLeftIndent(), 8);
    EXPECT_EQ (editor.getTopIndent(), 6);
    EXPECT_EQ (editor.getTitle(), "OpenAI API key");
    EXPECT_EQ (editor.getDescription(), "Masked API key entry stored only by ZORVA Hub in the operating system credential vault.");
    EXPECT_EQ (editor.getHelpText(), "The key is never read back into this field.");
    EXPECT_TRUE (editor.isVisible());
    EXPECT_TRUE (editor.isEnabled());
    EXPECT_FALSE (editor.isMultiLine());
}

TEST (SettingsPage, TheManifestsFieldShowsTheAddressInForce)
{
    Scene scene;
    auto& editor = scene.editor ("manifestUrlEditor");

    EXPECT_EQ (editor.getText(), HubSettings::defaultManifestUrl);
    EXPECT_EQ (editor.getPasswordCharacter(), (juce::juce_wchar) 0);
    EXPECT_FLOAT_EQ (editor.getFont().getHeight(), 12.0f);
    EXPECT_EQ (editor.getLeftIndent(), 8);
    EXPECT_EQ (editor.getTopIndent(), 6);

    juce::var own (new juce::DynamicObject());
    own.getDynamicObject()->setProperty ("manifestUrl", "https://example.com/manifest.json");
    Scene other ({}, "https://127.0.0.1:1/", own);
    EXPECT_EQ (other.editor ("manifestUrlEditor").getText(), "https://example.com/manifest.json");
    EXPECT_TRUE (other.button ("resetManifestButton").isEnabled());
    EXPECT_EQ (other.button ("resetManifestButton").getTooltip(), "");
}

TEST (SettingsPage, TheVaultsPathIsItsTooltipToo)
{
    Scene scene;
    auto& label = scene.child<juce::Label> ("vaultPathLabel");

    EXPECT_EQ (label.getTooltip(), vaultPath());
    EXPECT_FLOAT_EQ (label.getMinimumHorizontalScale(), 0.7f);
}

TEST (SettingsPage, TooltipsReadAsTheTableSays)
{
    Scene scene;

    EXPECT_EQ (scene.button ("changeVaultButton").getTooltip(), "Not available in this release");
    EXPECT_EQ (scene.button ("clearAllCacheButton").getTooltip(), "Deletes the cached manifest. The Vault is never touched.");
    EXPECT_EQ (scene.button ("resetManifestButton").getTooltip(), "Already using the default manifest URL");
}

TEST (SettingsPage, TheToggleShowsTheSetting)
{
    for (const bool on : { false, true })
    {
        juce::var settings (new juce::DynamicObject());
        settings.getDynamicObject()->setProperty ("clearManifestCacheOnStartup", on);
        Scene scene ({}, "https://127.0.0.1:1/", settings);
        auto& toggle = scene.child<juce::ToggleButton> ("clearCacheToggle");

        EXPECT_EQ (toggle.getButtonText(), "Clear Manifest Cache on Startup");
        EXPECT_EQ (toggle.getToggleState(), HubSettings::getClearManifestCacheOnStartup (settings));
        EXPECT_EQ (toggle.getToggleState(), on);
        EXPECT_FALSE (toggle.isVisible());
    }
}

TEST (SettingsPage, ConstructionAsksForNoKeyAndSavesNothing)
{
    Scene scene ("sk-test-1");
    pump (20);

    EXPECT_TRUE (scene.store.calls().isEmpty());
    EXPECT_FALSE (settingsFile().exists());
    EXPECT_EQ (scene.noted(), "");
    EXPECT_FALSE (scene.button ("deleteKeyButton").isEnabled());
}

TEST (SettingsPage, ThePageIsFilledWithTheWindowsBackground)
{
    Scene scene;
    scene.show();
    const auto image = pictureOf (*scene.page);

    for (const auto& place : { juce::Point<int> (0, 0), { Scene::width - 1, 0 }, { 0, Scene::height - 1 }, { Scene::width - 1, Scene::height - 1 }, { 100, 300 } })
        EXPECT_EQ (pixel (image, place.x, place.y), hex (HubPalette::windowBackground));
}

//==============================================================================
TEST (SettingsPage, ReturnCommitsTheManifestAddress)
{
    Scene scene;
    scene.show();
    scene.enterManifestUrl ("  https://example.com/manifest.json ");

    EXPECT_EQ (HubSettings::getManifestUrl (scene.settings), "https://example.com/manifest.json");
    EXPECT_EQ (HubSettings::getManifestUrl (HubSettings::load()), "https://example.com/manifest.json") << "on disk too";
    EXPECT_EQ (scene.noted(), "settings changed");
    EXPECT_TRUE (scene.button ("resetManifestButton").isEnabled());
    EXPECT_EQ (scene.button ("resetManifestButton").getTooltip(), "");
}

TEST (SettingsPage, LosingTheFocusCommitsTheManifestAddress)
{
    Scene scene;
    scene.show();
    auto& editor = scene.editor ("manifestUrlEditor");
    editor.grabKeyboardFocus();
    editor.setText ("https://example.com/manifest.json");
    pump();
    EXPECT_TRUE (HubSettings::isDefaultManifestUrl (scene.settings)) << "typing alone commits nothing";

    scene.editor ("apiKeyEditor").grabKeyboardFocus();
    pump();
    EXPECT_EQ (HubSettings::getManifestUrl (scene.settings), "https://example.com/manifest.json");
    EXPECT_EQ (scene.noted(), "settings changed");
    EXPECT_TRUE (scene.button ("resetManifestButton").isEnabled());
}

TEST (SettingsPage, AnAddressIsCommittedOnce)
{
    Scene scene;
    scene.show();
    scene.enterManifestUrl ("https://example.com/manifest.json");
    scene.window->key (juce::KeyPress::returnKey);
    juce::Component::unfocusAllComponents();
    pump();

    EXPECT_EQ (scene.noted(), "settings changed");
}

TEST (SettingsPage, TheAddressInForceChangesNothingWhenCommitted)
{
    Scene scene;
    scene.show();
    scene.enterManifestUrl ("  " + juce::String (HubSettings::defaultManifestUrl) + " ");

    EXPECT_EQ (scene.noted(), "");
    EXPECT_FALSE (settingsFile().exists());
    EXPECT_FALSE (scene.button ("resetManifestButton").isEnabled());
}

TEST (SettingsPage, AManifestAddressOfBlanksRestoresTheCurrentOne)
{
    for (const auto* blanks : { "", "   ", "\t " })
    {
        Scene scene;
        scene.show();
        scene.enterManifestUrl (blanks);

        EXPECT_EQ (scene.editor ("manifestUrlEditor").getText(), HubSettings::defaultManifestUrl);
        EXPECT_TRUE (HubSettings::isDefaultManifestUrl (scene.settings));
        EXPECT_EQ (scene.noted(), "");
        EXPECT_FALSE (settingsFile().exists());
    }
}

TEST (SettingsPage, BlanksRestoreAnAddressOfTheUsersOwnToo)
{
    Scene scene;
    scene.show();
    scene.enterManifestUrl ("https://example.com/manifest.json");
    scene.notes.clear();
    scene.enterManifestUrl (" ");

    EXPECT_EQ (scene.editor ("manifestUrlEditor").getText(), "https://example.com/manifest.json");
    EXPECT_EQ (scene.noted(), "");
}

TEST (SettingsPage, TheAddressIsNeitherJudgedNorFetched)
{
    Scene scene;
    scene.show();
    scene.enterManifestUrl ("no address at all");

    EXPECT_EQ (HubSettings::getManifestUrl (scene.settings), "no address at all");
    EXPECT_EQ (scene.noted(), "settings changed");
    EXPECT_EQ (currentAlert(), nullptr);
}

TEST (SettingsPage, ResetPutsTheBuiltInAddressBack)
{
    Scene scene;
    scene.show();
    scene.enterManifestUrl ("https://example.com/manifest.json");
    juce::Component::unfocusAllComponents();
    pump();
    scene.notes.clear();
    scene.click ("resetManifestButton");

    EXPECT_EQ (scene.editor ("manifestUrlEditor").getText(), HubSettings::defaultManifestUrl);
    EXPECT_TRUE (HubSettings::isDefaultManifestUrl (scene.settings));
    EXPECT_TRUE (HubSettings::isDefaultManifestUrl (HubSettings::load())) << "on disk too";
    EXPECT_EQ (scene.noted(), "settings changed");
    EXPECT_FALSE (scene.button ("resetManifestButton").isEnabled());
    EXPECT_EQ (scene.button ("resetManifestButton").getTooltip(), "Already using the default manifest URL");
}

TEST (SettingsPage, WithTheBuiltInAddressInForceResetIsDisabledAndSaysWhy)
{
    Scene scene;
    scene.show();
    EXPECT_FALSE (scene.button ("resetManifestButton").isEnabled());
    EXPECT_EQ (scene.button ("resetManifestButton").getTooltip(), "Already using the default manifest URL");

    scene.enterManifestUrl ("https://example.com/manifest.json");
    scene.enterManifestUrl (HubSettings::defaultManifestUrl);
    EXPECT_FALSE (scene.button ("resetManifestButton").isEnabled()) << "typed in by hand it is the same address";
    EXPECT_EQ (scene.button ("resetManifestButton").getTooltip(), "Already using the default manifest URL");
}

//==============================================================================
TEST (SettingsPage, TheAdvancedPartIsShownAndHiddenAgain)
{
    Scene scene;
    scene.show();

    for (const bool shown : { false, true, false, true })
    {
        EXPECT_EQ (scene.button ("advancedButton").getButtonText(), shown ? utf8 ("Hide Advanced ▲") : utf8 ("Show Advanced ▼"));

        for (const auto* id : advancedIds)
        {
            EXPECT_EQ (scene.child (id).isVisible(), shown) << id;
            EXPECT_EQ (scene.child (id).getBounds().isEmpty() && shown, false) << id << " must be laid out when it is shown";
        }

        const RepaintWatch repaints (*scene.page);
        scene.click ("advancedButton");
        const auto whole = [&] (const auto& area) { return area.contains (scene.page->getLocalBounds()); };
        EXPECT_TRUE (std::any_of (repaints.areas().begin(), repaints.areas().end(), whole)) << "the whole page is painted anew";
    }

    EXPECT_EQ (scene.noted(), "");
}

TEST (SettingsPage, TheToggleIsSavedAndReported)
{
    Scene scene;
    scene.show();
    scene.click ("advancedButton");

    for (const bool on : { true, false, true })
    {
        scene.notes.clear();
        scene.click ("clearCacheToggle");
        EXPECT_EQ (scene.child<juce::ToggleButton> ("clearCacheToggle").getToggleState(), on);
        EXPECT_EQ (HubSettings::getClearManifestCacheOnStartup (scene.settings), on);
        EXPECT_EQ (HubSettings::getClearManifestCacheOnStartup (HubSettings::load()), on) << "on disk too";
        EXPECT_EQ (scene.noted(), "settings changed");
    }
}

TEST (SettingsPage, ButtonsReachTheOwner)
{
    Scene scene;
    scene.show();
    scene.click ("advancedButton");

    scene.click ("openVaultButton");
    EXPECT_EQ (scene.noted(), "open vault");
    scene.click ("clearAllCacheButton");
    EXPECT_EQ (scene.noted(), "open vault, clear cache");
    scene.click ("checkUpdatesButton");
    EXPECT_EQ (scene.noted(), "open vault, clear cache, check for updates");
}

TEST (SettingsPage, ACallbackThatIsNotSetIsSkipped)
{
    Scene scene;
    scene.page->onOpenVault = scene.page->onClearCache = scene.page->onCheckForUpdates = scene.page->onSettingsChanged = nullptr;
    scene.show();

    for (const auto* id : { "openVaultButton", "advancedButton", "clearCacheToggle", "clearAllCacheButton", "checkUpdatesButton" })
        scene.click (id);

    scene.enterManifestUrl ("https://example.com/manifest.json");
    scene.click ("resetManifestButton");

    EXPECT_TRUE (HubSettings::isDefaultManifestUrl (scene.settings));
    EXPECT_TRUE (HubSettings::getClearManifestCacheOnStartup (scene.settings));
    EXPECT_EQ (scene.noted(), "");
}

TEST (SettingsPage, ChangeVaultCannotBePressed)
{
    Scene scene ("sk-test-1");
    scene.show();

    EXPECT_FALSE (scene.button ("changeVaultButton").isEnabled());
    scene.click ("changeVaultButton");
    scene.click ("saveKeyButton");
    scene.click ("advancedButton");
    EXPECT_FALSE (scene.button ("changeVaultButton").isEnabled()) << "whatever else happens";
    EXPECT_EQ (scene.noted(), "");
    EXPECT_EQ (scene.child<juce::Label> ("vaultPathLabel").getText(), vaultPath());
}

//==============================================================================
TEST (SettingsPage, EverythingInteractiveHasTitleAndDescription)
{
    FullScene scene;
    std::map<juce::String, juce::String> owners;

    for (const auto* id : interactiveIds)
    {
        SCOPED_TRACE (id);
        auto* const handler = scene.child (id).getAccessibilityHandler();
        ASSERT_NE (handler, nullptr);
        EXPECT_NE (handler->getTitle().trim(), "");
        EXPECT_NE (handler->getDescription().trim(), "");
        EXPECT_EQ (owners.count (handler->getTitle()), 0u) << owners[handler->getTitle()];
        owners[handler->getTitle()] = id;
    }
}

TEST (SettingsPage, EverythingInteractiveHasATooltipButAnEnabledReset)
{
    FullScene scene;

    for (const auto* id : interactiveIds)
    {
        const auto tooltip = tooltipOf (scene.child (id));
        EXPECT_EQ (tooltip.empty(), id == std::string ("resetManifestButton")) << id;
        EXPECT_NE (tooltip, "has no tooltip") << id;
    }
}

TEST (SettingsPage, TabGoesDownTheColumn)
{
    FullScene scene;
    std::vector<std::string> expected, actual;

    for (const auto* id : interactiveIds)
        if (scene.child (id).isEnabled())
            expected.push_back (id);

    scene.window->grabKeyboardFocus();

    for (size_t i = 0; i < expected.size(); ++i)
    {
        auto* const focused = juce::Component::getCurrentlyFocusedComponent();
        actual.push_back (focused != nullptr ? focused->getComponentID().toStdString() : std::string());
        scene.window->key (juce::KeyPress::tabKey);
    }

    EXPECT_EQ (actual, expected);
    EXPECT_EQ (expected.size(), std::size (interactiveIds) - 1) << "all but the one for moving the Vault";
}

TEST (SettingsPage, WhatHasTheFocusWearsTheAccent)
{
    FullScene scene;

    for (const auto* id : interactiveIds)
    {
        auto& child = scene.child (id);

        if (! child.isEnabled())
            continue;

        const auto area = child.getBounds().expanded (5);
        const auto without = pixelsOf (pictureOf (*scene.page), HubPalette::accent, area);
        child.grabKeyboardFocus();
        const auto with = pixelsOf (pictureOf (*scene.page), HubPalette::accent, area);
        juce::Component::unfocusAllComponents();
        pump();

        EXPECT_GE (with - without, child.getWidth() + child.getHeight()) << id;
    }
}
