#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/** What all sections of the community page share: they are named groups, and come into view when the keyboard enters them.
    Message thread only. */
class CommunitySection : public juce::Component
{
public:
    CommunitySection (const juce::String& title, const juce::String& description);

    void focusOfChildComponentChanged (FocusChangeType cause) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (CommunitySection)
};
