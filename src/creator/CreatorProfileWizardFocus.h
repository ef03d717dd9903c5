#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/** Tab within a focus container that is part of a page: from its last control on to what follows the container in the window,
    and back from its first. The container itself takes the focus to hand it on, so that Tab finds a way in as well. */
class CreatorProfileWizardFocus final : public juce::KeyboardFocusTraverser
{
public:
    /** The container is not owned and outlives this. */
    explicit CreatorProfileWizardFocus (juce::Component& focusContainer) : container (focusContainer) {}

    juce::Component* getNextComponent (juce::Component* current) override;
    juce::Component* getPreviousComponent (juce::Component* current) override;

private:
    std::vector<juce::Component*> outside();

    juce::Component& container;
};
