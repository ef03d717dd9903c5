#include "ui/MainHubLayout.h"

#include <gtest/gtest.h>

namespace
{
struct Case
{
    int width, height, pill;
    bool pane;
    const char* statusBar;
    const char* sidebar;
    const char* notice;
    const char* page;
    const char* searchBox;
    const char* connectionPill;
    const char* viewport;
    const char* detailPane;   ///< only looked at when the pane is shown
    int contentWidth;
};

const Case cases[] {
    { 1100, 720, 94, false, "0 680 1100 40", "0 0 160 680", "160 60 940 46", "160 106 940 574", "884 15 200 30", "778 17 94 26",
      "160 106 940 574", "", 934 },
    { 1100, 720, 210, true, "0 680 1100 40", "0 0 160 680", "160 60 940 46", "160 106 940 574", "884 15 200 30", "662 17 210 26",
      "160 106 620 574", "780 106 320 574", 614 },
    { 900, 600, 94, false, "0 560 900 40", "0 0 160 560", "160 60 740 46", "160 106 740 454", "684 15 200 30", "578 17 94 26",
      "160 106 740 454", "", 734 },
    { 900, 600, 94, true, "0 560 900 40", "0 0 160 560", "160 60 740 46", "160 106 740 454", "684 15 200 30", "578 17 94 26",
      "160 106 420 454", "580 106 320 454", 414 },
    { 1920, 1080, 94, true, "0 1040 1920 40", "0 0 160 1040", "160 60 1760 46", "160 106 1760 934", "1704 15 200 30", "1598 17 94 26",
      "160 106 1440 934", "1600 106 320 934", 1434 },

    // The page is exactly as wide as the pane, one pixel wider, one narrower. The pill stays centred in too little room.
    { 480, 600, 94, true, "0 560 480 40", "0 0 160 560", "160 60 320 46", "160 106 320 454", "264 15 200 30", "167 17 94 26",
      "160 106 0 454", "160 106 320 454", 0 },
    { 481, 600, 94, true, "0 560 481 40", "0 0 160 560", "160 60 321 46", "160 106 321 454", "265 15 200 30", "168 17 94 26",
      "160 106 1 454", "161 106 320 454", 0 },
    { 479, 600, 94, true, "0 560 479 40", "0 0 160 560", "160 60 319 46", "160 106 319 454", "263 15 200 30", "167 17 94 26",
      "160 106 0 454", "160 106 319 454", 0 },

    // The header has less room than the search box.
    { 300, 600, 94, false, "0 560 300 40", "0 0 160 560", "160 60 140 46", "160 106 140 454", "130 15 200 30", "129 17 94 26",
      "160 106 140 454", "", 134 },
};

std::string textOf (juce::Rectangle<int> bounds)    { return bounds.toString().toStdString(); }
}

TEST (MainHubLayout, PlacesEverythingByTheTable)
{
    for (const auto& c : cases)
    {
        const auto layout = layoutMainHub (c.width, c.height, c.pill, c.pane);
        SCOPED_TRACE (std::to_string (c.width) + " x " + std::to_string (c.height) + (c.pane ? " with pane" : ""));

        EXPECT_EQ (textOf (layout.statusBar), c.statusBar);
        EXPECT_EQ (textOf (layout.sidebar), c.sidebar);
        EXPECT_EQ (textOf (layout.releaseNotice), c.notice);
        EXPECT_EQ (textOf (layout.page), c.page);
        EXPECT_EQ (textOf (layout.searchBox), c.searchBox);
        EXPECT_EQ (textOf (layout.connectionPill), c.connectionPill);
        EXPECT_EQ (textOf (layout.libraryViewport), c.viewport);
        EXPECT_EQ (layout.libraryContentWidth, c.contentWidth);

        if (c.pane)
            EXPECT_EQ (textOf (layout.detailPane), c.detailPane);
    }
}

TEST (MainHubLayout, APageNarrowerThanThePaneIsAllPane)
{
    for (const int width : { 161, 200, 300, 479 })
    {
        const auto layout = layoutMainHub (width, 600, 94, true);
        EXPECT_EQ (textOf (layout.detailPane), textOf ({ 160, 106, width - 160, 454 })) << width;
        EXPECT_EQ (layout.libraryViewport.getWidth(), 0) << width;
        EXPECT_EQ (layout.libraryContentWidth, 0) << width;
    }
}

TEST (MainHubLayout, NoSizeIsTooSmall)
{
    for (const int side : { 0, 1, 40, 128, 160, 176, 192 })
        for (const bool pane : { false, true })
        {
            const auto layout = layoutMainHub (side, side, 94, pane);
            SCOPED_TRACE (side);

            for (const auto& bounds : { layout.page, layout.libraryViewport, layout.detailPane, layout.releaseNotice, layout.sidebar,
                                        layout.statusBar })
            {
                EXPECT_GE (bounds.getWidth(), 0);
                EXPECT_GE (bounds.getHeight(), 0);
            }

            EXPECT_GE (layout.libraryContentWidth, 0);
        }
}

TEST (MainHubLayout, TheHeaderGivesThePillWhatTheSearchBoxLeaves)
{
    // From x 176 to 884 less the gap of 12 there are 696 pixels; a wider pill is centred there at its own width.
    EXPECT_EQ (textOf (layoutMainHub (1100, 720, 696, false).connectionPill), "176 17 696 26");
    EXPECT_EQ (textOf (layoutMainHub (1100, 720, 796, false).connectionPill), "126 17 796 26");
}
