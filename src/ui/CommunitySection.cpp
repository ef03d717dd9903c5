#include "ui/CommunitySection.h"

#include "ui/ScrollIntoView.h"

CommunitySection::CommunitySection (const juce::String& title, const juce::String& description)
{
    setTitle (title);
    setDescription (description);
    setMouseClickGrabsKeyboardFocus (false);    // else a click beside the buttons would focus the first of them
}

void CommunitySection::focusOfChildComponentChanged (FocusChangeType cause)
{
    auto* const focused = getCurrentlyFocusedComponent();

    if (cause != focusChangedByTabKey || ! isParentOf (focused))
        return;

    // The section as far as it goes, and the button in any case: a section can be taller than the page.
    scrollIntoView (*this);
    scrollIntoView (*focused);
}

std::unique_ptr<juce::AccessibilityHandler> CommunitySection::createAccessibilityHandler()
{
    return std::make_unique<juce::AccessibilityHandler> (*this, juce::AccessibilityRole::group);
}
