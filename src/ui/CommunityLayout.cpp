#include "ui/CommunityLayout.h"

namespace
{
constexpr int pageMargin = 24, columnGap = 14;
constexpr int resourceHeight = 180, resourceStep = resourceHeight + columnGap;

/** A rectangle of no negative size. */
juce::Rectangle<int> box (int x, int y, int width, int height)
{
    return { x, y, juce::jmax (width, 0), juce::jmax (height, 0) };
}
}

bool isCommunityNarrow (int width) { return width < 760; }

juce::Rectangle<int> communityCard (int width, int height)
{
    return box (5, 5, width - 10, height - 10);
}

//==============================================================================
CommunityLayout::CommunityLayout (int width, int numResources)
{
    const int content = juce::jmax (width - 2 * pageMargin, 0);
    const bool narrow = isCommunityNarrow (content);
    const int half = (content - columnGap) / 2;
    const auto row = [content] (int y, int rowHeight) { return box (pageMargin, y, content, rowHeight); };

    hero = row (20, narrow ? 530 : 330);
    featuredTrack = row (narrow ? 574 : 374, narrow ? 455 : 280);
    spotlightsHeading = row (narrow ? 1053 : 678, 28);
    producerSpotlight = narrow ? row (1085, 550) : box (pageMargin, 710, half, 430);
    artistSpotlight = narrow ? row (1649, 550) : box (half + 38, 710, content - half - columnGap, 430);
    participation = row (narrow ? 2223 : 1164, narrow ? 260 : 178);
    resourcesHeading = row (narrow ? 2507 : 1366, 28);

    const int firstResource = narrow ? 2539 : 1398;

    for (int i = 0; i < numResources; ++i)
        resources.push_back (narrow ? row (firstResource + i * resourceStep, resourceHeight)
                                    : box ((i % 2) * (half + columnGap) + pageMargin, firstResource + (i / 2) * resourceStep, half,
                                           resourceHeight));

    const int rows = narrow ? numResources : (numResources + 1) / 2;
    height = firstResource + juce::jmax (rows * resourceStep - columnGap, 0) + 64;
}

//==============================================================================
CommunityHeroLayout::CommunityHeroLayout (int width, int height)
    : narrow (isCommunityNarrow (width)), card (communityCard (width, height)), picture (card)
{
    if (narrow)
    {
        const int third = (width - 60) / 3, y = height - 56;
        createProfile = box (20, y, third, 40);
        submitMusic = box (third + 30, y, third, 40);
        primary = box (2 * third + 40, y, width - 2 * third - 60, 40);

        picture = card.withHeight (juce::jmin (290, card.getHeight()));
        const int bottom = y - 8, top = juce::jmin (bottom, 288);
        text = box (card.getX() + 20, top, card.getWidth() - 40, bottom - top);
    }
    else
    {
        const int y = height - 62;
        createProfile = box (28, y, 140, 40);
        submitMusic = box (178, y, 125, 40);
        primary = box (313, y, 158, 40);

        text = box (card.getX() + 24, card.getY() + 24, card.getWidth() / 2 + card.getX(), card.getHeight() - 48);
    }

    primaryCaption = primary.isEmpty() ? juce::Rectangle<int>() : box (primary.getX(), primary.getY() - 15, primary.getWidth(), 13);
}

CommunityTrackLayout::CommunityTrackLayout (int width, int height) : narrow (isCommunityNarrow (width))
{
    if (narrow)
    {
        badge = { (width - 172) / 2, 19, 172, 172 };
        text = box (20, 205, width - 40, height - 205);
        play = { 20, height - 55, 42, 40 };
        submit = { 76, height - 55, 150, 40 };
    }
    else
    {
        badge = { 21, 22, 196, 196 };
        text = box (244, 24, width - 266, height - 24);
        play = { 244, height - 62, 42, 40 };
        submit = { 300, height - 62, 150, 40 };
    }

    text.setBottom (juce::jmax (text.getY(), play.getY()));
}

//==============================================================================
CommunitySpotlightLayout::CommunitySpotlightLayout (int width, int height)
    : card (communityCard (width, height)), button (box (20, height - 53, juce::jmin (width - 40, 220), 38))
{
    constexpr int gapBelowPicture = 12, textHeight = 17 + 27 + 47, gapAboveButton = 8;

    // The page's columns are mostly narrow by their own width, and shorter than what a narrow spotlight needs: the words must stay
    // readable above the button, so the picture yields.
    const int roomForPicture = button.getY() - gapAboveButton - textHeight - gapBelowPicture - card.getY();
    const int pictureHeight = juce::jlimit (0, isCommunityNarrow (width) ? 370 : 250, roomForPicture);

    picture = card.withHeight (juce::jmin (pictureHeight, card.getHeight()));
    text = box (card.getX() + 18, picture.getBottom() + gapBelowPicture, card.getWidth() - 36, textHeight);
}

CommunityParticipationLayout::CommunityParticipationLayout (int width, int height)
{
    const auto card = communityCard (width, height);

    if (isCommunityNarrow (width))
    {
        editProfile = box (20, height - 140, width - 40, 36);
        reviewDrafts = box (20, height - 96, width - 40, 36);
        submitMusic = box (20, height - 52, width - 40, 36);
    }
    else
    {
        editProfile = { 22, height - 56, 178, 38 };
        reviewDrafts = { 212, height - 56, 178, 38 };
        submitMusic = { 402, height - 56, 142, 38 };
    }

    const int top = card.getY() + 17;
    text = box (card.getX() + 22, top, card.getWidth() - 44, editProfile.getY() - top);
}

CommunityResourceLayout::CommunityResourceLayout (int width, int height)
    : button (box (18, height - 52, juce::jmin (width - 36, 205), 38))
{
    constexpr int narrowestWithTag = 250;
    const auto card = communityCard (width, height);
    const int top = card.getY() + 13;
    text = box (card.getX() + 18, top, card.getWidth() - 36, button.getY() - top);

    if (text.getWidth() > narrowestWithTag)
        tag = { width - 144, 17, 121, 16 };
}
