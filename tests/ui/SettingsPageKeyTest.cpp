#include "SettingsPageScene.h"
#include "app/HubPaths.h"
#include "support/TrustedTestServer.h"

using namespace zorva::test;
using Scene = SettingsScene;

namespace
{
constexpr const char* path = "/v1/responses";
constexpr const char* noKey = "No API key stored in ZORVA Hub.";
constexpr const char* atFirst = "Open Settings to check ZORVA Hub AI status.";
constexpr const char* saved = "Key saved securely. Select TEST to verify API access.";
constexpr const char* enterOne = "Enter an API key before saving.";
constexpr const char* deleted = "OpenAI API key deleted from ZORVA Hub.";
constexpr const char* verified = "Key verified. ZORVA Hub can reach the OpenAI Responses API.";
constexpr const char* unreachable = "ZORVA Hub could not reach OpenAI. Check your connection.";
constexpr const char* pasteHint = "Paste an OpenAI API key";

juce::String underTest()     { return utf8 ("Testing OpenAI API access…"); }
juce::String storedHint()    { return utf8 ("•••• stored — enter a new key to replace"); }

/** Presses TEST and waits for its end. */
bool testToTheEnd (Scene& scene, const juce::String& candidate = {})
{
    scene.enterKeyAndClick (candidate, "testKeyButton");
    return pumpUntil ([&] { return scene.button ("testKeyButton").isEnabled(); }, 20000);
}

void expectKeyControls (Scene& scene, bool enabled, bool canDelete)
{
    EXPECT_EQ (scene.button ("saveKeyButton").isEnabled(), enabled);
    EXPECT_EQ (scene.button ("testKeyButton").isEnabled(), enabled);
    EXPECT_EQ (scene.editor ("apiKeyEditor").isEnabled(), enabled);
    EXPECT_EQ (scene.button ("deleteKeyButton").isEnabled(), canDelete);
}

/** Leaves the tab during a test, of the stored key or of a typed one, and comes back; then the test ends well. */
void expectATestToOutlastAnotherTab (const juce::String& stored, const juce::String& typed)
{
    TrustedTestServer server;
    server.serve (path, TrustedTestServer::Answer::text (R"({"output_text": "OK"})").silenced());
    Scene scene (stored, server.url (path));
    scene.show();
    scene.enterKeyAndClick (typed, "testKeyButton");

    scene.page->setVisible (false);
    scene.store.nameBackend ("Other Vault");
    scene.page->setVisible (true);
    EXPECT_EQ (scene.status(), underTest());
    expectKeyControls (scene, false, false);
    EXPECT_EQ (scene.child<juce::Label> ("storageLabel").getText(), utf8 ("Storage: Other Vault · Model: gpt-5.6-terra"));

    server.release (path);
    ASSERT_TRUE (pumpUntil ([&] { return scene.button ("testKeyButton").isEnabled(); }, 20000));
    EXPECT_EQ (scene.status(), verified);
    expectKeyControls (scene, true, stored.isNotEmpty());

    // From then on the page tells of the key again.
    juce::String error;
    scene.store.deleteKey (error);
    scene.page->setVisible (false);
    scene.page->setVisible (true);
    EXPECT_EQ (scene.status(), noKey);
    expectKeyControls (scene, true, false);
}
}

//==============================================================================
TEST (SettingsPageKey, OpeningTheTabWithoutAKeySaysSo)
{
    Scene scene;
    scene.show();

    EXPECT_EQ (scene.status(), noKey);
    EXPECT_EQ (scene.editor ("apiKeyEditor").getTextToShowWhenEmpty(), pasteHint);
    expectKeyControls (scene, true, false);
    EXPECT_EQ (scene.store.calls().joinIntoString (", "), "hasKey");
}

TEST (SettingsPageKey, OpeningTheTabWithAKeyLeavesTheStatusAlone)
{
    Scene scene ("sk-test-1");
    scene.show();

    EXPECT_EQ (scene.status(), atFirst);
    EXPECT_EQ (scene.editor ("apiKeyEditor").getTextToShowWhenEmpty(), storedHint());
    expectKeyControls (scene, true, true);
    EXPECT_EQ (scene.store.calls().joinIntoString (", "), "hasKey") << "nothing reads the key into the page";
}

TEST (SettingsPageKey, TheHintIsPaintedInTheSecondaryColour)
{
    for (const auto* key : { "", "sk-test-1" })
    {
        Scene scene (key);
        scene.show();
        const auto area = scene.editor ("apiKeyEditor").getBounds().reduced (4);
        EXPECT_GT (pixelsOf (pictureOf (*scene.page), HubPalette::textSecondary, area), 0) << key;
    }
}

TEST (SettingsPageKey, ANewHintIsSeenAtOnce)
{
    Scene scene;
    scene.show();
    const RepaintWatch repaints (scene.editor ("apiKeyEditor"));
    scene.store.hold ("sk-test-1");
    scene.page->visibilityChanged();

    EXPECT_GT (repaints.count(), 0);
}

TEST (SettingsPageKey, EveryOpeningAsksAnew)
{
    Scene scene ("sk-test-1");
    scene.show();
    scene.page->setVisible (false);
    EXPECT_EQ (scene.store.callCount ("hasKey"), 1) << "leaving the tab asks nothing";

    juce::String error;
    scene.store.deleteKey (error);
    scene.store.nameBackend ("Other Vault");
    scene.page->setVisible (true);

    EXPECT_EQ (scene.store.callCount ("hasKey"), 2);
    EXPECT_EQ (scene.status(), noKey);
    EXPECT_EQ (scene.child<juce::Label> ("storageLabel").getText(), utf8 ("Storage: Other Vault · Model: gpt-5.6-terra"));
    EXPECT_EQ (scene.editor ("apiKeyEditor").getTextToShowWhenEmpty(), pasteHint);
    EXPECT_FALSE (scene.button ("deleteKeyButton").isEnabled());
}

TEST (SettingsPageKey, ReopeningKeepsTheResultOfTheLastAction)
{
    Scene scene;
    scene.show();
    scene.enterKeyAndClick ("sk-test-1", "saveKeyButton");
    scene.page->setVisible (false);
    scene.page->setVisible (true);

    EXPECT_EQ (scene.status(), saved);
}

//==============================================================================
TEST (SettingsPageKey, SavingStoresTheTrimmedKeyAndEmptiesTheField)
{
    Scene scene;
    scene.show();
    scene.enterKeyAndClick (" \t sk-test-1  ", "saveKeyButton");

    EXPECT_EQ (scene.store.key(), "sk-test-1");
    EXPECT_EQ (scene.store.callCount ("storeKey"), 1);
    EXPECT_EQ (scene.store.callCount ("readKey"), 0);
    EXPECT_EQ (scene.status(), saved);
    EXPECT_EQ (scene.editor ("apiKeyEditor").getText(), "");
    EXPECT_EQ (scene.editor ("apiKeyEditor").getTextToShowWhenEmpty(), storedHint());
    expectKeyControls (scene, true, true);
}

TEST (SettingsPageKey, TheFieldIsEmptyBeforeTheStoreIsCalled)
{
    Scene scene;
    scene.show();
    juce::StringArray seen;
    scene.store.onStoring = [&] { seen.add (scene.editor ("apiKeyEditor").getText()); };
    scene.enterKeyAndClick ("sk-test-1", "saveKeyButton");

    ASSERT_EQ (seen.size(), 1);
    EXPECT_EQ (seen[0], "");
}

TEST (SettingsPageKey, SavingReplacesAnEarlierKey)
{
    Scene scene ("sk-test-1");
    scene.show();
    scene.enterKeyAndClick ("sk-test-2", "saveKeyButton");

    EXPECT_EQ (scene.store.key(), "sk-test-2");
    EXPECT_EQ (scene.status(), saved);
}

TEST (SettingsPageKey, SavingAnEmptyFieldOrBlanksStoresNothing)
{
    for (const auto* text : { "", " ", " \t  " })
        for (const auto* key : { "", "sk-test-1" })
        {
            Scene scene (key);
            scene.show();
            scene.enterKeyAndClick (text, "saveKeyButton");

            EXPECT_EQ (scene.store.callCount ("storeKey"), 0);
            EXPECT_EQ (scene.store.key(), key);
            EXPECT_EQ (scene.status(), enterOne);
            EXPECT_EQ (scene.editor ("apiKeyEditor").getText(), "");
        }
}

TEST (SettingsPageKey, AFailedSavingShowsTheStoresWords)
{
    for (const auto* key : { "", "sk-test-1" })
    {
        Scene scene (key);
        scene.store.failStoring ("The vault has no room for this.");
        scene.show();
        scene.enterKeyAndClick ("sk-test-2", "saveKeyButton");

        EXPECT_EQ (scene.status(), "The vault has no room for this.");
        EXPECT_EQ (scene.store.key(), key);
        EXPECT_EQ (scene.editor ("apiKeyEditor").getText(), "") << "wiped all the same";
        expectKeyControls (scene, true, *key != 0);
    }
}

TEST (SettingsPageKey, NeitherUndoNorRedoNorTheClipboardBringsTheKeyBack)
{
    Scene scene;
    scene.show();
    auto& editor = scene.editor ("apiKeyEditor");
    editor.grabKeyboardFocus();
    scene.window->type ("sk-test-1");
    ASSERT_EQ (editor.getText(), "sk-test-1");
    editor.selectAll();
    EXPECT_EQ (editor.getTextInRange (editor.getHighlightedRegion()), "sk-test-1");
    juce::SystemClipboard::copyTextToClipboard ("something else");
    editor.copyToClipboard();
    EXPECT_EQ (juce::SystemClipboard::getTextFromClipboard().contains ("sk-test-1"), false);

    scene.click ("saveKeyButton");
    editor.grabKeyboardFocus();

    for (int i = 0; i < 3; ++i)
    {
        editor.undo();
        EXPECT_EQ (editor.getText(), "");
    }

    for (int i = 0; i < 3; ++i)
    {
        editor.redo();
        EXPECT_EQ (editor.getText(), "");
    }
}

TEST (SettingsPageKey, UndoBringsNoKeyBackThatWasTakenOutByHand)
{
    Scene scene;
    scene.show();
    auto& editor = scene.editor ("apiKeyEditor");
    editor.grabKeyboardFocus();
    scene.window->type ("sk-test-1");
    editor.selectAll();
    scene.window->key (juce::KeyPress::backspaceKey);
    ASSERT_EQ (editor.getText(), "");

    scene.click ("saveKeyButton");
    editor.undo();
    pump();
    EXPECT_EQ (editor.getText(), "");
}

//==============================================================================
TEST (SettingsPageKey, ATestDisablesTheKeyControlsUntilItsEnd)
{
    Scene scene ("sk-test-1");
    scene.show();
    scene.click ("testKeyButton");

    EXPECT_EQ (scene.status(), underTest());
    expectKeyControls (scene, false, false);
    EXPECT_TRUE (scene.editor ("manifestUrlEditor").isEnabled()) << "the rest of the page stays in use";

    EXPECT_TRUE (pumpUntil ([&] { return scene.status() != underTest(); }, 20000));
    expectKeyControls (scene, true, true);
}

TEST (SettingsPageKey, ATestOfTheStoredKeyOutlastsAnotherTab)
{
    expectATestToOutlastAnotherTab ("sk-test-1", {});
}

TEST (SettingsPageKey, ATestOfATypedKeyOutlastsAnotherTab)
{
    expectATestToOutlastAnotherTab ({}, "sk-test-2");
}

TEST (SettingsPageKey, AKeyThatComesDuringATestChangesTheHintAtOnceAndTheButtonAtTheEnd)
{
    Scene scene;
    scene.show();
    scene.enterKeyAndClick ("sk-test-2", "testKeyButton");
    scene.store.hold ("sk-test-1");
    scene.page->visibilityChanged();
    EXPECT_EQ (scene.editor ("apiKeyEditor").getTextToShowWhenEmpty(), storedHint());
    expectKeyControls (scene, false, false);

    ASSERT_TRUE (pumpUntil ([&] { return scene.button ("testKeyButton").isEnabled(); }, 20000));
    expectKeyControls (scene, true, true);
}

TEST (SettingsPageKey, ATestThatReachesNobodySaysSo)
{
    Scene scene ("sk-test-1");
    scene.show();
    ASSERT_TRUE (testToTheEnd (scene));

    EXPECT_EQ (scene.status(), unreachable);
    EXPECT_EQ (scene.store.callCount ("readKey"), 1);
}

TEST (SettingsPageKey, ATestWithoutAnyKeyEndsWithTheClientsWords)
{
    for (const auto* text : { "", "  " })
    {
        Scene scene;
        scene.show();
        ASSERT_TRUE (testToTheEnd (scene, text));

        EXPECT_EQ (scene.status(), "No OpenAI API key is stored in ZORVA Hub.") << "the final words come after those of the key's state";
        expectKeyControls (scene, true, false);
    }
}

TEST (SettingsPageKey, AKeyInTheFieldIsTestedWithoutBeingStored)
{
    for (const auto* key : { "", "sk-test-1" })
    {
        Scene scene (key);
        scene.show();
        scene.enterKeyAndClick ("  sk-test-2 ", "testKeyButton");
        EXPECT_EQ (scene.editor ("apiKeyEditor").getText(), "") << "wiped at once";
        ASSERT_TRUE (pumpUntil ([&] { return scene.button ("testKeyButton").isEnabled(); }, 20000));

        EXPECT_EQ (scene.status(), unreachable);
        EXPECT_EQ (scene.store.callCount ("storeKey"), 0);
        EXPECT_EQ (scene.store.callCount ("readKey"), 0) << "the stored key is not the one that is tested";
        EXPECT_EQ (scene.store.key(), key);
        EXPECT_EQ (scene.editor ("apiKeyEditor").getText(), "");
        expectKeyControls (scene, true, *key != 0);
    }
}

TEST (SettingsPageKey, AGoodKeyIsVerified)
{
    TrustedTestServer server;
    server.serve (path, TrustedTestServer::Answer::text (R"({"output_text": "OK"})"));

    for (const auto* candidate : { "", "sk-test-2" })
    {
        Scene scene ("sk-test-1", server.url (path));
        scene.show();
        ASSERT_TRUE (testToTheEnd (scene, candidate));

        EXPECT_EQ (scene.status(), verified);
        EXPECT_EQ (scene.store.key(), "sk-test-1");
        expectKeyControls (scene, true, true);
    }

    EXPECT_EQ (server.requestCount (path), 2);
}

TEST (SettingsPageKey, ARefusedKeyIsReportedInTheClientsWords)
{
    TrustedTestServer server;

    struct Case
    {
        int status;
        const char* message;
    };

    for (const auto& c : { Case { 401, "OpenAI rejected the API key. Replace it in ZORVA Hub Settings." },
                           Case { 402, "The OpenAI API account has no available credit or quota." },
                           Case { 503, "OpenAI is temporarily unavailable. Try again later." } })
    {
        server.serve (path, TrustedTestServer::Answer::text ("{}", c.status));
        Scene scene ("sk-test-1", server.url (path));
        scene.show();
        ASSERT_TRUE (testToTheEnd (scene));
        EXPECT_EQ (scene.status(), c.message);
    }
}

TEST (SettingsPageKey, AKeyThatVanishesDuringTheTestCannotBeDeleted)
{
    Scene scene ("sk-test-1");
    scene.show();
    scene.click ("testKeyButton");
    juce::String error;
    scene.store.deleteKey (error);
    ASSERT_TRUE (pumpUntil ([&] { return scene.button ("testKeyButton").isEnabled(); }, 20000));

    EXPECT_FALSE (scene.button ("deleteKeyButton").isEnabled());
    EXPECT_EQ (scene.editor ("apiKeyEditor").getTextToShowWhenEmpty(), pasteHint);
}

TEST (SettingsPageKey, ATestThatOutlivesThePageEndsInSilence)
{
    TrustedTestServer server;
    server.serve (path, TrustedTestServer::Answer::text (R"({"output_text": "OK"})").silenced());
    Scene scene ("sk-test-1", server.url (path));
    scene.show();
    scene.click ("testKeyButton");
    ASSERT_TRUE (pumpUntil ([&] { return server.requestCount (path) == 1; }, 20000));

    scene.window.reset();
    scene.page.reset();
    const int asked = scene.store.callCount ("hasKey");
    server.release (path);

    // The next test waits for the end of the first, whose answer therefore comes earlier.
    bool finished = false;
    scene.client.testStoredKey ([&] (const HubOpenAiClient::Result& result) { finished = result.ok; });
    EXPECT_TRUE (pumpUntil ([&] { return finished; }, 20000));
    EXPECT_EQ (scene.store.callCount ("hasKey"), asked) << "only a page asks for that";
}

//==============================================================================
TEST (SettingsPageKey, DeletingAsksNoQuestion)
{
    Scene scene ("sk-test-1");
    scene.show();
    scene.enterKeyAndClick ("sk-half-typed", "deleteKeyButton");

    EXPECT_EQ (currentAlert(), nullptr);
    EXPECT_EQ (scene.store.key(), "");
    EXPECT_EQ (scene.store.callCount ("deleteKey"), 1);
    EXPECT_EQ (scene.status(), deleted) << "the final words come after those of the key's state";
    EXPECT_EQ (scene.editor ("apiKeyEditor").getText(), "");
    EXPECT_EQ (scene.editor ("apiKeyEditor").getTextToShowWhenEmpty(), pasteHint);
    expectKeyControls (scene, true, false);
}

TEST (SettingsPageKey, AFailedDeletionShowsTheStoresWords)
{
    Scene scene ("sk-test-1");
    scene.store.failDeleting ("The vault is locked.");
    scene.show();
    scene.enterKeyAndClick ("sk-half-typed", "deleteKeyButton");

    EXPECT_EQ (scene.status(), "The vault is locked.");
    EXPECT_EQ (scene.store.key(), "sk-test-1");
    EXPECT_EQ (scene.editor ("apiKeyEditor").getText(), "") << "wiped all the same";
    expectKeyControls (scene, true, true);
}

TEST (SettingsPageKey, ADisabledDeleteDoesNothing)
{
    Scene scene;
    scene.show();
    scene.click ("deleteKeyButton");

    EXPECT_EQ (scene.store.callCount ("deleteKey"), 0);
    EXPECT_EQ (scene.status(), noKey);
}

TEST (SettingsPageKey, NothingOfTheKeyIsLeftInTheSettingsOrTheirFile)
{
    Scene scene;
    scene.show();
    scene.enterKeyAndClick ("sk-test-canary", "saveKeyButton");
    scene.enterManifestUrl ("https://example.com/manifest.json");

    EXPECT_FALSE (juce::JSON::toString (scene.settings).contains ("canary"));
    EXPECT_FALSE (HubPaths::settingsFile().loadFileAsString().contains ("canary"));
    EXPECT_TRUE (HubPaths::settingsFile().existsAsFile());
}
