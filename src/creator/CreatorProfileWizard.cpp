#include "creator/CreatorProfileWizard.h"

#include "creator/CreatorProfileWizardFocus.h"
#include "creator/CreatorProfileWizardLayout.h"
#include "support/Text.h"
#include "ui/HubPalette.h"
#include "ui/SpaceKey.h"
#include "ui/TextPainting.h"

namespace
{
void setUp (juce::Label& label, const char* id, const juce::Font& font, juce::Colour colour)
{
    label.setComponentID (id);
    label.setFont (font);
    label.setColour (juce::Label::textColourId, colour);
    label.setBorderSize (juce::BorderSize<int> (0));
}

void setUp (juce::TextEditor& editor, const char* id, int mostCharacters)
{
    editor.setComponentID (id);
    editor.setMultiLine (false);
    editor.setReturnKeyStartsNewLine (false);
    editor.setInputRestrictions (mostCharacters);
    editor.setWantsKeyboardFocus (true);
    editor.setFont (plainFont (15.0f));
    editor.setIndents (5, 8);
    editor.setColour (juce::TextEditor::backgroundColourId, HubPalette::panel);
}

void setUp (juce::TextButton& button, const char* id, const char* text, const char* whatItDoes)
{
    button.setComponentID (id);
    button.setButtonText (text);
    button.setTitle (text);
    button.setTooltip (whatItDoes);
    button.setDescription (whatItDoes);
    button.setWantsKeyboardFocus (true);

    // The card has the colour that buttons have elsewhere.
    button.setColour (juce::TextButton::buttonColourId, HubPalette::panel);
}

CreatorProfileWizardLayout layoutOf (const juce::Component& wizard, const juce::TextEditor& primaryEditor)
{
    return { wizard.getWidth(), wizard.getHeight(),
             primaryEditor.isMultiLine() ? CreatorProfileWizardLayout::severalLines : CreatorProfileWizardLayout::oneLine };
}
}

//==============================================================================
CreatorProfileWizard::CreatorProfileWizard (CreatorProfileStore& profileStore)
    : store (profileStore), profile (profileStore.load()), currentStep (juce::jlimit (0, 9, profile.currentStep))
{
    setTitle ("ZORVA Creator Profile Wizard");
    setDescription ("Optional offline creator profile draft editor");
    setFocusContainerType (FocusContainerType::keyboardFocusContainer);
    setWantsKeyboardFocus (true);
    setMouseClickGrabsKeyboardFocus (false);

    createLabels();
    createFields();
    createButtons();
    addFocusRings();
    showStep();
}

CreatorProfileWizard::~CreatorProfileWizard() = default;

void CreatorProfileWizard::createLabels()
{
    setUp (eyebrowLabel, "eyebrowLabel", plainFont (15.0f), HubPalette::accent);
    eyebrowLabel.setText (utf8 ("ZORVA CREATOR PROFILE \xe2\x80\x94 OPTIONAL + OFFLINE"), juce::dontSendNotification);
    setUp (stepLabel, "stepLabel", boldFont (23.0f), HubPalette::textPrimary);
    setUp (titleLabel, "titleLabel", boldFont (16.0f), HubPalette::textPrimary);
    setUp (bodyLabel, "bodyLabel", plainFont (15.0f), HubPalette::textSecondary.brighter (0.25f));
    bodyLabel.setJustificationType (juce::Justification::topLeft);
    bodyLabel.setMinimumHorizontalScale (1.0f);     // two lines rather than one of narrow letters
    setUp (fieldLabel, "fieldLabel", plainFont (15.0f), HubPalette::textPrimary);
    setUp (secondaryFieldLabel, "secondaryFieldLabel", plainFont (15.0f), HubPalette::textPrimary);

    for (auto* label : { &eyebrowLabel, &stepLabel, &titleLabel, &bodyLabel, &fieldLabel, &secondaryFieldLabel })
        addAndMakeVisible (label);
}

void CreatorProfileWizard::createFields()
{
    setUp (primaryEditor, "primaryEditor", 500);
    setUp (secondaryEditor, "secondaryEditor", 4000);
    roleCombo.setComponentID ("roleCombo");
    themeCombo.setComponentID ("themeCombo");
    websiteToggle.setComponentID ("websiteToggle");

    for (auto* field : std::initializer_list<juce::Component*> { &primaryEditor, &secondaryEditor, &roleCombo, &themeCombo,
                                                                  &websiteToggle })
        addChildComponent (field);
}

void CreatorProfileWizard::createButtons()
{
    setUp (chooseImageButton, "chooseImageButton", "Choose Image", "Choose a local PNG or JPEG for this profile draft");
    setUp (backButton, "backButton", "Back", "Return to the previous profile step");
    setUp (skipButton, "skipButton", "Skip", "Leave this optional step empty and continue");
    setUp (saveDraftButton, "saveDraftButton", "Save Draft", "Save this private profile draft on this computer");
    setUp (previewButton, "previewButton", "Preview", "Preview the local profile summary; nothing is published");
    setUp (editLaterButton, "editLaterButton", "Edit Later", "Save this private draft and return to the Hub");
    setUp (nextButton, "nextButton", "Next", "Continue to the next profile step");
    setUp (exportButton, "exportButton", "Export Draft", "Export a copy of the local creator profile JSON for backup or recovery");
    setUp (deleteButton, "deleteButton", "Delete Draft", "Permanently delete the local creator profile draft");

    nextButton.setColour (juce::TextButton::buttonColourId, HubPalette::accent);
    nextButton.setColour (juce::TextButton::textColourOffId, HubPalette::inverseText);
    deleteButton.setColour (juce::TextButton::textColourOffId, HubPalette::warning);

    chooseImageButton.onClick = [this] { chooseImage(); };
    backButton.onClick = [this] { goBack(); };
    skipButton.onClick = [this] { skipStep(); };
    saveDraftButton.onClick = [this] { saveDraft (false, false); };
    previewButton.onClick = [this] { showPreview(); };
    editLaterButton.onClick = [this] { saveDraft (true, false); };
    nextButton.onClick = [this] { goNext(); };
    exportButton.onClick = [this] { exportDraft(); };
    deleteButton.onClick = [this] { askToDelete(); };

    addChildComponent (chooseImageButton);

    for (auto* button : { &backButton, &skipButton, &saveDraftButton, &previewButton, &editLaterButton, &nextButton, &exportButton,
                          &deleteButton })
        addAndMakeVisible (button);
}

void CreatorProfileWizard::addFocusRings()
{
    for (auto* child : std::initializer_list<juce::Component*> { &roleCombo, &themeCombo, &websiteToggle, &chooseImageButton, &backButton,
                                                                  &skipButton, &saveDraftButton, &previewButton, &editLaterButton,
                                                                  &nextButton, &exportButton, &deleteButton })
        focusRing.watch (*child);
}

//==============================================================================
juce::Component& CreatorProfileWizard::mainControl()
{
    for (auto* control : std::initializer_list<juce::Component*> { &primaryEditor, &roleCombo, &chooseImageButton, &websiteToggle })
        if (control->isVisible())
            return *control;

    return nextButton;
}

void CreatorProfileWizard::focusGainedWithDirection (FocusChangeType, FocusChangeDirection direction)
{
    const auto controls = juce::KeyboardFocusTraverser().getAllComponents (this);

    if (direction == FocusChangeDirection::unknown || controls.empty())
        mainControl().grabKeyboardFocus();
    else
        (direction == FocusChangeDirection::forward ? controls.front() : controls.back())->grabKeyboardFocus();
}

std::unique_ptr<juce::ComponentTraverser> CreatorProfileWizard::createKeyboardFocusTraverser()
{
    return std::make_unique<CreatorProfileWizardFocus> (*this);
}

bool CreatorProfileWizard::keyPressed (const juce::KeyPress& key)
{
    return clickFocusedButtonOnSpace (key);
}

//==============================================================================
void CreatorProfileWizard::paint (juce::Graphics& g)
{
    constexpr float radius = 12.0f;
    const auto card = layoutOf (*this, primaryEditor).card.toFloat();

    g.fillAll (HubPalette::windowBackground);
    g.setColour (juce::Colours::black.withAlpha (0.25f));
    g.fillRoundedRectangle (card.translated (3.0f, 4.0f), radius);
    g.setColour (HubPalette::raised);
    g.fillRoundedRectangle (card, radius);
    g.setColour (HubPalette::border.brighter (0.08f));
    g.drawRoundedRectangle (card, radius, 1.0f);
}

void CreatorProfileWizard::paintOverChildren (juce::Graphics& g)
{
    focusRing.paint (g);
}

void CreatorProfileWizard::resized()
{
    const auto layout = layoutOf (*this, primaryEditor);

    eyebrowLabel.setBounds (layout.eyebrow);
    stepLabel.setBounds (layout.step);
    titleLabel.setBounds (layout.title);
    bodyLabel.setBounds (layout.body);
    fieldLabel.setBounds (layout.field);
    primaryEditor.setBounds (layout.primaryEditor);
    roleCombo.setBounds (layout.primaryEditor);
    websiteToggle.setBounds (layout.primaryEditor);
    chooseImageButton.setBounds (layout.chooseImage);
    secondaryFieldLabel.setBounds (layout.secondaryField);
    secondaryEditor.setBounds (layout.secondaryEditor);
    themeCombo.setBounds (layout.theme);
    deleteButton.setBounds (layout.deleteDraft);
    exportButton.setBounds (layout.exportDraft);
    backButton.setBounds (layout.back);
    skipButton.setBounds (layout.skip);
    saveDraftButton.setBounds (layout.saveDraft);
    previewButton.setBounds (layout.preview);
    editLaterButton.setBounds (layout.editLater);
    nextButton.setBounds (layout.next);
}
