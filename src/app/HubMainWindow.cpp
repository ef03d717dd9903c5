#include "app/HubMainWindow.h"

HubMainWindow::HubMainWindow (const juce::String& name)
    : juce::DocumentWindow (name, juce::Colour (0xff141414), juce::DocumentWindow::allButtons, true)
{
}

void HubMainWindow::closeButtonPressed()
{
    if (auto* application = juce::JUCEApplicationBase::getInstance())
        application->systemRequestedQuit();
}

int HubMainWindow::getDesktopWindowStyleFlags() const
{
    const int style = juce::DocumentWindow::getDesktopWindowStyleFlags();
    return isResizable() ? style | juce::ComponentPeer::windowIsResizable : style;
}

bool HubMainWindow::keyPressed (const juce::KeyPress& key)
{
    if (! key.isKeyCode (juce::KeyPress::tabKey) || ! hasKeyboardFocus (false))
        return juce::DocumentWindow::keyPressed (key);

    const auto controls = juce::KeyboardFocusTraverser().getAllComponents (this);

    if (controls.empty())
        return false;

    (key.getModifiers().isShiftDown() ? controls.back() : controls.front())->grabKeyboardFocus();
    return true;
}
