#pragma once

#include <juce_graphics/juce_graphics.h>
#include <vector>

// Where everything of the community page lies. All of it is pure, in logical pixels; each section's places are in its own
// coordinates.

/** Whether what has this width is laid out narrow; the page goes by what is left between its margins. */
bool isCommunityNarrow (int width);

/** The plate of a section of this size. */
juce::Rectangle<int> communityCard (int width, int height);

/** The sections on the page. */
struct CommunityLayout
{
    CommunityLayout (int width, int numResources);

    juce::Rectangle<int> hero, featuredTrack, spotlightsHeading, producerSpotlight, artistSpotlight, participation, resourcesHeading;
    std::vector<juce::Rectangle<int>> resources;

    /** The height of the whole page. */
    int height = 0;
};

struct CommunityHeroLayout
{
    CommunityHeroLayout (int width, int height);

    bool narrow;
    juce::Rectangle<int> card, picture, text;
    juce::Rectangle<int> createProfile, submitMusic, primary;

    /** The words above the third button. */
    juce::Rectangle<int> primaryCaption;
};

struct CommunityTrackLayout
{
    CommunityTrackLayout (int width, int height);

    bool narrow;
    juce::Rectangle<int> badge, text;
    juce::Rectangle<int> play, submit;
};

struct CommunitySpotlightLayout
{
    CommunitySpotlightLayout (int width, int height);

    juce::Rectangle<int> card, picture, text, button;
};

struct CommunityParticipationLayout
{
    CommunityParticipationLayout (int width, int height);

    juce::Rectangle<int> text;
    juce::Rectangle<int> editProfile, reviewDrafts, submitMusic;
};

struct CommunityResourceLayout
{
    CommunityResourceLayout (int width, int height);

    juce::Rectangle<int> text, button;

    /** Empty where the text leaves no room for it. */
    juce::Rectangle<int> tag;
};
