#include "ui/FocusRing.h"

#include "ui/HubPalette.h"

#include <algorithm>

namespace
{
constexpr float cornerRadius = 4.0f;
constexpr int thickness = 2;
}

void drawFocusRing (juce::Graphics& g, juce::Rectangle<int> area)
{
    g.setColour (HubPalette::accent);
    g.drawRoundedRectangle (area.toFloat(), cornerRadius, (float) thickness);
}

//==============================================================================
FocusRing::FocusRing (juce::Component& parentToUse) : parent (parentToUse)
{
    juce::Desktop::getInstance().addFocusChangeListener (this);
}

FocusRing::~FocusRing() { juce::Desktop::getInstance().removeFocusChangeListener (this); }

void FocusRing::watch (juce::Component& child, int distance) { watched.push_back ({ &child, distance }); }

void FocusRing::paint (juce::Graphics& g) const
{
    if (const auto* focused = focusedChild())
        drawFocusRing (g, ringAround (*focused));
}

void FocusRing::globalFocusChanged (juce::Component*)
{
    const auto* focused = focusedChild();
    const auto area = focused != nullptr ? ringAround (*focused).expanded (thickness) : juce::Rectangle<int>();

    if (area == shownArea)
        return;

    parent.repaint (shownArea);
    parent.repaint (area);
    shownArea = area;
}

const FocusRing::Watched* FocusRing::focusedChild() const
{
    const auto showsRing = [] (const Watched& w) { return w.child->hasKeyboardFocus (false) && ! w.child->getBounds().isEmpty(); };
    const auto found = std::find_if (watched.begin(), watched.end(), showsRing);
    return found != watched.end() ? &*found : nullptr;
}

juce::Rectangle<int> FocusRing::ringAround (const Watched& w) const
{
    return parent.getLocalArea (w.child, w.child->getLocalBounds()).expanded (w.distance);
}
