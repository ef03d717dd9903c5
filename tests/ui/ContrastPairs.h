#pragma once

#include <juce_graphics/juce_graphics.h>
#include <string>
#include <vector>

/** The colours of words and marks on what they stand on, and how well they can be told apart. */
namespace zorva::test
{
/** What a contrast is asked of. */
enum class ContrastUse
{
    words,      ///< 4.5 : 1
    mark,       ///< 3 : 1: rings and rules that tell something
    inactive,   ///< nothing: what cannot be used now
    picture     ///< nothing: letters that are part of a picture, whose words stand beside it
};

/** A colour on a ground, as the pages use it. */
struct ContrastPair
{
    std::string where;
    std::string inkName, groundName;    ///< as the palette calls them
    juce::Colour ink, ground;           ///< the ink with its transparency; the ground opaque
    ContrastUse use = ContrastUse::words;
    std::string reason;                 ///< why it stays although it is below what is asked; empty otherwise
};

/** All pairs, in the order of docs/accessibility.md. */
const std::vector<ContrastPair>& contrastPairs();

/** The ratio of WCAG 2 of an ink, which may be transparent, on an opaque ground: from 1 to 21. */
double contrastOf (juce::Colour ink, juce::Colour ground);

/** What is asked of a use; 0 for nothing. */
double contrastNeeded (ContrastUse);

/** The table as docs/accessibility.md has it, one line a pair. */
std::string contrastTable();
}
