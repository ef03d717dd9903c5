#pragma once

#include "creator/CreatorProfile.h"

/** What a creator profile may hold. Reads the pictures that the profile names; any thread. */
namespace CreatorProfileRules
{
/** The code of the first rule that the profile breaks; empty when it breaks none. */
juce::String firstBreach (const CreatorProfile& profile);
}
