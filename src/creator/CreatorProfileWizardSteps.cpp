#include "creator/CreatorProfileText.h"
#include "creator/CreatorProfileWizard.h"
#include "support/Text.h"

// What each step shows, and what it takes from the controls into the profile.

namespace
{
struct Step
{
    const char* title;
    const char* body;
    const char* field;
    const char* secondaryField;
};

constexpr const char* noImageYet = "Optional PNG or JPEG, stored as a local file reference.";

constexpr Step steps[] {
    { "Welcome to your creator profile.",
      "This wizard is optional, works without internet or AI, and saves only a private local draft. You can leave at any time.", "", "" },
    { "What should people call you?", "Enter your creator or display name.", "Creator / display name (required)", "" },
    { "What kind of creator are you?", "Choose one primary role and optionally list secondary roles separated by commas.",
      "Primary role (required)", "Secondary roles (comma separated)" },
    { "Which genres describe your work?", "Enter up to 16 genres separated by commas.", "Genres", "" },
    { "Describe your style.", "Write a short editable description. AI is not required.", "Style description", "" },
    { "Choose local profile-preview styling.", "These values affect only your local creator preview. They never recolor ZORVA DAW or Hub.",
      "Accent color (#RRGGBB)", "Local preview theme" },
    { "Choose a profile picture.", noImageYet, "Profile image", "" },
    { "Choose a banner image.", noImageYet, "Banner image", "" },
    { "Add social links.", "Optional. Use one HTTPS link per line: Platform: https://www.zorva.example/name", "Links", "HTTPS links only" },
    { "Save a local website-layout preference?",
      "This saves a local preview preference only. ZORVA does not currently create or host a public website.", "Local website preview", "" },
};

constexpr const char* recoveryNotice = "Your previous local draft needs recovery. It was preserved. Use Export Draft before Delete Draft; "
                                       "nothing was overwritten.";

constexpr const char* roles[] { "Artist", "Producer", "Beatmaker", "Mixing Engineer", "Mastering Engineer", "Composer", "Songwriter",
                                "Podcaster", "Content Creator", "Recording Studio" };

struct Theme
{
    const char* text;
    const char* value;    ///< as the profile holds it
};

constexpr Theme themes[] { { "ZORVA Dark", "zorva-dark" }, { "Midnight", "midnight" }, { "Soft Light", "soft-light" } };

/** The one that has this text or value; the first if none has. */
const Theme& themeOf (const juce::String& textOrValue)
{
    for (const auto& theme : themes)
        if (textOrValue == theme.text || textOrValue == theme.value)
            return theme;

    return themes[0];
}

/** Without undoing back to what stood there in another step. */
void empty (juce::TextEditor& editor)
{
    // The first empties the value that the editor shares, which would bring its text back; the second forgets what undo knows.
    editor.setText ({}, false);
    editor.clear();
}

void show (juce::Label& label, const juce::String& text)
{
    label.setText (text, juce::dontSendNotification);
}
}

//==============================================================================
void CreatorProfileWizard::showStep()
{
    profile.currentStep = currentStep;
    show (stepLabel, utf8 ("Create Your ZORVA Profile  \xc2\xb7  Step ") + juce::String (currentStep + 1) + " of "
                         + juce::String ((int) std::size (steps)));

    showControlsOfStep();
    emptyControls();
    fillControlsOfStep();
    describeControls();
    resized();
    repaint();
}

void CreatorProfileWizard::showControlsOfStep()
{
    const auto isOneOf = [this] (std::initializer_list<int> several)
    { return std::find (several.begin(), several.end(), currentStep) != several.end(); };

    primaryEditor.setVisible (isOneOf ({ 1, 3, 4, 5, 8 }));
    secondaryEditor.setVisible (currentStep == 2);
    roleCombo.setVisible (currentStep == 2);
    secondaryFieldLabel.setVisible (currentStep == 2);
    themeCombo.setVisible (currentStep == 5);
    chooseImageButton.setVisible (isOneOf ({ 6, 7 }));
    websiteToggle.setVisible (currentStep == 9);
    fieldLabel.setVisible (currentStep != 0);

    skipButton.setEnabled (currentStep >= 3);
    backButton.setEnabled (currentStep >= 1);
    nextButton.setButtonText (currentStep == 9 ? "Finish" : "Next");
    nextButton.setTitle (nextButton.getButtonText());
}

void CreatorProfileWizard::emptyControls()
{
    roleCombo.clear (juce::dontSendNotification);
    themeCombo.clear (juce::dontSendNotification);
    empty (primaryEditor);
    empty (secondaryEditor);
    primaryEditor.setMultiLine (false);
    primaryEditor.setReturnKeyStartsNewLine (false);
}

void CreatorProfileWizard::fillControlsOfStep()
{
    const auto& step = steps[currentStep];
    show (titleLabel, step.title);
    show (bodyLabel, step.body);
    show (fieldLabel, step.field);
    show (secondaryFieldLabel, step.secondaryField);
    bodyLabel.setTooltip ({});

    const auto showImage = [this] (const juce::String& path)
    {
        // The end of a long path, its most telling part, may have no room.
        if (path.isNotEmpty())
            show (bodyLabel, path);

        bodyLabel.setTooltip (path);
    };

    switch (currentStep)
    {
        case 0:
            if (store.lastError().isNotEmpty())
                show (bodyLabel, recoveryNotice);
            break;

        case 1:
            setPrimaryText (profile.displayName);
            break;

        case 2:
            roleCombo.addItemList (juce::StringArray (roles, (int) std::size (roles)), 1);
            roleCombo.setText (profile.primaryRole, juce::dontSendNotification);
            secondaryEditor.setText (profile.secondaryRoles.joinIntoString (", "), false);
            break;

        case 3:
            setPrimaryText (profile.genres.joinIntoString (", "));
            break;

        case 4:
            setPrimaryText (profile.styleDescription);
            break;

        case 5:
            setPrimaryText (profile.accentColour);

            for (const auto& theme : themes)
                themeCombo.addItem (theme.text, themeCombo.getNumItems() + 1);

            themeCombo.setText (themeOf (profile.backgroundTheme).text, juce::dontSendNotification);
            break;

        case 6:
            showImage (profile.profileImagePath);
            break;

        case 7:
            showImage (profile.bannerImagePath);
            break;

        case 8:
            // Before the text, which has several lines. A line is a link, however long: breaking long addresses would cost the
            // framework seconds, too.
            primaryEditor.setMultiLine (true, false);
            primaryEditor.setReturnKeyStartsNewLine (true);
            setPrimaryText (CreatorProfileText::linesOf (profile.socialLinks));
            break;

        default:
            websiteToggle.setButtonText ("Save a local website-layout preference");
            websiteToggle.setToggleState (profile.localWebsitePreviewRequested, juce::dontSendNotification);
            break;
    }
}

void CreatorProfileWizard::describeControls()
{
    const auto describe = [] (auto& control, const juce::String& title, const juce::String& description)
    {
        control.setTitle (title);
        control.setDescription (description);
        control.setTooltip (description);
    };

    const auto field = fieldLabel.getText(), secondaryField = secondaryFieldLabel.getText(), body = bodyLabel.getText();
    describe (primaryEditor, field, body);
    describe (roleCombo, field, body);
    describe (secondaryEditor, secondaryField, body);
    describe (themeCombo, secondaryField, body);
    describe (websiteToggle, "Local website preview preference", "Stores only a local layout preference; no website is created or hosted");
}

void CreatorProfileWizard::setPrimaryText (const juce::String& text)
{
    primaryEditor.setText (text, false);
    primaryEditor.moveCaretToEnd();
}

//==============================================================================
bool CreatorProfileWizard::captureStep (bool finishing, juce::String& outError)
{
    if (! captureControls (outError))
        return false;

    if ((currentStep == 1 || finishing) && profile.displayName.isEmpty())
    {
        outError = "Creator name is required to finish.";
        return false;
    }

    if ((currentStep == 2 || finishing) && profile.primaryRole.isEmpty())
    {
        outError = "Primary role is required to finish.";
        return false;
    }

    profile.currentStep = currentStep;

    if (finishing)
        profile.completed = true;

    return CreatorProfileStore::validate (profile, outError);
}

bool CreatorProfileWizard::captureControls (juce::String& outError)
{
    const auto primaryText = primaryEditor.getText();

    switch (currentStep)
    {
        case 1:
            profile.displayName = primaryText.trim();
            return true;

        case 2:
            profile.primaryRole = roleCombo.getText().trim();
            profile.secondaryRoles = CreatorProfileText::listFrom (secondaryEditor.getText());
            return true;

        case 3:
            profile.genres = CreatorProfileText::listFrom (primaryText);
            return true;

        case 4:
            profile.styleDescription = primaryText.trim();
            return true;

        case 5:
            profile.accentColour = primaryText.trim();
            profile.backgroundTheme = themeOf (themeCombo.getText()).value;
            return true;

        case 8:
            return CreatorProfileText::readLinks (primaryText, profile.socialLinks, outError);

        case 9:
            profile.localWebsitePreviewRequested = websiteToggle.getToggleState();
            return true;

        default:
            return true;
    }
}
