#pragma once

#include <juce_graphics/juce_graphics.h>

/** The colours of the Hub. Fixed for the life of the program. */
namespace HubPalette
{
inline const juce::Colour windowBackground { 0xff434343 };  ///< window and grid background
inline const juce::Colour surface          { 0xff444444 };  ///< resting cards, the detail pane, hovered tabs
inline const juce::Colour raised           { 0xff4a4a4a };  ///< what is lifted above its neighbours
inline const juce::Colour panel            { 0xff393939 };  ///< recessed panels, wells, inputs, menus
inline const juce::Colour inverseText      { 0xff141414 };  ///< text on a bright fill; tooltips
inline const juce::Colour border           { 0xff3e3e3e };  ///< one-pixel rules and outlines
inline const juce::Colour accent           { 0xff00d4ff };  ///< focus, selection, links, what opens something
inline const juce::Colour action           { 0xfff97316 };  ///< what fetches or installs; progress
inline const juce::Colour textPrimary      { 0xfff5f5f5 };
inline const juce::Colour textSecondary    { 0xff888888 };
inline const juce::Colour success          { 0xff4caf50 };  ///< online, installed
inline const juce::Colour warning          { 0xffff9800 };  ///< offline, busy, update, low free space

inline const juce::Colour actionBright = action.brighter (0.4f);  ///< small headings
}
