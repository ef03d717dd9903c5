#include "ui/SpaceKey.h"

bool clickFocusedButtonOnSpace (const juce::KeyPress& key)
{
    if (! key.isKeyCode (juce::KeyPress::spaceKey))
        return false;

    auto* button = dynamic_cast<juce::Button*> (juce::Component::getCurrentlyFocusedComponent());

    if (button == nullptr || ! button->isEnabled())
        return false;

    button->triggerClick();
    return true;
}
