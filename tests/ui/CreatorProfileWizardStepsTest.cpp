#include "CreatorProfileWizardScene.h"

using namespace zorva::test;
using Scene = WizardScene;

namespace
{
constexpr const char* welcome = "This wizard is optional, works without internet or AI, and saves only a private local draft. You can leave at any time.";
constexpr const char* noImage = "Optional PNG or JPEG, stored as a local file reference.";

struct StepRow
{
    const char* title;
    const char* body;
    const char* field;
    const char* secondaryField;
    std::vector<std::string> visible;    ///< of what comes and goes, in the order of coming
};

const StepRow stepRows[] {
    { "Welcome to your creator profile.", welcome, "", "", {} },
    { "What should people call you?", "Enter your creator or display name.", "Creator / display name (required)", "", { "fieldLabel", "primaryEditor" } },
    { "What kind of creator are you?", "Choose one primary role and optionally list secondary roles separated by commas.", "Primary role (required)",
      "Secondary roles (comma separated)", { "fieldLabel", "secondaryFieldLabel", "secondaryEditor", "roleCombo" } },
    { "Which genres describe your work?", "Enter up to 16 genres separated by commas.", "Genres", "", { "fieldLabel", "primaryEditor" } },
    { "Describe your style.", "Write a short editable description. AI is not required.", "Style description", "", { "fieldLabel", "primaryEditor" } },
    { "Choose local profile-preview styling.", "These values affect only your local creator preview. They never recolor ZORVA DAW or Hub.",
      "Accent color (#RRGGBB)", "Local preview theme", { "fieldLabel", "primaryEditor", "themeCombo" } },
    { "Choose a profile picture.", noImage, "Profile image", "", { "fieldLabel", "chooseImageButton" } },
    { "Choose a banner image.", noImage, "Banner image", "", { "fieldLabel", "chooseImageButton" } },
    { "Add social links.", "Optional. Use one HTTPS link per line: Platform: https://www.zorva.example/name", "Links", "HTTPS links only",
      { "fieldLabel", "primaryEditor" } },
    { "Save a local website-layout preference?", "This saves a local preview preference only. ZORVA does not currently create or host a public website.",
      "Local website preview", "", { "fieldLabel", "websiteToggle" } },
};

const char* const comingAndGoing[] { "fieldLabel", "secondaryFieldLabel", "primaryEditor", "secondaryEditor", "roleCombo", "themeCombo",
                                     "chooseImageButton", "websiteToggle" };
}

//==============================================================================
TEST (CreatorProfileWizardSteps, EveryStepReadsAsTheTableSays)
{
    for (int step = 0; step < 10; ++step)
    {
        SCOPED_TRACE (step);
        Scene::putAt (step);
        Scene scene;
        const auto& row = stepRows[step];

        EXPECT_EQ (scene.text ("stepLabel"), "Create Your ZORVA Profile  ·  Step " + std::to_string (step + 1) + " of 10");
        EXPECT_EQ (scene.text ("titleLabel"), row.title);
        EXPECT_EQ (scene.text ("bodyLabel"), row.body);
        EXPECT_EQ (scene.text ("fieldLabel"), row.field);
        EXPECT_EQ (scene.text ("secondaryFieldLabel"), row.secondaryField);

        std::vector<std::string> visible;

        for (const auto* id : comingAndGoing)
            if (scene.child (id).isVisible())
                visible.push_back (id);

        EXPECT_EQ (visible, row.visible);
        EXPECT_EQ (scene.button ("backButton").isEnabled(), step >= 1);
        EXPECT_EQ (scene.button ("skipButton").isEnabled(), step >= 3);
        EXPECT_EQ (scene.button ("nextButton").getButtonText(), step == 9 ? "Finish" : "Next");
        EXPECT_EQ (scene.button ("nextButton").getTitle(), step == 9 ? "Finish" : "Next") << "its title is its label";
    }
}

TEST (CreatorProfileWizardSteps, EveryStepNamesItsControls)
{
    for (int step = 0; step < 10; ++step)
    {
        SCOPED_TRACE (step);
        Scene::putAt (step);
        Scene scene;
        const auto& row = stepRows[step];

        for (const auto* id : { "primaryEditor", "roleCombo" })
        {
            EXPECT_EQ (scene.child (id).getTitle(), row.field) << id;
            EXPECT_EQ (scene.child (id).getDescription(), row.body) << id;
        }

        EXPECT_EQ (scene.child ("secondaryEditor").getTitle(), row.secondaryField);
        EXPECT_EQ (scene.child ("themeCombo").getTitle(), row.secondaryField);
        EXPECT_EQ (scene.child ("themeCombo").getDescription(), row.body);
        EXPECT_EQ (scene.child ("websiteToggle").getTitle(), "Local website preview preference");
        EXPECT_EQ (scene.child ("websiteToggle").getDescription(), "Stores only a local layout preference; no website is created or hosted");
    }
}

TEST (CreatorProfileWizardSteps, SkipIsDisabledOnTheFirstThreeSteps)
{
    for (int step = 0; step < 3; ++step)
    {
        Scene::putAt (step);
        Scene scene;
        EXPECT_FALSE (scene.button ("skipButton").isEnabled());
        scene.click ("skipButton");
        EXPECT_EQ (scene.step(), step);
    }
}

TEST (CreatorProfileWizardSteps, TheRolesAreOfferedInTheirOrder)
{
    Scene::putAt (2);
    Scene scene;
    auto& combo = scene.child<juce::ComboBox> ("roleCombo");
    const juce::StringArray roles { "Artist", "Producer", "Beatmaker", "Mixing Engineer", "Mastering Engineer", "Composer", "Songwriter",
                                    "Podcaster", "Content Creator", "Recording Studio" };
    ASSERT_EQ (combo.getNumItems(), roles.size());

    for (int i = 0; i < roles.size(); ++i)
    {
        EXPECT_EQ (combo.getItemText (i), roles[i]);
        EXPECT_EQ (combo.getItemId (i), i + 1);
    }

    EXPECT_EQ (combo.getText(), "Artist");
    EXPECT_EQ (combo.getSelectedId(), 1);
    EXPECT_FALSE (combo.isTextEditable());
}

TEST (CreatorProfileWizardSteps, ARoleThatIsNotOfferedIsShownAndKept)
{
    auto profile = Scene::named();
    profile.currentStep = 2;
    profile.primaryRole = "Lute Maker";
    profile.secondaryRoles = { "Singer", "Poet" };
    Scene::put (profile);
    Scene scene;

    EXPECT_EQ (scene.child<juce::ComboBox> ("roleCombo").getText(), "Lute Maker");
    EXPECT_EQ (scene.child<juce::ComboBox> ("roleCombo").getSelectedId(), 0);
    EXPECT_EQ (scene.editor ("secondaryEditor").getText(), "Singer, Poet");

    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_EQ (Scene::saved().primaryRole, "Lute Maker");
    EXPECT_EQ (Scene::saved().secondaryRoles, juce::StringArray ({ "Singer", "Poet" }));
}

TEST (CreatorProfileWizardSteps, TheThemesAreOfferedAndTheDraftsIsSelected)
{
    for (const auto& [value, text, id] : { std::tuple ("zorva-dark", "ZORVA Dark", 1), std::tuple ("midnight", "Midnight", 2),
                                           std::tuple ("soft-light", "Soft Light", 3) })
    {
        auto profile = Scene::named();
        profile.currentStep = 5;
        profile.backgroundTheme = value;
        profile.accentColour = "#a1B2c3";
        Scene::put (profile);
        Scene scene;
        auto& combo = scene.child<juce::ComboBox> ("themeCombo");

        ASSERT_EQ (combo.getNumItems(), 3);
        EXPECT_EQ (combo.getItemText (0), "ZORVA Dark");
        EXPECT_EQ (combo.getItemText (1), "Midnight");
        EXPECT_EQ (combo.getItemText (2), "Soft Light");
        EXPECT_EQ (combo.getItemId (0), 1);
        EXPECT_EQ (combo.getItemId (2), 3);
        EXPECT_EQ (combo.getText(), text);
        EXPECT_EQ (combo.getSelectedId(), id);
        EXPECT_EQ (scene.primary().getText(), "#a1B2c3");

        scene.click ("saveDraftButton");
        scene.expectSavedBox();
        EXPECT_EQ (Scene::saved().backgroundTheme, value);
    }
}

TEST (CreatorProfileWizardSteps, TheCombosAreEmptyOnOtherSteps)
{
    Scene::putAt (2);
    Scene scene;
    scene.click ("nextButton");
    EXPECT_EQ (scene.child<juce::ComboBox> ("roleCombo").getNumItems(), 0);
    EXPECT_EQ (scene.child<juce::ComboBox> ("roleCombo").getText(), "");
    EXPECT_EQ (scene.child<juce::ComboBox> ("themeCombo").getNumItems(), 0);
    EXPECT_EQ (scene.editor ("secondaryEditor").getText(), "");
}

TEST (CreatorProfileWizardSteps, TheToggleShowsTheDraftsState)
{
    for (const bool on : { false, true })
    {
        auto profile = Scene::named();
        profile.currentStep = 9;
        profile.localWebsitePreviewRequested = on;
        Scene::put (profile);
        Scene scene;

        EXPECT_EQ (scene.child<juce::ToggleButton> ("websiteToggle").getButtonText(), "Save a local website-layout preference");
        EXPECT_EQ (scene.child<juce::ToggleButton> ("websiteToggle").getToggleState(), on);
    }
}
