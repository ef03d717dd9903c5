#pragma once

#include "ui/ActionButton.h"
#include "ui/CommunityExperience.h"
#include "ui/CommunitySection.h"

struct CommunityResourceTexts;

/** One of the page's resources: a guide to read, or a mail to write. Message thread only. */
class CommunityExperience::Resource final : public CommunitySection
{
public:
    /** The action is what the button does; it may be empty. */
    Resource (const CommunityResourceTexts& texts, std::function<void()> action);

    void paint (juce::Graphics& g) override;
    void resized() override;

private:
    const juce::String category, title, body, tag;
    const std::function<void()> action;
    ActionButton resourceButton;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (Resource)
};
