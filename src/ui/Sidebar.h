#pragma once

#include "ui/SplashLogo.h"

#include <juce_gui_basics/juce_gui_basics.h>
#include <array>
#include <functional>
#include <memory>

/** The column at the left of the window: the logo and one button for each page. Message thread. */
class Sidebar final : public juce::Component
{
public:
    /** The pages, top to bottom as their buttons stand. */
    enum class Tab
    {
        community,
        library,
        settings,
        about
    };

    class TabButton;

    /** Starts on the community page. */
    Sidebar();
    ~Sidebar() override;

    /** For when the program itself changes the page: moves the selection without calling onTabChanged. */
    void setCurrentTab (Tab);

    Tab getCurrentTab() const { return currentTab; }

    /** Called after a click on a tab that was not the current one. May be empty. */
    std::function<void (Tab)> onTabChanged;

    void paint (juce::Graphics&) override;
    void resized() override;
    bool keyPressed (const juce::KeyPress&) override;

private:
    std::array<TabButton*, 4> buttons() const;
    void tabClicked (Tab);
    void refreshSelection();

    Tab currentTab = Tab::community;
    juce::SharedResourcePointer<SplashLogo> logo;
    std::unique_ptr<TabButton> communityButton, libraryButton, settingsButton, aboutButton;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (Sidebar)
};

/** The button of one page. It never toggles by itself; the sidebar says which one is selected. */
class Sidebar::TabButton final : public juce::Button
{
public:
    /** A DAW entry wears the "DAW" chip and is always at full strength. `description` is the tooltip too. */
    TabButton (Tab, const juce::String& name, const juce::String& title, const juce::String& description, bool dawEntry);

    Tab getTab() const       { return tab; }
    bool isSelected() const  { return selected; }
    bool isDawEntry() const  { return dawEntry; }

    /** Repaints only when this changes something. */
    void setSelected (bool);

private:
    void paintButton (juce::Graphics&, bool isOver, bool isDown) override;
    void paintDawMarks (juce::Graphics&, juce::Rectangle<int>& content) const;

    const Tab tab;
    const bool dawEntry;
    bool selected = false;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (TabButton)
};
