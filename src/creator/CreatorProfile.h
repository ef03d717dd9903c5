#pragma once

#include <juce_core/juce_core.h>

/** The private draft of a person's creator profile. Lengths count Unicode code points; every text and list item is one line: no
    code point below 32 but the tab. */
struct CreatorProfile
{
    int currentStep = 0;                            ///< the wizard's, 0 to 9
    bool completed = false;
    juce::String displayName;                       ///< at most 80; not blank when completed
    juce::String primaryRole;                       ///< at most 48; not blank when completed
    juce::StringArray secondaryRoles;               ///< at most 16 of 1 to 48
    juce::StringArray genres;                       ///< at most 16 of 1 to 48
    juce::String styleDescription;                  ///< at most 500
    juce::String accentColour { "#00BCEB" };        ///< "#" and six hexadecimal digits
    juce::String backgroundTheme { "zorva-dark" };  ///< "zorva-dark", "midnight" or "soft-light"
    juce::String profileImagePath;                  ///< empty, or what isAcceptableProfileImage() takes
    juce::String bannerImagePath;                   ///< as profileImagePath
    juce::StringPairArray socialLinks { true };     ///< at most 12; names to https addresses, names compared without regard to case
    bool localWebsitePreviewRequested = false;
    juce::String updatedAt;                         ///< set by the store at every save
};
