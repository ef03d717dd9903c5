#include "SettingsPageScene.h"

using namespace zorva::test;
using Scene = SettingsScene;

namespace
{
constexpr const char* otherUrl = "https://example.com/manifest.json";

/** The id of what has the focus; "page" for the page itself, empty for nothing. */
std::string focused (Scene& scene)
{
    auto* const component = juce::Component::getCurrentlyFocusedComponent();

    if (component == scene.page.get())
        return "page";

    return component != nullptr ? component->getComponentID().toStdString() : std::string();
}

/** Operates a button as a person does who has no mouse. */
void pressSpaceOn (Scene& scene, const char* id)
{
    scene.child (id).grabKeyboardFocus();
    ASSERT_EQ (focused (scene), id);
    scene.window->key (juce::KeyPress::spaceKey);
}

bool waitForTheTest (Scene& scene)
{
    return pumpUntil ([&] { return scene.button ("testKeyButton").isEnabled(); }, 20000);
}

/** Where Tab stops, beginning at the field for the key. */
std::vector<std::string> stops (Scene& scene)
{
    std::vector<std::string> ids;
    scene.child ("apiKeyEditor").grabKeyboardFocus();

    do
    {
        ids.push_back (focused (scene));
        scene.window->key (juce::KeyPress::tabKey);
    }
    while (focused (scene) != "apiKeyEditor" && ids.size() < 20);

    return ids;
}
}

//==============================================================================
TEST (SettingsPageFocus, TheTestsButtonHasItAgainAfterATest)
{
    for (const auto* key : { "", "sk-test-1" })
    {
        Scene scene (key);
        scene.show();
        pressSpaceOn (scene, "testKeyButton");
        EXPECT_EQ (focused (scene), "page") << "with the focus nowhere, Tab would do nothing";
        ASSERT_TRUE (waitForTheTest (scene));
        EXPECT_EQ (focused (scene), "testKeyButton");
    }
}

TEST (SettingsPageFocus, TabLeadsOnDuringATest)
{
    Scene scene ("sk-test-1");
    scene.show();
    pressSpaceOn (scene, "testKeyButton");
    scene.window->key (juce::KeyPress::tabKey);
    EXPECT_EQ (focused (scene), "manifestUrlEditor");
    ASSERT_TRUE (waitForTheTest (scene));
    EXPECT_EQ (focused (scene), "manifestUrlEditor") << "the end of a test takes it from nothing";
}

TEST (SettingsPageFocus, ATestThatEndsOnAHiddenPageTakesNothing)
{
    Scene scene ("sk-test-1");
    scene.show();
    pressSpaceOn (scene, "testKeyButton");
    scene.page->setVisible (false);
    ASSERT_TRUE (waitForTheTest (scene));
    EXPECT_FALSE (scene.page->hasKeyboardFocus (true));
}

TEST (SettingsPageFocus, ThePageItselfIsNoStop)
{
    Scene scene ("sk-test-1");
    scene.show();
    EXPECT_FALSE (scene.page->getWantsKeyboardFocus());
    pressSpaceOn (scene, "testKeyButton");
    EXPECT_FALSE (scene.page->getWantsKeyboardFocus());
    ASSERT_TRUE (waitForTheTest (scene));
    EXPECT_FALSE (scene.page->getWantsKeyboardFocus());
}

//==============================================================================
TEST (SettingsPageFocus, DeletingHandsItToTheButtonBefore)
{
    Scene scene ("sk-test-1");
    scene.show();
    pressSpaceOn (scene, "deleteKeyButton");
    EXPECT_FALSE (scene.button ("deleteKeyButton").isEnabled());
    EXPECT_EQ (focused (scene), "testKeyButton");
}

TEST (SettingsPageFocus, AFailedDeletionLeavesItWhereItWas)
{
    Scene scene ("sk-test-1");
    scene.store.failDeleting ("Nothing was deleted.");
    scene.show();
    pressSpaceOn (scene, "deleteKeyButton");
    EXPECT_EQ (focused (scene), "deleteKeyButton");
}

TEST (SettingsPageFocus, ResettingHandsItToTheAddress)
{
    Scene scene;
    scene.show();
    scene.enterManifestUrl (otherUrl);
    pressSpaceOn (scene, "resetManifestButton");
    EXPECT_FALSE (scene.button ("resetManifestButton").isEnabled());
    EXPECT_EQ (focused (scene), "manifestUrlEditor");
}

//==============================================================================
TEST (SettingsPageFocus, WhatALowWindowLeavesNoRoomForIsNoStop)
{
    Scene scene ("sk-test-1");
    scene.show();
    const std::vector<std::string> all { "apiKeyEditor", "saveKeyButton", "testKeyButton", "deleteKeyButton", "manifestUrlEditor",
                                         "openVaultButton", "advancedButton" };
    EXPECT_EQ (stops (scene), all);

    scene.page->setSize (740, 454);     // the page in a window of 900 x 600
    EXPECT_TRUE (scene.child ("advancedButton").getBounds().isEmpty());
    EXPECT_EQ (stops (scene), std::vector<std::string> (all.begin(), all.end() - 1));

    scene.page->setSize (Scene::width, Scene::height);
    EXPECT_EQ (stops (scene), all);
}

TEST (SettingsPageFocus, WhatLosesItsRoomHandsItToTheOneBefore)
{
    Scene scene ("sk-test-1");
    scene.show();
    scene.click ("advancedButton");
    ASSERT_EQ (focused (scene), "advancedButton");

    scene.page->setSize (740, 454);
    EXPECT_EQ (focused (scene), "openVaultButton");
    const auto lost = scene.child ("advancedButton").getBounds();
    ASSERT_EQ (lost.getHeight(), 0);
    EXPECT_EQ (pixelsOf (pictureOf (*scene.page), HubPalette::accent, lost.expanded (5)), 0) << "no ring around nothing";

    scene.page->setSize (Scene::width, Scene::height);
    EXPECT_EQ (focused (scene), "openVaultButton") << "it is not taken back";

    // Over all that has lost its room as well.
    scene.child ("checkUpdatesButton").grabKeyboardFocus();
    scene.page->setSize (740, 454);
    EXPECT_EQ (focused (scene), "openVaultButton");
    scene.page->setSize (740, 90);
    EXPECT_EQ (focused (scene), "apiKeyEditor");
}

TEST (SettingsPageFocus, AClickBesideTheFieldsFocusesNone)
{
    Scene scene;
    scene.show();
    scene.click ("aiSectionLabel");
    EXPECT_EQ (focused (scene), "");

    scene.click ("manifestUrlEditor");
    EXPECT_EQ (focused (scene), "manifestUrlEditor");
    scene.click ("vaultPathLabel");
    EXPECT_EQ (focused (scene), "manifestUrlEditor");
}
