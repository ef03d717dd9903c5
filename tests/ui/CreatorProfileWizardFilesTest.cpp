#include "CreatorProfileWizardScene.h"
#include "FakeFileDialog.h"

using namespace zorva::test;
using Scene = WizardScene;

namespace
{
constexpr const char* noImage = "Optional PNG or JPEG, stored as a local file reference.";

juce::File picture (const juce::String& name)
{
    const auto file = freshFolder ("pictures").getChildFile (name);
    savePng (juce::Image (juce::Image::RGB, 2, 2, true), file);
    return file;
}

juce::File documents()    { return juce::File::getSpecialLocation (juce::File::userDocumentsDirectory); }

/** Opens the dialog with a button and answers it. */
void choose (Scene& scene, FakeFileDialog& dialog, const char* button, const juce::File& file)
{
    scene.click (button);
    EXPECT_NE (dialog.arguments(), "");
    dialog.answer (file);
}
}

//==============================================================================
TEST (CreatorProfileWizardFiles, AnImageIsAskedForInTheSystemsDialog)
{
    FakeFileDialog dialog;
    Scene::putAt (6);
    Scene scene;
    scene.click ("chooseImageButton");
    EXPECT_EQ (dialog.arguments(), "--file-selection\n--title=Choose PNG or JPEG\n--file-filter=*.png *.jpg *.jpeg\n");
}

TEST (CreatorProfileWizardFiles, TheChosenImageBecomesPictureOrBanner)
{
    FakeFileDialog dialog;
    const auto image = picture ("me.png");

    for (const int step : { 6, 7 })
    {
        SCOPED_TRACE (step);
        Scene::putAt (step);
        Scene scene;
        choose (scene, dialog, "chooseImageButton", image);
        EXPECT_EQ (scene.step(), step);
        EXPECT_EQ (scene.text ("bodyLabel"), image.getFullPathName().toStdString());
        EXPECT_EQ (scene.child<juce::Label> ("bodyLabel").getTooltip(), image.getFullPathName());

        scene.click ("nextButton");
        EXPECT_EQ (scene.step(), step + 1);
        EXPECT_EQ (scene.child<juce::Label> ("bodyLabel").getTooltip(), "");
        scene.click ("saveDraftButton");
        scene.expectSavedBox();
        EXPECT_EQ (Scene::saved().profileImagePath, step == 6 ? image.getFullPathName() : juce::String());
        EXPECT_EQ (Scene::saved().bannerImagePath, step == 7 ? image.getFullPathName() : juce::String());
    }
}

TEST (CreatorProfileWizardFiles, ACancelledChoiceChangesNothing)
{
    FakeFileDialog dialog;
    Scene::putAt (6);
    Scene scene;
    choose (scene, dialog, "chooseImageButton", {});
    EXPECT_EQ (scene.text ("bodyLabel"), noImage);
    choose (scene, dialog, "chooseImageButton", freshFolder ("pictures").getChildFile ("absent.png"));
    EXPECT_EQ (scene.text ("bodyLabel"), noImage) << "nor does a file that is not there";
    EXPECT_EQ (currentAlert(), nullptr);
}

TEST (CreatorProfileWizardFiles, AFileThatIsNoPictureIsShownAndThenRefused)
{
    FakeFileDialog dialog;
    Scene::putAt (6);
    Scene scene;
    const auto file = write (freshFolder ("pictures").getChildFile ("notes.png"), "notes");
    choose (scene, dialog, "chooseImageButton", file);
    EXPECT_EQ (scene.text ("bodyLabel"), file.getFullPathName().toStdString());
    scene.click ("nextButton");
    scene.expectWarning ("Check This Step", "invalid_creator_profile");
    EXPECT_EQ (scene.step(), 6);
}

TEST (CreatorProfileWizardFiles, SkipTakesOutAPictureThatCannotBeUsed)
{
    for (const int step : { 6, 7 })
    {
        SCOPED_TRACE (step);
        FakeFileDialog dialog;
        Scene::putAt (step);
        Scene scene;
        choose (scene, dialog, "chooseImageButton", write (freshFolder ("pictures").getChildFile ("notes.png"), "notes"));
        scene.click ("saveDraftButton");
        scene.expectAttention ("invalid_creator_profile");

        scene.click ("skipButton");
        EXPECT_EQ (scene.step(), step + 1);
        scene.click ("backButton");
        EXPECT_EQ (scene.text ("bodyLabel"), noImage);
        scene.click ("saveDraftButton");
        scene.expectSavedBox();
    }
}

TEST (CreatorProfileWizardFiles, SkipTakesOutAPictureThatHasGone)
{
    FakeFileDialog dialog;
    const auto image = picture ("me.png");
    Scene::putAt (6);
    Scene scene;
    choose (scene, dialog, "chooseImageButton", image);
    scene.click ("nextButton");
    ASSERT_EQ (scene.step(), 7);

    ASSERT_TRUE (image.deleteFile());
    scene.click ("nextButton");
    scene.expectWarning ("Check This Step", "invalid_creator_profile");
    scene.click ("backButton");
    scene.click ("skipButton");
    scene.click ("editLaterButton");
    EXPECT_EQ (currentAlert(), nullptr);
    EXPECT_EQ (scene.closed, 1);
}

TEST (CreatorProfileWizardFiles, SkipLeavesAGoodPicture)
{
    for (const int step : { 6, 7 })
    {
        SCOPED_TRACE (step);
        FakeFileDialog dialog;
        const auto image = picture ("me.png");
        Scene::putAt (step);
        Scene scene;
        choose (scene, dialog, "chooseImageButton", image);
        scene.click ("skipButton");
        scene.click ("saveDraftButton");
        scene.expectSavedBox();
        EXPECT_EQ (Scene::saved().profileImagePath + Scene::saved().bannerImagePath, image.getFullPathName());
    }
}

TEST (CreatorProfileWizardFiles, AnAnswerFindsItsFieldWhenThePersonHasGoneOn)
{
    FakeFileDialog dialog;
    const auto image = picture ("me.png");
    Scene::putAt (6);
    Scene scene;
    scene.click ("chooseImageButton");
    dialog.arguments();
    scene.click ("nextButton");
    scene.click ("nextButton");
    ASSERT_EQ (scene.step(), 8);
    scene.primary().setText ("half typed");
    dialog.answer (image);
    EXPECT_EQ (scene.step(), 8);
    EXPECT_EQ (scene.primary().getText(), "half typed");

    scene.click ("skipButton");
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_EQ (Scene::saved().profileImagePath, image.getFullPathName());
    EXPECT_EQ (Scene::saved().bannerImagePath, "");
}

TEST (CreatorProfileWizardFiles, ADialogOfAWizardThatIsGoneDoesNothing)
{
    FakeFileDialog dialog;
    Scene::putAt (6);
    Scene scene;
    scene.click ("chooseImageButton");
    dialog.arguments();
    scene.close();
    pump (250);
    EXPECT_EQ (Scene::saved().profileImagePath, "");
}

//==============================================================================
TEST (CreatorProfileWizardFiles, AnExportIsAskedForInTheSystemsDialog)
{
    FakeFileDialog dialog;
    EXPECT_TRUE (documents().createDirectory());
    Scene::putAt (0);
    Scene scene;
    scene.click ("exportButton");
    EXPECT_EQ (dialog.arguments(), "--file-selection\n--confirm-overwrite\n--title=Export Local Creator Draft\n--save\n"
                                   "--file-filter=*.json\n--filename=ZORVA Creator Profile.json\n");
    EXPECT_EQ (dialog.startFolder(), documents());
}

TEST (CreatorProfileWizardFiles, AnExportIsTheDraftByteForByte)
{
    FakeFileDialog dialog;
    Scene::putAt (4);
    Scene scene;
    scene.primary().setText ("not saved yet");

    for (const auto* name : { "Backup.json", "no ending" })
    {
        const auto destination = freshFolder ("exports").getChildFile (name);
        choose (scene, dialog, "exportButton", destination);
        EXPECT_EQ (currentAlert(), nullptr);
        EXPECT_EQ (read (destination), read (Scene::draftFile()));
    }

    EXPECT_EQ (scene.step(), 4);
    EXPECT_EQ (scene.primary().getText(), "not saved yet");
}

TEST (CreatorProfileWizardFiles, ADamagedDraftIsExportedThenDeletedThenReplaced)
{
    FakeFileDialog dialog;
    HubPaths::creatorDirectory().createDirectory();
    write (Scene::draftFile(), "this is no draft");
    Scene scene;
    const auto destination = freshFolder ("exports").getChildFile ("Rescue.json");
    choose (scene, dialog, "exportButton", destination);
    EXPECT_EQ (currentAlert(), nullptr);
    EXPECT_EQ (read (destination), "this is no draft");

    scene.click ("deleteButton");
    EXPECT_TRUE (answerAlert ("Delete Draft"));
    scene.click ("saveDraftButton");
    scene.expectSavedBox();
    EXPECT_EQ (read (destination), "this is no draft");
}

TEST (CreatorProfileWizardFiles, AFailedExportShowsTheCode)
{
    FakeFileDialog dialog;
    Scene scene;
    choose (scene, dialog, "exportButton", freshFolder ("exports").getChildFile ("Backup.json"));
    scene.expectWarning ("Export Failed", "creator_draft_missing");

    Scene::putAt (0);
    choose (scene, dialog, "exportButton", Scene::draftFile());
    scene.expectWarning ("Export Failed", "creator_export_destination_invalid");
    EXPECT_EQ (Scene::saved().displayName, "Ann");
}

TEST (CreatorProfileWizardFiles, ACancelledExportSaysNothing)
{
    FakeFileDialog dialog;
    Scene scene;    // with no draft, so that an attempt to export would be seen
    choose (scene, dialog, "exportButton", {});
    EXPECT_EQ (currentAlert(), nullptr);
}

//==============================================================================
TEST (CreatorProfileWizardFiles, WithoutASystemDialogTheFrameworksOwnOpens)
{
    setEnvironment ("PATH", freshFolder ("empty").getFullPathName());
    const auto image = picture ("me.png");
    Scene::putAt (6);
    Scene scene;
    scene.click ("chooseImageButton");

    auto* const dialog = dynamic_cast<juce::FileChooserDialogBox*> (juce::Component::getCurrentlyModalComponent());
    ASSERT_NE (dialog, nullptr);
    EXPECT_EQ (dialog->getName(), "Choose PNG or JPEG");
    const auto browsers = allBelow<juce::FileBrowserComponent> (*dialog);
    ASSERT_EQ (browsers.size(), 1u);
    browsers[0]->setFileName (image.getFullPathName());
    dialog->exitModalState (1);

    EXPECT_TRUE (pumpUntil ([&] { return scene.text ("bodyLabel") != noImage; }));
    EXPECT_EQ (scene.text ("bodyLabel"), image.getFullPathName().toStdString());
}
