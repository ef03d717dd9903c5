#include "CreatorProfileWizardScene.h"

using namespace zorva::test;
using Scene = WizardScene;

namespace
{
struct ButtonRow
{
    const char* id;
    const char* text;
    const char* tooltip;
};

const ButtonRow buttonRows[] {
    { "backButton", "Back", "Return to the previous profile step" },
    { "skipButton", "Skip", "Leave this optional step empty and continue" },
    { "saveDraftButton", "Save Draft", "Save this private profile draft on this computer" },
    { "previewButton", "Preview", "Preview the local profile summary; nothing is published" },
    { "editLaterButton", "Edit Later", "Save this private draft and return to the Hub" },
    { "nextButton", "Next", "Continue to the next profile step" },
    { "deleteButton", "Delete Draft", "Permanently delete the local creator profile draft" },
    { "exportButton", "Export Draft", "Export a copy of the local creator profile JSON for backup or recovery" },
    { "chooseImageButton", "Choose Image", "Choose a local PNG or JPEG for this profile draft" },
};

constexpr const char* recovery = "Your previous local draft needs recovery. It was preserved. Use Export Draft before Delete Draft; "
                                 "nothing was overwritten.";
}

//==============================================================================
TEST (CreatorProfileWizard, NamesItself)
{
    Scene scene;
    EXPECT_EQ (scene.wizard->getTitle(), "ZORVA Creator Profile Wizard");
    EXPECT_EQ (scene.wizard->getDescription(), "Optional offline creator profile draft editor");
    EXPECT_TRUE (scene.wizard->isKeyboardFocusContainer());
}

TEST (CreatorProfileWizard, LabelsLookAsTheTableSays)
{
    Scene scene;
    EXPECT_EQ (scene.text ("eyebrowLabel"), "ZORVA CREATOR PROFILE — OPTIONAL + OFFLINE");
    const auto colour = [&] (const char* id) { return hex (scene.child (id).findColour (juce::Label::textColourId)); };
    EXPECT_EQ (colour ("eyebrowLabel"), hex (HubPalette::accent));
    EXPECT_EQ (colour ("bodyLabel"), hex (HubPalette::textSecondary.brighter (0.25f)));

    for (const auto& [id, height] : { std::pair ("stepLabel", 23.0f), std::pair ("titleLabel", 16.0f) })
    {
        EXPECT_FLOAT_EQ (scene.child<juce::Label> (id).getFont().getHeight(), height);
        EXPECT_TRUE (scene.child<juce::Label> (id).getFont().isBold());
    }

    for (const auto* id : { "eyebrowLabel", "stepLabel", "titleLabel", "bodyLabel", "fieldLabel", "secondaryFieldLabel" })
        EXPECT_FALSE (scene.child<juce::Label> (id).isEditable()) << id;
}

TEST (CreatorProfileWizard, ButtonsReadAsTheTableSays)
{
    Scene::putAt (3);   // on which all of them are enabled
    Scene scene;

    for (const auto& row : buttonRows)
    {
        SCOPED_TRACE (row.id);
        auto& button = scene.button (row.id);
        EXPECT_EQ (button.getButtonText(), row.text);
        EXPECT_EQ (button.getTitle(), row.text);
        EXPECT_EQ (button.getTooltip(), row.tooltip);
        EXPECT_EQ (button.getDescription(), row.tooltip);
        EXPECT_TRUE (button.getWantsKeyboardFocus());
    }
}

TEST (CreatorProfileWizard, FieldsTakeOneLineOfSoManyCharacters)
{
    Scene::putAt (1);
    Scene scene;
    scene.click ("nextButton");

    for (const auto& [id, limit] : { std::pair ("primaryEditor", 500), std::pair ("secondaryEditor", 4000) })
    {
        auto& editor = scene.editor (id);
        EXPECT_FALSE (editor.isMultiLine()) << id;
        EXPECT_FALSE (editor.getReturnKeyStartsNewLine()) << id;
        EXPECT_TRUE (editor.getWantsKeyboardFocus()) << id;
        EXPECT_EQ (hex (editor.findColour (juce::TextEditor::backgroundColourId)), hex (HubPalette::panel)) << id;

        editor.clear();
        editor.insertTextAtCaret (juce::String::repeatedString ("x", limit - 1));
        editor.insertTextAtCaret ("yz");
        EXPECT_EQ (editor.getText().length(), limit) << id;
        EXPECT_TRUE (editor.getText().endsWith ("xy")) << id;
    }
}

//==============================================================================
TEST (CreatorProfileWizard, ADraftReopensWhereItWasLeft)
{
    Scene::putAt (4);
    EXPECT_EQ (Scene().step(), 4);
    EXPECT_TRUE (Scene::draftFile().deleteFile());
    EXPECT_EQ (Scene().step(), 0) << "with no draft, at the start";
}

TEST (CreatorProfileWizard, ADraftThatNeedsRecoveryOpensAtTheStartWithDefaults)
{
    HubPaths::creatorDirectory().createDirectory();
    write (Scene::draftFile(), R"({"schemaVersion": 2, "currentStep": 4, "displayName": "Ann"})");
    Scene scene;

    EXPECT_EQ (scene.step(), 0);
    EXPECT_EQ (scene.text ("bodyLabel"), recovery);
    scene.click ("previewButton");
    scene.expectNews ("Creator Profile Preview",
                      "LOCAL PROFILE PREVIEW\n\nUnnamed creator\nRole not selected\nGenres: Not added\nStyle: Not added\n"
                      "Theme: zorva-dark  Accent: #00BCEB\nWebsite-layout preference: Not requested\n\n"
                      "This is a private local preview. It is not a website or public profile.");
}

TEST (CreatorProfileWizard, OpeningWritesNothing)
{
    Scene scene;
    pump (20);
    EXPECT_FALSE (isThere (HubPaths::creatorDirectory()));
    EXPECT_EQ (scene.closed, 0);
    EXPECT_EQ (currentAlert(), nullptr);
}
