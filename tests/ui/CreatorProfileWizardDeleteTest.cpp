#include "CreatorProfileWizardScene.h"

using namespace zorva::test;
using Scene = WizardScene;

namespace
{
constexpr auto warningIcon = juce::MessageBoxIconType::WarningIcon;
constexpr const char* damaged = "this is no draft";
constexpr const char* deleteTitle = "Delete Local Creator Draft?";
constexpr const char* deleteText = "This permanently deletes the local profile draft. No public data exists.";
const juce::StringArray deleteButtons { "Delete Draft", "Cancel" };

void putDamaged()
{
    HubPaths::creatorDirectory().createDirectory();
    write (Scene::draftFile(), damaged);
}

void expectDeleteBox (Scene& scene, const char* press)
{
    scene.expectBox (warningIcon, deleteTitle, deleteText, deleteButtons, press);
}
}

//==============================================================================
TEST (CreatorProfileWizardDelete, ADraftThatNeedsRecoveryIsNotOverwritten)
{
    putDamaged();
    Scene scene;

    for (const auto* button : { "saveDraftButton", "editLaterButton" })
    {
        scene.click (button);
        scene.expectAttention ("creator_draft_recovery_required");
    }

    EXPECT_EQ (scene.closed, 0);
    EXPECT_EQ (read (Scene::draftFile()), damaged);
}

TEST (CreatorProfileWizardDelete, AfterDeletingADamagedDraftAllIsAsNew)
{
    putDamaged();
    Scene scene;
    scene.click ("nextButton");
    scene.primary().setText ("Ann");
    scene.click ("deleteButton");
    expectDeleteBox (scene, "Delete Draft");

    EXPECT_FALSE (Scene::draftFile().exists());
    EXPECT_EQ (scene.step(), 0);
    EXPECT_EQ (scene.text ("bodyLabel"), "This wizard is optional, works without internet or AI, and saves only a private local draft. "
                                         "You can leave at any time.");
    scene.click ("nextButton");
    EXPECT_EQ (scene.primary().getText(), "");
    scene.primary().setText ("Bea");
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_EQ (Scene::saved().displayName, "Bea");
}

TEST (CreatorProfileWizardDelete, DeletingADraftLeavesDefaultsOnTheFirstStep)
{
    auto profile = Scene::named();
    profile.currentStep = 5;
    profile.completed = true;
    profile.genres = { "dub" };
    profile.accentColour = "#112233";
    profile.backgroundTheme = "midnight";
    profile.socialLinks.set ("Site", "https://a.example");
    Scene::put (profile);
    Scene scene;
    scene.click ("deleteButton");
    expectDeleteBox (scene, "Delete Draft");

    EXPECT_FALSE (Scene::draftFile().exists());
    EXPECT_EQ (scene.step(), 0);
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    const auto saved = Scene::saved();
    EXPECT_FALSE (saved.completed);
    EXPECT_EQ (saved.displayName + saved.primaryRole, "");
    EXPECT_EQ (saved.genres.size() + saved.socialLinks.size(), 0);
    EXPECT_EQ (saved.accentColour, "#00BCEB");
    EXPECT_EQ (saved.backgroundTheme, "zorva-dark");
}

TEST (CreatorProfileWizardDelete, CancellingKeepsTheDraft)
{
    Scene::putAt (3);
    Scene scene;
    scene.primary().setText ("typed");
    scene.click ("deleteButton");
    expectDeleteBox (scene, "Cancel");
    EXPECT_TRUE (Scene::draftFile().existsAsFile());
    EXPECT_EQ (scene.step(), 3);
    EXPECT_EQ (scene.primary().getText(), "typed");
}

TEST (CreatorProfileWizardDelete, DeletingWhatIsNotThereSucceeds)
{
    Scene scene;
    scene.click ("nextButton");
    scene.click ("deleteButton");
    expectDeleteBox (scene, "Delete Draft");
    EXPECT_EQ (currentAlert(), nullptr);
    EXPECT_EQ (scene.step(), 0);
}

TEST (CreatorProfileWizardDelete, AFailedDeletionShowsTheCodeAndStays)
{
    // A folder with something in it stands where the draft would be.
    Scene::draftFile().createDirectory();
    write (Scene::draftFile().getChildFile ("x"), "x");
    Scene scene;
    scene.click ("nextButton");
    scene.click ("deleteButton");
    expectDeleteBox (scene, "Delete Draft");
    scene.expectWarning ("Delete Failed", "creator_delete_failed");
    EXPECT_EQ (scene.step(), 1);
}

TEST (CreatorProfileWizardDelete, AnAnswerAfterTheWizardIsGoneDeletesNothing)
{
    Scene::putAt (3);
    Scene scene;
    scene.click ("deleteButton");
    ASSERT_NE (currentAlert(), nullptr);
    scene.close();
    EXPECT_TRUE (answerAlert ("Delete Draft"));
    EXPECT_TRUE (Scene::draftFile().existsAsFile());
}
