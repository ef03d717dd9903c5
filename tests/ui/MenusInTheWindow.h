#pragma once

#include "support/GuiHarness.h"

#include <gtest/gtest.h>

namespace zorva::test
{
/** While it lives, popup menus open inside a window in memory instead of on a screen, and can be chosen from. */
class MenusInTheWindow
{
public:
    explicit MenusInTheWindow (HeadlessWindow& windowToUse) : window (windowToUse), look (windowToUse)
    {
        juce::LookAndFeel::setDefaultLookAndFeel (&look);
    }

    ~MenusInTheWindow()
    {
        juce::PopupMenu::dismissAllActiveMenus();
        pump();
        juce::LookAndFeel::setDefaultLookAndFeel (&before);
    }

    /** Clicks a button that opens a menu. The message loop must not run before the choice: a menu closes itself when no window of
        this process has the system's focus, which windows in memory never have. */
    void open (juce::Button& button) const
    {
        const auto place = window.getLocalPoint (&button, button.getLocalBounds().getCentre()).toFloat();
        window.mouse (place, 0);
        window.mouse (place, juce::ModifierKeys::leftButtonModifier);
        window.mouse (place, 0);
        ASSERT_NE (juce::Component::getCurrentlyModalComponent(), nullptr) << "no menu has opened";
    }

    /** Chooses the n-th entry that can be chosen, counted from 1; 0 dismisses the menu. */
    void choose (int entry) const
    {
        const juce::Component::SafePointer<juce::Component> menu (juce::Component::getCurrentlyModalComponent());
        ASSERT_NE (menu, nullptr);

        for (int i = 0; i < entry; ++i)
            menu->keyPressed (juce::KeyPress (juce::KeyPress::downKey));

        menu->keyPressed (juce::KeyPress (entry > 0 ? juce::KeyPress::returnKey : juce::KeyPress::escapeKey));
        EXPECT_TRUE (pumpUntil ([&] { return menu == nullptr; }));
        pump();
    }

private:
    struct Look final : juce::LookAndFeel_V4
    {
        explicit Look (juce::Component& windowToUse) : window (windowToUse) {}
        juce::Component* getParentComponentForMenuOptions (const juce::PopupMenu::Options&) override    { return &window; }
        juce::Component& window;
    };

    HeadlessWindow& window;
    juce::LookAndFeel& before = juce::LookAndFeel::getDefaultLookAndFeel();
    Look look;

    JUCE_DECLARE_NON_COPYABLE (MenusInTheWindow)
};
}
