#pragma once

#include "creator/CreatorProfile.h"

/** What a creator profile may hold. Reads the pictures that the profile names; any thread. */
namespace CreatorProfileRules
{
constexpr int mostItems = 16;       ///< in the list of further roles, and in that of genres
constexpr int mostLinks = 12;

/** The code of the first rule that the profile breaks; empty when it breaks none. */
juce::String firstBreach (const CreatorProfile& profile);
}
