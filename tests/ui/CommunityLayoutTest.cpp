#include "CommunityScene.h"
#include "ui/CommunityLayout.h"

using namespace zorva::test;

namespace
{
using Bounds = juce::Rectangle<int>;

/** The section ids and the bounds of all buttons in them, in the order of the page. */
const char* const sectionIds[] { "hero", "featuredTrack", "producerSpotlight", "artistSpotlight", "participation", "resource0", "resource1",
                                 "resource2", "resource3", "resource4", "resource5", "resource6" };

struct PageCase
{
    int width, height;
    std::vector<const char*> sections;              ///< by sectionIds
    const char *spotlightsHeading, *resourcesHeading;
};

const PageCase pageCases[] {
    // The page of a window of 1100 x 720: 940 wide, less the scroll bar.
    { 934, 2224, { "24 20 886 330", "24 374 886 280", "24 710 436 430", "474 710 436 430", "24 1164 886 178",
                   "24 1398 436 180", "474 1398 436 180", "24 1592 436 180", "474 1592 436 180", "24 1786 436 180", "474 1786 436 180", "24 1980 436 180" },
      "24 678 886 28", "24 1366 886 28" },

    // The page of a window of 900 x 600: 740 wide, less the scroll bar.
    { 734, 3947, { "24 20 686 530", "24 574 686 455", "24 1085 686 550", "24 1649 686 550", "24 2223 686 260",
                   "24 2539 686 180", "24 2733 686 180", "24 2927 686 180", "24 3121 686 180", "24 3315 686 180", "24 3509 686 180", "24 3703 686 180" },
      "24 1053 686 28", "24 2507 686 28" },

    // On both sides of the one breakpoint.
    { 808, 2224, { "24 20 760 330", "24 374 760 280", "24 710 373 430", "411 710 373 430", "24 1164 760 178",
                   "24 1398 373 180", "411 1398 373 180", "24 1592 373 180", "411 1592 373 180", "24 1786 373 180", "411 1786 373 180", "24 1980 373 180" },
      "24 678 760 28", "24 1366 760 28" },
    { 807, 3947, { "24 20 759 530", "24 574 759 455", "24 1085 759 550", "24 1649 759 550", "24 2223 759 260",
                   "24 2539 759 180", "24 2733 759 180", "24 2927 759 180", "24 3121 759 180", "24 3315 759 180", "24 3509 759 180", "24 3703 759 180" },
      "24 1053 759 28", "24 2507 759 28" },

    // An odd width: the right spotlight takes the pixel that is left, the resources leave it.
    { 935, 2224, { "24 20 887 330", "24 374 887 280", "24 710 436 430", "474 710 437 430", "24 1164 887 178",
                   "24 1398 436 180", "474 1398 436 180", "24 1592 436 180", "474 1592 436 180", "24 1786 436 180", "474 1786 436 180", "24 1980 436 180" },
      "24 678 887 28", "24 1366 887 28" },

    // Nothing is left between the margins.
    { 30, 3947, { "24 20 0 530", "24 574 0 455", "24 1085 0 550", "24 1649 0 550", "24 2223 0 260",
                  "24 2539 0 180", "24 2733 0 180", "24 2927 0 180", "24 3121 0 180", "24 3315 0 180", "24 3509 0 180", "24 3703 0 180" },
      "24 1053 0 28", "24 2507 0 28" },
};

struct ButtonCase
{
    int width;
    std::vector<std::pair<const char*, const char*>> buttons;
};

const ButtonCase buttonCases[] {
    { 934, { { "hero/createYourProfileButton", "28 268 140 40" }, { "hero/submitYourMusicButton", "178 268 125 40" }, { "hero/heroPrimaryButton", "313 268 158 40" },
             { "featuredTrack/playButton", "244 218 42 40" }, { "featuredTrack/submitATrackButton", "300 218 150 40" },
             { "producerSpotlight/spotlightButton", "20 377 220 38" }, { "artistSpotlight/spotlightButton", "20 377 220 38" },
             { "participation/createEditProfileButton", "22 122 178 38" }, { "participation/reviewLocalDraftsButton", "212 122 178 38" },
             { "participation/submitMusicButton", "402 122 142 38" },
             { "resource0/resourceButton", "18 128 205 38" }, { "resource6/resourceButton", "18 128 205 38" } } },

    { 734, { { "hero/createYourProfileButton", "20 474 208 40" }, { "hero/submitYourMusicButton", "238 474 208 40" }, { "hero/heroPrimaryButton", "456 474 210 40" },
             { "featuredTrack/playButton", "20 400 42 40" }, { "featuredTrack/submitATrackButton", "76 400 150 40" },
             { "producerSpotlight/spotlightButton", "20 497 220 38" }, { "artistSpotlight/spotlightButton", "20 497 220 38" },
             { "participation/createEditProfileButton", "20 120 646 36" }, { "participation/reviewLocalDraftsButton", "20 164 646 36" },
             { "participation/submitMusicButton", "20 208 646 36" },
             { "resource0/resourceButton", "18 128 205 38" }, { "resource6/resourceButton", "18 128 205 38" } } },

    { 808, { { "hero/createYourProfileButton", "28 268 140 40" }, { "hero/submitYourMusicButton", "178 268 125 40" }, { "hero/heroPrimaryButton", "313 268 158 40" },
             { "featuredTrack/playButton", "244 218 42 40" }, { "featuredTrack/submitATrackButton", "300 218 150 40" },
             { "producerSpotlight/spotlightButton", "20 377 220 38" }, { "participation/createEditProfileButton", "22 122 178 38" },
             { "participation/reviewLocalDraftsButton", "212 122 178 38" }, { "participation/submitMusicButton", "402 122 142 38" } } },

    { 807, { { "hero/createYourProfileButton", "20 474 233 40" }, { "hero/submitYourMusicButton", "263 474 233 40" }, { "hero/heroPrimaryButton", "506 474 233 40" },
             { "featuredTrack/playButton", "20 400 42 40" }, { "featuredTrack/submitATrackButton", "76 400 150 40" },
             { "producerSpotlight/spotlightButton", "20 497 220 38" }, { "participation/createEditProfileButton", "20 120 719 36" },
             { "participation/reviewLocalDraftsButton", "20 164 719 36" }, { "participation/submitMusicButton", "20 208 719 36" } } },

    // So narrow that buttons take what there is.
    { 248, { { "hero/createYourProfileButton", "20 474 46 40" }, { "hero/submitYourMusicButton", "76 474 46 40" }, { "hero/heroPrimaryButton", "132 474 48 40" },
             { "producerSpotlight/spotlightButton", "20 497 160 38" }, { "resource0/resourceButton", "18 128 164 38" } } },
};
}

//==============================================================================
TEST (CommunityLayout, EachSectionHasItsBounds)
{
    for (const auto& expected : pageCases)
    {
        SCOPED_TRACE (expected.width);
        ExperienceScene scene (expected.width);

        for (size_t i = 0; i < std::size (sectionIds); ++i)
            EXPECT_EQ (scene.child (sectionIds[i]).getBounds().toString(), expected.sections[i]) << sectionIds[i];

        const CommunityLayout layout (expected.width, 7);
        EXPECT_EQ (layout.spotlightsHeading.toString(), expected.spotlightsHeading);
        EXPECT_EQ (layout.resourcesHeading.toString(), expected.resourcesHeading);
    }
}

TEST (CommunityLayout, EachButtonHasItsBounds)
{
    for (const auto& expected : buttonCases)
    {
        SCOPED_TRACE (expected.width);
        ExperienceScene scene (expected.width);

        for (const auto& [path, bounds] : expected.buttons)
            EXPECT_EQ (scene.button (path).getBounds().toString(), bounds) << path;
    }
}

TEST (CommunityLayout, At808TheLayoutIsWideAndAt807Narrow)
{
    EXPECT_EQ (CommunityLayout (808, 7).hero, Bounds (24, 20, 760, 330));
    EXPECT_EQ (CommunityLayout (807, 7).hero, Bounds (24, 20, 759, 530));
    EXPECT_EQ (CommunityLayout (808, 7).artistSpotlight.getY(), CommunityLayout (808, 7).producerSpotlight.getY());
    EXPECT_GT (CommunityLayout (807, 7).artistSpotlight.getY(), CommunityLayout (807, 7).producerSpotlight.getBottom());
}

TEST (CommunityLayout, TheHeightFollowsFromTheWidth)
{
    ExperienceScene scene;

    for (const auto& expected : pageCases)
        EXPECT_EQ (scene.experience->heightForWidth (expected.width), expected.height) << expected.width;

    EXPECT_EQ (scene.experience->heightForWidth (0), 3947);
}

TEST (CommunityLayout, TheHeightCountsTheRowsOfTheResources)
{
    const std::pair<int, int> wide[] { { 0, 1462 }, { 1, 1642 }, { 2, 1642 }, { 3, 1836 }, { 7, 2224 }, { 8, 2224 } };
    const std::pair<int, int> narrow[] { { 0, 2603 }, { 1, 2783 }, { 2, 2977 }, { 7, 3947 } };

    for (const auto& [count, height] : wide)
        EXPECT_EQ (CommunityLayout (808, count).height, height) << count;

    for (const auto& [count, height] : narrow)
        EXPECT_EQ (CommunityLayout (807, count).height, height) << count;
}

//==============================================================================
TEST (CommunityLayout, TheHerosTextStandsBesideOrBelowThePicture)
{
    const CommunityHeroLayout wide (886, 330), narrow (686, 530), low (686, 300);

    EXPECT_FALSE (wide.narrow);
    EXPECT_EQ (wide.card, Bounds (5, 5, 876, 320));
    EXPECT_EQ (wide.picture, wide.card);
    EXPECT_EQ (wide.text, Bounds (29, 29, 443, 272));
    EXPECT_EQ (wide.primaryCaption, Bounds (313, 253, 158, 13));

    EXPECT_TRUE (narrow.narrow);
    EXPECT_EQ (narrow.picture, Bounds (5, 5, 676, 290));
    EXPECT_EQ (narrow.text, Bounds (25, 288, 636, 178));
    EXPECT_EQ (narrow.primaryCaption, Bounds (456, 459, 210, 13));

    EXPECT_EQ (low.text, Bounds (25, 236, 636, 0)) << "never below the buttons";
    EXPECT_TRUE (CommunityHeroLayout (50, 530).primaryCaption.isEmpty()) << "no words above a button without a size";
}

TEST (CommunityLayout, TheTracksBadgeAndTextStandSideBySideOrStacked)
{
    const CommunityTrackLayout wide (886, 280), narrow (686, 455);

    EXPECT_EQ (wide.badge, Bounds (21, 22, 196, 196));
    EXPECT_EQ (wide.text.withHeight (0), Bounds (244, 24, 620, 0));
    EXPECT_EQ (narrow.badge, Bounds (257, 19, 172, 172));
    EXPECT_EQ (narrow.text.withHeight (0), Bounds (20, 205, 646, 0));
}

TEST (CommunityLayout, ASpotlightsWordsStayAboveItsButton)
{
    struct Case
    {
        int width, height;
        const char *picture, *text;
    };

    const Case cases[] {
        { 686, 550, "5 5 676 370", "23 387 640 91" },     // narrow, as tall as its rule wants it
        { 760, 430, "5 5 750 250", "23 267 714 91" },     // wide
        { 759, 430, "5 5 749 261", "23 278 713 91" },     // narrow by its own width in a wide page: the picture yields
        { 436, 430, "5 5 426 261", "23 278 390 91" },
        { 436, 120, "5 5 426 0", "23 17 390 91" },
    };

    for (const auto& expected : cases)
    {
        SCOPED_TRACE (std::to_string (expected.width) + " x " + std::to_string (expected.height));
        const CommunitySpotlightLayout layout (expected.width, expected.height);
        EXPECT_EQ (layout.picture.toString(), expected.picture);
        EXPECT_EQ (layout.text.toString(), expected.text);

        if (expected.height > 200)
            EXPECT_LE (layout.text.getBottom(), layout.button.getY());
    }
}

TEST (CommunityLayout, AResourcesTagEndsWhereItsTextEnds)
{
    const CommunityResourceLayout resource (436, 180);
    EXPECT_EQ (resource.text.withHeight (0), Bounds (23, 18, 390, 0));
    EXPECT_EQ (resource.tag, Bounds (292, 17, 121, 16));
    EXPECT_EQ (resource.tag.getRight(), resource.text.getRight());

    EXPECT_EQ (CommunityResourceLayout (297, 180).tag, Bounds (153, 17, 121, 16)) << "251 pixels of text";
    EXPECT_TRUE (CommunityResourceLayout (296, 180).tag.isEmpty()) << "250 pixels of text";
}

TEST (CommunityLayout, TheParticipationsWordsStandAboveItsButtons)
{
    EXPECT_EQ (CommunityParticipationLayout (886, 178).text, Bounds (27, 22, 832, 100));
    EXPECT_EQ (CommunityParticipationLayout (686, 260).text, Bounds (27, 22, 632, 98));
}
