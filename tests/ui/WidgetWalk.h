#pragma once

#include "HubRun.h"

namespace zorva::test
{
/** Everything that a page offers to a person's hand, and the way that Tab takes through it. */
class WidgetWalk
{
public:
    explicit WidgetWalk (HubRun& runToWalk) : run (runToWalk) {}

    /** All that can be operated and has room on the screen or in a scrolling page, enabled or not: buttons, fields, boxes, whatever
        wants the focus, and whatever a screen reader can press. Parts of such a widget are not counted. In the order of the tree. */
    std::vector<juce::Component*> widgets() const;

    /** Those of them that can be used now. */
    std::vector<juce::Component*> usable() const;

    /** Where Tab stops, from the window's first widget until it is there again. */
    std::vector<juce::Component*> tabStops() const;

    /** A widget by its own id behind the nearest one above: "hero/submitYourMusicButton". */
    static std::string nameOf (const juce::Component&);
    static std::vector<std::string> namesOf (const std::vector<juce::Component*>&);

    /** Whether the page is read from `first` to `second`. The rule: the two are compared where their ways down from the window part;
        what lies above goes first, whatever its columns, and of two that share rows of pixels the one whose left edge is more to the
        left. A group goes before what is in it. */
    bool isReadBefore (const juce::Component& first, const juce::Component& second) const;

    /** The part of the window that a widget is seen in, cut by the viewports around it; in the hub's coordinates. */
    juce::Rectangle<int> seenPartOf (const juce::Component&) const;

    juce::Rectangle<int> placeOf (const juce::Component&) const;

private:
    HubRun& run;
};

/** How a widget's picture shows that it has the focus. */
struct RingSides
{
    int newPixels = 0;              ///< in the accent colour, that are not there without the focus
    std::string gaps;               ///< sides that the line does not follow all along; empty when it goes round
};

/** Compares two pictures of a widget with `margin` pixels around it, with the focus and without. */
RingSides ringAround (const juce::Image& focused, const juce::Image& plain, int margin);
}
