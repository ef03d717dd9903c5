#pragma once

#include "creator/CreatorProfileStore.h"
#include "ui/FocusRing.h"

#include <functional>
#include <juce_gui_basics/juce_gui_basics.h>

/** The ten-step form in which a person writes the private creator profile draft. Optional and offline. It keeps a working copy of
    the profile; all rules beyond the form's own come from CreatorProfileStore::validate(). Message thread only. */
class CreatorProfileWizard final : public juce::Component
{
public:
    /** Loads the draft and shows the step at which it was left. The store is not owned and must outlive the wizard. */
    explicit CreatorProfileWizard (CreatorProfileStore& profileStore);
    ~CreatorProfileWizard() override;

    /** Called after "Edit Later" has saved; may be empty. */
    std::function<void()> onClose;

    void paint (juce::Graphics& g) override;
    void paintOverChildren (juce::Graphics& g) override;
    void resized() override;
    bool keyPressed (const juce::KeyPress& key) override;

    /** The wizard takes the focus only to hand it on: to the step's own control, or to the end that Tab came from. */
    void focusGainedWithDirection (FocusChangeType cause, FocusChangeDirection direction) override;

    /** Lets Tab go on to the rest of the window from the last control, where it would otherwise run in a circle. */
    std::unique_ptr<juce::ComponentTraverser> createKeyboardFocusTraverser() override;

private:
    void createLabels();
    void createFields();
    void createButtons();
    void addFocusRings();
    juce::Component& mainControl();

    void showStep();
    void showControlsOfStep();
    void emptyControls();
    void fillControlsOfStep();
    void describeControls();
    void setPrimaryText (const juce::String& text);
    bool captureStep (bool finishing, juce::String& outError);
    bool captureControls (juce::String& outError);

    void goBack();
    void skipStep();
    void goNext();
    void advance();
    void saveDraft (bool closeAfter, bool finishing);
    void showPreview();
    void askToRefine (const char* boxTitle, const juce::String& error);
    void chooseImage();
    void useImage (const juce::File& image, int step);
    juce::String* pictureOfStep (int step);
    void exportDraft();
    void exportTo (const juce::File& destination);
    void askToDelete();
    void deleteDraft();

    CreatorProfileStore& store;
    CreatorProfile profile;
    int currentStep = 0;
    std::unique_ptr<juce::FileChooser> fileChooser;

    juce::Label eyebrowLabel, stepLabel, titleLabel, bodyLabel, fieldLabel, secondaryFieldLabel;
    juce::TextEditor primaryEditor, secondaryEditor;
    juce::ComboBox roleCombo, themeCombo;
    juce::ToggleButton websiteToggle;
    juce::TextButton chooseImageButton, backButton, skipButton, saveDraftButton, previewButton, editLaterButton, nextButton,
        exportButton, deleteButton;

    FocusRing focusRing { *this };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (CreatorProfileWizard)
};
