#include "ui/PrimaryButton.h"

#include "ui/KeepingFocus.h"

void showAction (juce::TextButton& button, const ProductCardAction& action, const juce::String& productName)
{
    button.setButtonText (action.label);
    button.setColour (juce::TextButton::buttonColourId, action.fill);
    button.setColour (juce::TextButton::textColourOffId, action.text);
    setEnabledKeepingFocus (button, action.enabled);
    button.setTooltip (action.tooltip);
    button.setTitle (action.label + " " + productName);
    button.setDescription (action.tooltip);
}
