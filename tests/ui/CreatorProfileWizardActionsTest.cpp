#include "CreatorProfileWizardScene.h"

using namespace zorva::test;
using Scene = WizardScene;

//==============================================================================
TEST (CreatorProfileWizardActions, APersonWalksFromWelcomeToFinish)
{
    Scene scene;
    scene.click ("nextButton");
    scene.primary().setText (utf8 ("Zoë Ray"));
    scene.click ("nextButton");
    scene.child<juce::ComboBox> ("roleCombo").setSelectedId (3);
    scene.editor ("secondaryEditor").setText ("Composer");
    scene.click ("nextButton");
    scene.primary().setText ("Ambient, Dub");
    scene.click ("nextButton");
    scene.primary().setText ("Slow and wide.");
    scene.click ("nextButton");
    scene.primary().setText ("#aabbcc");
    scene.child<juce::ComboBox> ("themeCombo").setSelectedId (2);
    scene.click ("nextButton");
    scene.click ("nextButton");
    scene.click ("nextButton");
    scene.primary().setText ("Site: https://a.example/zoe");
    scene.click ("nextButton");
    scene.click ("websiteToggle");
    ASSERT_EQ (scene.step(), 9);
    EXPECT_FALSE (Scene::draftFile().exists()) << "walking on saves nothing";

    scene.click ("nextButton");
    scene.expectSavedBox();
    EXPECT_EQ (scene.step(), 9) << "the wizard stays open on its last step";
    EXPECT_EQ (scene.closed, 0);

    const auto saved = Scene::saved();
    EXPECT_TRUE (saved.completed);
    EXPECT_EQ (saved.currentStep, 9);
    EXPECT_EQ (saved.displayName, utf8 ("Zoë Ray"));
    EXPECT_EQ (saved.primaryRole, "Beatmaker");
    EXPECT_EQ (saved.secondaryRoles, juce::StringArray ("Composer"));
    EXPECT_EQ (saved.genres, juce::StringArray ({ "Ambient", "Dub" }));
    EXPECT_EQ (saved.styleDescription, "Slow and wide.");
    EXPECT_EQ (saved.accentColour, "#aabbcc");
    EXPECT_EQ (saved.backgroundTheme, "midnight");
    EXPECT_EQ (saved.socialLinks["Site"], "https://a.example/zoe");
    EXPECT_TRUE (saved.localWebsitePreviewRequested);

    scene.click ("previewButton");
    scene.expectNews ("Creator Profile Preview",
                      utf8 ("LOCAL PROFILE PREVIEW\n\nZoë Ray\nBeatmaker\nGenres: Ambient, Dub\nStyle: Slow and wide.\n"
                            "Theme: midnight  Accent: #aabbcc\nWebsite-layout preference: Saved locally\n\n"
                            "This is a private local preview. It is not a website or public profile."));
}

TEST (CreatorProfileWizardActions, ThePreviewTakesTheStepAlongAndSavesNothing)
{
    Scene::putAt (4);
    Scene scene;
    scene.primary().setText ("Slow.");
    const auto before = read (Scene::draftFile());
    scene.click ("previewButton");
    scene.expectNews ("Creator Profile Preview",
                      "LOCAL PROFILE PREVIEW\n\nAnn\nArtist\nGenres: Not added\nStyle: Slow.\n"
                      "Theme: zorva-dark  Accent: #00BCEB\nWebsite-layout preference: Not requested\n\n"
                      "This is a private local preview. It is not a website or public profile.");
    EXPECT_EQ (read (Scene::draftFile()), before);
    EXPECT_EQ (scene.step(), 4);
}

TEST (CreatorProfileWizardActions, APreviewOfABadStepAsksForAttention)
{
    Scene::putAt (1);
    Scene scene;
    scene.primary().setText ("");
    scene.click ("previewButton");
    EXPECT_TRUE (scene.primary().hasKeyboardFocus (false));
    scene.expectWarning ("Preview Needs Attention", "Creator name is required to finish.");
    EXPECT_EQ (scene.step(), 1);
}

TEST (CreatorProfileWizardActions, SkipDropsWhatWasTypedAndGoesOn)
{
    for (int step = 3; step < 9; ++step)
    {
        Scene::putAt (step);
        Scene scene;
        SCOPED_TRACE (step);

        if (scene.primary().isVisible())
            scene.primary().setText ("not a thing to keep");

        scene.click ("skipButton");
        EXPECT_EQ (currentAlert(), nullptr);
        EXPECT_EQ (scene.step(), step + 1);
        scene.click ("saveDraftButton");
        scene.expectSavedBox();

        const auto saved = Scene::saved();
        EXPECT_EQ (saved.currentStep, step + 1);
        EXPECT_EQ (saved.genres.size(), 0);
        EXPECT_EQ (saved.styleDescription, "");
        EXPECT_EQ (saved.accentColour, "#00BCEB");
        EXPECT_EQ (saved.socialLinks.size(), 0);
        EXPECT_FALSE (saved.completed);
    }
}

TEST (CreatorProfileWizardActions, SkipOnTheLastStepFinishesWithTheTogglesState)
{
    Scene::putAt (9);
    Scene scene;
    scene.click ("websiteToggle");
    scene.click ("skipButton");
    scene.expectSavedBox();
    EXPECT_EQ (scene.step(), 9);
    EXPECT_TRUE (Scene::saved().completed);
    EXPECT_TRUE (Scene::saved().localWebsitePreviewRequested) << "saving takes what the step holds";
}

TEST (CreatorProfileWizardActions, FinishNeedsNameAndRole)
{
    CreatorProfile profile;
    profile.currentStep = 9;
    Scene::put (profile);

    {
        Scene scene;
        scene.click ("nextButton");
        scene.expectWarning ("Check This Step", "Creator name is required to finish.");
        scene.click ("skipButton");
        scene.expectAttention ("Creator name is required to finish.");
    }

    profile.displayName = "Ann";
    Scene::put (profile);
    Scene scene;
    scene.click ("nextButton");
    scene.expectWarning ("Check This Step", "Primary role is required to finish.");
    EXPECT_EQ (scene.step(), 9);
    EXPECT_FALSE (Scene::saved().completed);
}

TEST (CreatorProfileWizardActions, FinishedStaysFinished)
{
    Scene::putAt (9);
    Scene scene;
    scene.click ("nextButton");
    scene.expectSavedBox();
    ASSERT_TRUE (Scene::saved().completed);

    scene.click ("backButton");
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_TRUE (Scene::saved().completed);
    EXPECT_EQ (Scene::saved().currentStep, 8);
}

TEST (CreatorProfileWizardActions, FinishedStaysFinishedEvenWhenTheProfileIsRefused)
{
    Scene::putAt (5);
    Scene scene;
    scene.primary().setText ("blue");
    scene.click ("backButton");

    for (int step = 4; step < 9; ++step)
        scene.click ("skipButton");

    // The colour was not looked at on the way, since skipping judges nothing.
    ASSERT_EQ (scene.step(), 9);
    scene.click ("nextButton");
    scene.expectWarning ("Check This Step", "invalid_creator_profile");

    while (scene.step() > 5)
        scene.click ("backButton");

    scene.primary().setText ("#0000ff");
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_TRUE (Scene::saved().completed);
}

TEST (CreatorProfileWizardActions, EditLaterSavesAndCloses)
{
    Scene::putAt (3);
    Scene scene;
    scene.primary().setText ("dub");
    scene.click ("editLaterButton");
    EXPECT_EQ (currentAlert(), nullptr);
    EXPECT_EQ (scene.closed, 1);
    EXPECT_EQ (Scene::saved().genres, juce::StringArray ("dub"));
    EXPECT_EQ (Scene::saved().currentStep, 3);

    scene.wizard->onClose = nullptr;
    scene.click ("editLaterButton");
    EXPECT_EQ (currentAlert(), nullptr);
    EXPECT_EQ (scene.closed, 1);
}

TEST (CreatorProfileWizardActions, EditLaterThatCannotSaveStays)
{
    Scene::putAt (5);
    Scene scene;
    scene.primary().setText ("blue");
    scene.click ("editLaterButton");
    scene.expectAttention ("invalid_creator_profile");
    EXPECT_EQ (scene.closed, 0);
    EXPECT_EQ (Scene::saved().accentColour, "#00BCEB");
}

TEST (CreatorProfileWizardActions, ADraftCanBeSavedFromTheFirstStepWithNothingInIt)
{
    Scene scene;
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_TRUE (Scene::draftFile().existsAsFile());
    EXPECT_EQ (Scene::saved().displayName, "");
}
