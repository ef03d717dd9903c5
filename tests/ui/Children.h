#pragma once

#include <gtest/gtest.h>
#include <juce_gui_basics/juce_gui_basics.h>
#include <vector>

namespace zorva::test
{
/** All components of a type below a component, parents before children, in their z-order. */
template <typename Type>
std::vector<Type*> allBelow (const juce::Component& parent)
{
    std::vector<Type*> found;

    for (auto* child : parent.getChildren())
    {
        if (auto* match = dynamic_cast<Type*> (child))
            found.push_back (match);

        for (auto* deeper : allBelow<Type> (*child))
            found.push_back (deeper);
    }

    return found;
}

/** The component of this id below a component, or null. */
inline juce::Component* findBelow (const juce::Component& parent, const juce::String& id)
{
    for (auto* child : allBelow<juce::Component> (parent))
        if (child->getComponentID() == id)
            return child;

    return nullptr;
}

/** The component of this id and type below a component. Without it the test process ends with a failure. */
template <typename Type = juce::Component>
Type& below (const juce::Component& parent, const juce::String& id)
{
    auto* const found = dynamic_cast<Type*> (findBelow (parent, id));

    if (found == nullptr)
    {
        ADD_FAILURE() << "no such component: " << id;
        std::abort();
    }

    return *found;
}
}
