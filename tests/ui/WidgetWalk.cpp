#include "WidgetWalk.h"

#include "ui/HubPalette.h"

#include <algorithm>

namespace zorva::test
{
namespace
{
bool isWhole (const juce::Component& c)
{
    return dynamic_cast<const juce::Button*> (&c) != nullptr || dynamic_cast<const juce::TextEditor*> (&c) != nullptr
        || dynamic_cast<const juce::ComboBox*> (&c) != nullptr || dynamic_cast<const juce::Slider*> (&c) != nullptr;
}

/** The wizard wants the focus only to hand it on to the control that it comes to first. */
bool handsFocusOn (const juce::Component& c)    { return c.getComponentID() == "wizard"; }

bool canBeOperated (juce::Component& c)
{
    if (isWhole (c) || (c.getWantsKeyboardFocus() && ! handsFocusOn (c)))
        return true;

    auto* const handler = c.getAccessibilityHandler();
    return handler != nullptr && handler->getActions().contains (juce::AccessibilityActionType::press);
}

void collect (juce::Component& parent, std::vector<juce::Component*>& found)
{
    for (auto* child : parent.getChildren())
    {
        if (! child->isShowing() || child->getBounds().isEmpty())
            continue;

        if (canBeOperated (*child))
            found.push_back (child);

        if (! isWhole (*child))
            collect (*child, found);
    }
}

/** From the ancestor's child down to the component. */
std::vector<const juce::Component*> wayDown (const juce::Component& ancestor, const juce::Component& component)
{
    std::vector<const juce::Component*> way;

    for (const auto* c = &component; c != nullptr && c != &ancestor; c = c->getParentComponent())
        way.insert (way.begin(), c);

    return way;
}
}

//==============================================================================
std::vector<juce::Component*> WidgetWalk::widgets() const
{
    std::vector<juce::Component*> found;
    collect (*run.hub, found);
    return found;
}

std::vector<juce::Component*> WidgetWalk::usable() const
{
    auto found = widgets();
    found.erase (std::remove_if (found.begin(), found.end(), [] (const auto* c) { return ! c->isEnabled(); }), found.end());
    return found;
}

std::vector<juce::Component*> WidgetWalk::tabStops() const
{
    constexpr size_t tooMany = 200;
    std::vector<juce::Component*> stops;
    run.window->grabKeyboardFocus();    // which goes to the first

    while (stops.size() < tooMany)
    {
        auto* const focused = juce::Component::getCurrentlyFocusedComponent();

        if (focused == nullptr || (! stops.empty() && focused == stops.front()))
            return stops;

        stops.push_back (focused);
        run.window->key (juce::KeyPress::tabKey);
    }

    ADD_FAILURE() << "Tab never comes back to where it began";
    return stops;
}

std::string WidgetWalk::nameOf (const juce::Component& component)
{
    for (const auto* parent = component.getParentComponent(); parent != nullptr; parent = parent->getParentComponent())
        if (parent->getComponentID().isNotEmpty())
            return (parent->getComponentID() + "/" + component.getComponentID()).toStdString();

    return component.getComponentID().toStdString();
}

std::vector<std::string> WidgetWalk::namesOf (const std::vector<juce::Component*>& components)
{
    std::vector<std::string> names;
    std::transform (components.begin(), components.end(), std::back_inserter (names), [] (const auto* c) { return nameOf (*c); });
    return names;
}

bool WidgetWalk::isReadBefore (const juce::Component& first, const juce::Component& second) const
{
    const auto one = wayDown (*run.hub, first), other = wayDown (*run.hub, second);
    const auto [branch, otherBranch] = std::mismatch (one.begin(), one.end(), other.begin(), other.end());

    if (branch == one.end() || otherBranch == other.end())
        return branch == one.end();     // the group that the other is in

    const auto a = (*branch)->getBounds(), b = (*otherBranch)->getBounds();
    const bool shareRows = a.getY() < b.getBottom() && b.getY() < a.getBottom();
    return shareRows ? a.getX() < b.getX() : a.getY() < b.getY();
}

juce::Rectangle<int> WidgetWalk::placeOf (const juce::Component& component) const
{
    return run.hub->getLocalArea (&component, component.getLocalBounds());
}

juce::Rectangle<int> WidgetWalk::seenPartOf (const juce::Component& component) const
{
    auto seen = placeOf (component).getIntersection (run.hub->getLocalBounds());

    for (const auto* parent = component.getParentComponent(); parent != nullptr; parent = parent->getParentComponent())
        if (dynamic_cast<const juce::Viewport*> (parent) != nullptr)
            seen = seen.getIntersection (placeOf (*parent));

    return seen;
}

//==============================================================================
RingSides ringAround (const juce::Image& focused, const juce::Image& plain, int margin)
{
    constexpr int corner = 8;           // what the curve of a corner may take off a side, on either end
    const Pixels with (focused), without (plain);
    const auto accent = HubPalette::accent.getPixelARGB();
    const auto isAccent = [&] (const Pixels& p, int x, int y) { return p.at (x, y).getNativeARGB() == accent.getNativeARGB(); };
    const int width = focused.getWidth(), height = focused.getHeight();
    RingSides result;

    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            result.newPixels += isAccent (with, x, y) && ! isAccent (without, x, y) ? 1 : 0;

    // A side is whole when each pixel along it has the line in the band around the widget's edge.
    const auto check = [&] (const char* side, int length, const auto& hasLineAt)
    {
        int missing = 0;

        for (int i = std::min (margin + corner, length / 2); i < std::max (length - margin - corner, length / 2 + 1); ++i)
            missing += hasLineAt (i) ? 0 : 1;

        if (missing > 0)
            result.gaps += std::string (result.gaps.empty() ? "" : ", ") + side + " lacks " + std::to_string (missing);
    };

    const int band = 2 * margin;
    const auto anyIn = [] (int from, int to, const auto& condition)
    {
        for (int i = from; i < to; ++i)
            if (condition (i))
                return true;

        return false;
    };

    check ("top", width, [&] (int x) { return anyIn (0, std::min (band, height / 2), [&] (int y) { return isAccent (with, x, y); }); });
    check ("bottom", width, [&] (int x) { return anyIn (std::max (height - band, height / 2), height, [&] (int y) { return isAccent (with, x, y); }); });
    check ("left", height, [&] (int y) { return anyIn (0, std::min (band, width / 2), [&] (int x) { return isAccent (with, x, y); }); });
    check ("right", height, [&] (int y) { return anyIn (std::max (width - band, width / 2), width, [&] (int x) { return isAccent (with, x, y); }); });
    return result;
}
}
