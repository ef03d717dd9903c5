#include "ui/KeepingFocus.h"

void setEnabledKeepingFocus (juce::Component& control, bool shouldBeEnabled)
{
    const auto* const parent = control.getParentComponent();
    const bool parentTakesIt = parent != nullptr && parent->getWantsKeyboardFocus();

    if (! shouldBeEnabled && ! parentTakesIt && control.hasKeyboardFocus (false))
        control.moveKeyboardFocusToSibling (false);

    control.setEnabled (shouldBeEnabled);
}

void setFocusableKeepingFocus (juce::Component& control, bool shouldBeFocusable)
{
    if (! shouldBeFocusable && control.hasKeyboardFocus (false))
        control.moveKeyboardFocusToSibling (false);

    control.setWantsKeyboardFocus (shouldBeFocusable);
}
