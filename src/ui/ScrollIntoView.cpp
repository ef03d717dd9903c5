#include "ui/ScrollIntoView.h"

void scrollIntoView (const juce::Component& component)
{
    for (auto* parent = component.getParentComponent(); parent != nullptr; parent = parent->getParentComponent())
    {
        auto* viewport = dynamic_cast<juce::Viewport*> (parent);

        if (viewport == nullptr || viewport->getViewedComponent() == nullptr)
            continue;

        const auto area = viewport->getViewedComponent()->getLocalArea (&component, component.getLocalBounds());
        const auto view = viewport->getViewArea();
        const auto lowest = juce::jmin (view.getY(), area.getY());
        viewport->setViewPosition (view.getX(), juce::jmin (area.getY(), juce::jmax (lowest, area.getBottom() - view.getHeight())));
    }
}
