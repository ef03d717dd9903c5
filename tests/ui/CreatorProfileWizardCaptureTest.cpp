#include "CreatorProfileWizardScene.h"

using namespace zorva::test;
using Scene = WizardScene;

namespace
{
const auto linkHint = utf8 ("Use Platform: https://… for each link.");
}

//==============================================================================
TEST (CreatorProfileWizardCapture, AnEmptyNameStopsNext)
{
    Scene scene;
    scene.click ("nextButton");
    ASSERT_EQ (scene.step(), 1);

    for (const auto* typed : { "", "  \t" })
    {
        scene.primary().setText (typed);
        scene.click ("nextButton");
        EXPECT_TRUE (scene.primary().hasKeyboardFocus (false));
        scene.expectWarning ("Check This Step", "Creator name is required to finish.");
        EXPECT_EQ (scene.step(), 1);
        EXPECT_TRUE (scene.primary().hasKeyboardFocus (false)) << "after the box is gone, too";

        scene.click ("saveDraftButton");
        scene.expectAttention ("Creator name is required to finish.");
        EXPECT_FALSE (Scene::draftFile().exists());
    }
}

TEST (CreatorProfileWizardCapture, BackFromAnEmptyNameSaysNothing)
{
    Scene scene;
    scene.click ("nextButton");
    scene.click ("backButton");
    EXPECT_EQ (currentAlert(), nullptr);
    EXPECT_EQ (scene.step(), 0);
}

TEST (CreatorProfileWizardCapture, BackTakesAlongWhatWasTyped)
{
    Scene::putAt (3);
    Scene scene;
    scene.primary().setText ("dub");
    scene.click ("backButton");
    EXPECT_EQ (scene.step(), 2);
    scene.click ("nextButton");
    EXPECT_EQ (scene.primary().getText(), "dub");
}

TEST (CreatorProfileWizardCapture, BackTakesAlongWhatBreaksARule)
{
    Scene::putAt (5);
    Scene scene;
    scene.primary().setText ("blue");
    scene.click ("backButton");
    EXPECT_EQ (currentAlert(), nullptr);
    ASSERT_EQ (scene.step(), 4);

    scene.click ("nextButton");
    scene.expectWarning ("Check This Step", "invalid_creator_profile");
    EXPECT_EQ (scene.step(), 4) << "a bad field of another step stops this one";
}

TEST (CreatorProfileWizardCapture, ANameIsTrimmed)
{
    Scene scene;
    scene.click ("nextButton");
    scene.primary().setText ("  Ann Other ");
    scene.click ("nextButton");
    EXPECT_EQ (scene.step(), 2);
    scene.click ("backButton");
    EXPECT_EQ (scene.primary().getText(), "Ann Other");
}

TEST (CreatorProfileWizardCapture, WithoutARoleNothingIsSaved)
{
    Scene scene;
    scene.click ("nextButton");
    scene.primary().setText ("Ann");
    scene.click ("nextButton");
    ASSERT_EQ (scene.step(), 2);
    EXPECT_EQ (scene.child<juce::ComboBox> ("roleCombo").getText(), "");

    scene.click ("saveDraftButton");
    scene.expectAttention ("Primary role is required to finish.");
    scene.click ("editLaterButton");
    scene.expectAttention ("Primary role is required to finish.");
    scene.click ("nextButton");
    scene.expectWarning ("Check This Step", "Primary role is required to finish.");

    EXPECT_EQ (scene.step(), 2);
    EXPECT_EQ (scene.closed, 0);
    EXPECT_FALSE (Scene::draftFile().exists());
}

TEST (CreatorProfileWizardCapture, RolesAreTakenFromComboAndField)
{
    Scene::putAt (2);
    Scene scene;
    scene.child<juce::ComboBox> ("roleCombo").setSelectedId (7);
    scene.editor ("secondaryEditor").setText ("singer, Poet , SINGER,,");
    scene.click ("saveDraftButton");
    scene.expectSavedBox();

    EXPECT_EQ (Scene::saved().primaryRole, "Songwriter");
    EXPECT_EQ (Scene::saved().secondaryRoles, juce::StringArray ({ "singer", "Poet" }));
}

TEST (CreatorProfileWizardCapture, GenresThatDifferInCaseAreOne)
{
    Scene::putAt (3);
    Scene scene;
    scene.primary().setText ("rock, Rock, jazz");
    scene.click ("nextButton");
    EXPECT_EQ (scene.step(), 4);
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_EQ (Scene::saved().genres, juce::StringArray ({ "rock", "jazz" }));

    scene.click ("backButton");
    EXPECT_EQ (scene.primary().getText(), "rock, jazz");
}

TEST (CreatorProfileWizardCapture, AStyleIsTrimmed)
{
    Scene::putAt (4);
    Scene scene;
    scene.primary().setText (" Slow, and wide. ");
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_EQ (Scene::saved().styleDescription, "Slow, and wide.");
}

TEST (CreatorProfileWizardCapture, AnAccentThatIsNoColourStopsNext)
{
    Scene::putAt (5);
    Scene scene;
    scene.primary().setText ("#12345");
    scene.click ("nextButton");
    EXPECT_TRUE (scene.primary().hasKeyboardFocus (false));
    scene.expectWarning ("Check This Step", "invalid_creator_profile");
    EXPECT_EQ (scene.step(), 5);
    EXPECT_EQ (scene.primary().getText(), "#12345") << "what was typed stays for mending";
}

TEST (CreatorProfileWizardCapture, StylingIsTaken)
{
    Scene::putAt (5);
    Scene scene;
    scene.primary().setText (" #abcdef ");
    scene.child<juce::ComboBox> ("themeCombo").setSelectedId (3);
    scene.click ("nextButton");
    EXPECT_EQ (scene.step(), 6);
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_EQ (Scene::saved().accentColour, "#abcdef");
    EXPECT_EQ (Scene::saved().backgroundTheme, "soft-light");
}

//==============================================================================
TEST (CreatorProfileWizardCapture, LinksAreShownOneALineAndSaved)
{
    auto profile = Scene::named();
    profile.currentStep = 8;
    profile.socialLinks.set ("Site", "https://a.example/ann");
    profile.socialLinks.set ("Tube", "https://b.example");
    Scene::put (profile);
    Scene scene;
    EXPECT_EQ (scene.primary().getText(), "Site: https://a.example/ann\nTube: https://b.example");
    EXPECT_TRUE (scene.primary().isMultiLine());
    EXPECT_EQ (scene.primary().getHeight(), 90);

    scene.primary().setText ("Tube: https://b.example\n\nsite : https://c.example\nSite: https://d.example\n");
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_EQ (Scene::saved().socialLinks.size(), 2);
    EXPECT_EQ (Scene::saved().socialLinks["Tube"], "https://b.example");
    EXPECT_EQ (Scene::saved().socialLinks["Site"], "https://d.example") << "the later line of a name wins, in any case";
}

TEST (CreatorProfileWizardCapture, ALinkWithoutAColonStopsWithAHint)
{
    Scene::putAt (8);
    Scene scene;
    scene.primary().setText ("Site: https://a.example\nsomething");
    scene.click ("nextButton");
    EXPECT_TRUE (scene.primary().hasKeyboardFocus (false));
    scene.expectWarning ("Check This Step", linkHint);
    scene.click ("previewButton");
    EXPECT_TRUE (scene.primary().hasKeyboardFocus (false));
    scene.expectWarning ("Preview Needs Attention", linkHint);
    scene.click ("saveDraftButton");
    scene.expectAttention (linkHint);

    EXPECT_EQ (scene.step(), 8);
    EXPECT_EQ (Scene::saved().socialLinks.size(), 0);
}

TEST (CreatorProfileWizardCapture, ABareAddressFailsAsALink)
{
    Scene::putAt (8);
    Scene scene;
    scene.primary().setText ("https://a.example");
    scene.click ("nextButton");
    scene.expectWarning ("Check This Step", "invalid_social_link");
}

TEST (CreatorProfileWizardCapture, RefusedLinksAreGoneFromTheProfileAllTheSame)
{
    auto profile = Scene::named();
    profile.currentStep = 8;
    profile.socialLinks.set ("Site", "https://a.example");
    profile.socialLinks.set ("Tube", "https://b.example");
    Scene::put (profile);
    Scene scene;
    scene.primary().setText ("Tube: https://b.example\nsomething");
    scene.click ("backButton");
    scene.click ("nextButton");
    EXPECT_EQ (scene.primary().getText(), "Tube: https://b.example") << "the links up to the refused line";
}

TEST (CreatorProfileWizardCapture, LinksLongerThanTheFieldAllowsAreShownWhole)
{
    auto profile = Scene::named();
    profile.currentStep = 8;
    profile.socialLinks.set ("Site", "https://a.example/" + juce::String::repeatedString ("x", 900));
    Scene::put (profile);
    Scene scene;
    EXPECT_EQ (scene.primary().getText().length(), 6 + 18 + 900);
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_EQ (Scene::saved().socialLinks, profile.socialLinks);
}

TEST (CreatorProfileWizardCapture, ReturnMakesALineAmongTheLinksAndNowhereElse)
{
    for (int step = 1; step < 10; ++step)
    {
        Scene::putAt (step);
        Scene scene;

        if (! scene.primary().isVisible())
            continue;

        SCOPED_TRACE (step);
        scene.primary().setText ("");
        scene.primary().grabKeyboardFocus();
        pump();
        scene.window->type ("a");
        scene.window->key (juce::KeyPress::returnKey);
        scene.window->type ("b");
        EXPECT_EQ (scene.primary().getText(), step == 8 ? "a\nb" : "ab");
        EXPECT_EQ (scene.step(), step);
    }
}

TEST (CreatorProfileWizardCapture, TheFieldIsOneLineAgainAfterTheLinks)
{
    for (const auto* button : { "backButton", "nextButton" })
    {
        Scene::putAt (8);
        Scene scene;
        scene.click (button);
        EXPECT_FALSE (scene.primary().isMultiLine());
        EXPECT_FALSE (scene.primary().getReturnKeyStartsNewLine());
        EXPECT_EQ (scene.primary().getHeight(), 34);
    }
}

TEST (CreatorProfileWizardCapture, UndoDoesNotBringBackTheTextOfAnotherStep)
{
    Scene::putAt (3);
    Scene scene;
    scene.primary().grabKeyboardFocus();
    scene.window->type ("dub");
    scene.click ("nextButton");
    ASSERT_EQ (scene.step(), 4);

    scene.primary().undo();
    EXPECT_EQ (scene.primary().getText(), "");
    scene.primary().redo();
    EXPECT_EQ (scene.primary().getText(), "");
}

TEST (CreatorProfileWizardCapture, TheTogglesStateIsTaken)
{
    Scene::putAt (9);
    Scene scene;
    scene.click ("websiteToggle");
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_TRUE (Scene::saved().localWebsitePreviewRequested);
    EXPECT_FALSE (Scene::saved().completed) << "saving is not finishing";
    EXPECT_EQ (Scene::saved().currentStep, 9);
}
