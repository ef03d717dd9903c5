#include "creator/CreatorProfileText.h"
#include "creator/CreatorProfileWizard.h"
#include "creator/ImageRules.h"

// What the wizard's buttons do.

namespace
{
void inform (const char* title, const juce::String& text)
{
    juce::AlertWindow::showMessageBoxAsync (juce::MessageBoxIconType::InfoIcon, title, text);
}

void warn (const char* title, const juce::String& text)
{
    juce::AlertWindow::showMessageBoxAsync (juce::MessageBoxIconType::WarningIcon, title, text);
}
}

//==============================================================================
void CreatorProfileWizard::goBack()
{
    // Whatever the step holds is taken along, good or bad: going back must always be possible.
    juce::String ignored;
    captureStep (false, ignored);
    currentStep = juce::jmax (currentStep - 1, 0);
    showStep();
}

void CreatorProfileWizard::skipStep()
{
    // A picture that cannot be used would keep every later step from being left, and there is no other way to take it out again.
    if (auto* const picture = pictureOfStep (currentStep); picture != nullptr && ! isAcceptableProfileImage (*picture))
        picture->clear();

    if (currentStep == 9)
        saveDraft (false, true);
    else
        advance();
}

juce::String* CreatorProfileWizard::pictureOfStep (int step)
{
    return step == 6 ? &profile.profileImagePath : step == 7 ? &profile.bannerImagePath : nullptr;
}

void CreatorProfileWizard::goNext()
{
    const bool isLast = currentStep == 9;
    juce::String error;

    if (! captureStep (isLast, error))
        askToRefine ("Check This Step", error);
    else if (isLast)
        saveDraft (false, true);
    else
        advance();
}

void CreatorProfileWizard::advance()
{
    ++currentStep;
    showStep();
}

void CreatorProfileWizard::saveDraft (bool closeAfter, bool finishing)
{
    juce::String error;

    if (! captureStep (finishing, error) || ! store.save (profile, error))
    {
        warn ("Profile Draft Needs Attention", error + "\n\nExisting recovery data was not overwritten.");
        return;
    }

    if (! closeAfter)
        inform ("Local Draft Saved", "Your private creator profile draft was saved on this computer. Nothing was uploaded or published.");
    else if (onClose != nullptr)
        onClose();
}

void CreatorProfileWizard::showPreview()
{
    juce::String error;

    if (captureStep (false, error))
        inform ("Creator Profile Preview", CreatorProfileText::preview (profile));
    else
        askToRefine ("Preview Needs Attention", error);
}

void CreatorProfileWizard::askToRefine (const char* boxTitle, const juce::String& error)
{
    warn (boxTitle, error);

    if (primaryEditor.isShowing())
        primaryEditor.grabKeyboardFocus();
}

//==============================================================================
void CreatorProfileWizard::chooseImage()
{
    fileChooser = std::make_unique<juce::FileChooser> ("Choose PNG or JPEG", juce::File(), "*.png;*.jpg;*.jpeg", true);

    fileChooser->launchAsync (juce::FileBrowserComponent::openMode | juce::FileBrowserComponent::canSelectFiles,
                              [safeThis = SafePointer (this), step = currentStep] (const juce::FileChooser& chooser)
                              {
                                  if (safeThis == nullptr)
                                      return;

                                  const auto image = chooser.getResult();
                                  safeThis->fileChooser.reset();
                                  safeThis->useImage (image, step);
                              });
}

void CreatorProfileWizard::useImage (const juce::File& image, int step)
{
    if (! image.existsAsFile())
        return;

    if (auto* const picture = pictureOfStep (step))
        *picture = image.getFullPathName();

    // The system's dialog leaves the wizard in use. Showing another step anew would drop what is typed there.
    if (step == currentStep)
        showStep();
}

void CreatorProfileWizard::exportDraft()
{
    const auto proposal = juce::File::getSpecialLocation (juce::File::userDocumentsDirectory).getChildFile ("ZORVA Creator Profile.json");
    fileChooser = std::make_unique<juce::FileChooser> ("Export Local Creator Draft", proposal, "*.json", true);

    fileChooser->launchAsync (juce::FileBrowserComponent::saveMode | juce::FileBrowserComponent::canSelectFiles
                                  | juce::FileBrowserComponent::warnAboutOverwriting,
                              [safeThis = SafePointer (this)] (const juce::FileChooser& chooser)
                              {
                                  if (safeThis == nullptr)
                                      return;

                                  const auto destination = chooser.getResult();
                                  safeThis->fileChooser.reset();
                                  safeThis->exportTo (destination);
                              });
}

void CreatorProfileWizard::exportTo (const juce::File& destination)
{
    juce::String error;

    if (destination != juce::File() && ! store.exportTo (destination, error))
        warn ("Export Failed", error);
}

//==============================================================================
void CreatorProfileWizard::askToDelete()
{
    juce::AlertWindow::showOkCancelBox (
        juce::MessageBoxIconType::WarningIcon, "Delete Local Creator Draft?",
        "This permanently deletes the local profile draft. No public data exists.", "Delete Draft", "Cancel", nullptr,
        juce::ModalCallbackFunction::create ([safeThis = SafePointer (this)] (int result)
                                             {
                                                 if (safeThis != nullptr && result == 1)
                                                     safeThis->deleteDraft();
                                             }));
}

void CreatorProfileWizard::deleteDraft()
{
    juce::String error;

    if (! store.remove (error))
    {
        warn ("Delete Failed", error);
        return;
    }

    profile = {};
    currentStep = 0;
    showStep();
}
