#include "ui/CommunityPage.h"

#include "app/HubPaths.h"
#include "creator/CreatorProfileWizard.h"
#include "platform/Programs.h"
#include "ui/CommunityExperience.h"
#include "ui/CommunityTexts.h"
#include "ui/SpaceKey.h"

CommunityPage::CommunityPage (CreatorProfileStore& profileStore, PreviewDraftStore& drafts, std::function<void()> onOpenLibrary)
    : draftStore (drafts),
      experience (std::make_unique<CommunityExperience> (
          std::move (onOpenLibrary), [this] { openWizard(); }, [this] { reviewDrafts(); },
          [] (const juce::String& subject, const juce::String& body) { platform::openAddress (mailtoAddress (subject, body)); })),
      viewport (std::make_unique<juce::Viewport>()), wizard (std::make_unique<CreatorProfileWizard> (profileStore))
{
    experience->setComponentID ("experience");

    viewport->setComponentID ("viewport");
    viewport->setTitle ("ZORVA Community page");
    viewport->setDescription ("Creator spotlights, private profiles, local drafts, and resources. Scroll with the arrow keys.");
    viewport->setViewedComponent (experience.get(), false);
    viewport->setScrollBarsShown (true, false);
    viewport->setScrollBarThickness (6);
    addAndMakeVisible (*viewport);
    focusRing.watch (*viewport, -2);

    wizard->setComponentID ("wizard");
    wizard->onClose = [this] { closeWizard(); };
    addChildComponent (*wizard);
}

CommunityPage::~CommunityPage() = default;

void CommunityPage::setHeroPrimary (const juce::String& text, const juce::String& description)
{
    experience->setHeroPrimary (text, description);
}

//==============================================================================
void CommunityPage::openWizard()
{
    viewport->setVisible (false);
    wizard->setVisible (true);
    wizard->grabKeyboardFocus();
    resized();
}

void CommunityPage::closeWizard()
{
    wizard->setVisible (false);
    viewport->setVisible (true);
    viewport->grabKeyboardFocus();
}

void CommunityPage::reviewDrafts()
{
    const int numDrafts = draftStore.count();

    auto onAnswer = [safeThis = SafePointer (this), numDrafts] (int result)
    {
        if (safeThis != nullptr && result == 1 && numDrafts > 0)
            platform::openFolder (HubPaths::publishDraftsDirectory());
    };

    juce::AlertWindow::showOkCancelBox (juce::MessageBoxIconType::InfoIcon, "Local Preview Drafts", localDraftsMessage (numDrafts),
                                        numDrafts > 0 ? "Open Draft Folder" : "OK", "Close", nullptr,
                                        juce::ModalCallbackFunction::create (std::move (onAnswer)));
}

//==============================================================================
void CommunityPage::paintOverChildren (juce::Graphics& g)
{
    focusRing.paint (g);
}

bool CommunityPage::keyPressed (const juce::KeyPress& key)
{
    return clickFocusedButtonOnSpace (key);
}

void CommunityPage::resized()
{
    viewport->setBounds (getLocalBounds());
    wizard->setBounds (getLocalBounds());

    const int width = juce::jmax (getWidth() - viewport->getScrollBarThickness(), 0);
    experience->setSize (width, juce::jmax (getHeight(), experience->heightForWidth (width)));
}
