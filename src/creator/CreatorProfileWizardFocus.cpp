#include "creator/CreatorProfileWizardFocus.h"

// When nothing follows, the answer is null: the framework then goes round to the other end of the same container. Around the
// window is what the person expects, so the ends of the window are named here.

std::vector<juce::Component*> CreatorProfileWizardFocus::outside()
{
    auto* const window = container.findKeyboardFocusContainer();
    return window != nullptr && window != &container ? getAllComponents (window) : std::vector<juce::Component*>();
}

juce::Component* CreatorProfileWizardFocus::getNextComponent (juce::Component* current)
{
    if (auto* within = KeyboardFocusTraverser::getNextComponent (current))
        return within;

    if (auto* after = KeyboardFocusTraverser::getNextComponent (&container))
        return after;

    const auto others = outside();
    return others.size() > 1 ? others.front() : nullptr;
}

juce::Component* CreatorProfileWizardFocus::getPreviousComponent (juce::Component* current)
{
    if (auto* within = KeyboardFocusTraverser::getPreviousComponent (current))
        return within;

    if (auto* before = KeyboardFocusTraverser::getPreviousComponent (&container))
        return before;

    const auto others = outside();
    return others.size() > 1 ? others.back() : nullptr;
}
