#pragma once

#include <juce_gui_basics/juce_gui_basics.h>
#include <vector>

/** The one sign of keyboard focus of the Hub: a rounded line in HubPalette::accent, 2 pixels thick, centred on the edge of
    the area. */
void drawFocusRing (juce::Graphics&, juce::Rectangle<int> area);

/** Draws the focus ring around those children that show no focus themselves, such as text buttons.

    The ring stands outside the child, where its parent paints, so that it is seen on a button in the ring's own colour too. The
    parent owns this as its last member, names the children with watch() and calls paint() from paintOverChildren(). The repaints
    that a change of focus needs are made here. Message thread. */
class FocusRing final : private juce::FocusChangeListener
{
public:
    explicit FocusRing (juce::Component& parent);
    ~FocusRing() override;

    /** Adds a child, or a component further down, that lives as long as this. The ring's line runs `distance` pixels outside its
        bounds; a negative distance puts it inside, for what fills its parent. */
    void watch (juce::Component& child, int distance = 2);

    /** Draws the ring if one of the watched components has the focus and any size; in the parent's coordinates. */
    void paint (juce::Graphics&) const;

private:
    struct Watched
    {
        juce::Component* child;
        int distance;
    };

    void globalFocusChanged (juce::Component* focusedComponent) override;
    const Watched* focusedChild() const;
    juce::Rectangle<int> ringAround (const Watched&) const;

    juce::Component& parent;
    std::vector<Watched> watched;
    juce::Rectangle<int> shownArea;   ///< what must be painted anew when the focus moves on

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (FocusRing)
};
