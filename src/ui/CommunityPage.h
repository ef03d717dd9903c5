#pragma once

#include "creator/CreatorProfileStore.h"
#include "creator/PreviewDraftStore.h"
#include "ui/FocusRing.h"

#include <functional>
#include <juce_gui_basics/juce_gui_basics.h>

class CommunityExperience;
class CreatorProfileWizard;

/** The community tab: a long offline page that swaps with the creator profile wizard. Nothing on it goes over the network.
    Message thread only. */
class CommunityPage final : public juce::Component
{
public:
    /** The stores are not owned and must outlive the page. onOpenLibrary may be empty. */
    CommunityPage (CreatorProfileStore& profileStore, PreviewDraftStore& draftStore, std::function<void()> onOpenLibrary);
    ~CommunityPage() override;

    /** Sets the words of the hero's third button. */
    void setHeroPrimary (const juce::String& text, const juce::String& description);

    void paintOverChildren (juce::Graphics& g) override;
    void resized() override;
    bool keyPressed (const juce::KeyPress& key) override;

private:
    void openWizard();
    void closeWizard();
    void reviewDrafts();

    PreviewDraftStore& draftStore;
    std::unique_ptr<CommunityExperience> experience;
    std::unique_ptr<juce::Viewport> viewport;
    std::unique_ptr<CreatorProfileWizard> wizard;
    FocusRing focusRing { *this };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (CommunityPage)
};
