#include "AboutScene.h"
#include "HubRun.h"
#include "HubWorld.h"

using namespace zorva::test;

namespace
{
struct Case
{
    int width, height;                  ///< of the page
    std::vector<const char*> bounds;    ///< of each link
};

const Case cases[] {
    // The page in a window of 1100 x 720, of 900 x 600, whose end cuts the second row, and of 1600 x 1000.
    { 940, 574, { "220 401 250 22", "470 401 250 22", "220 427 250 22", "470 427 250 22" } },
    { 740, 454, { "120 401 250 22", "370 401 250 22", "120 427 250 3", "370 427 250 3" } },
    { 1440, 854, { "470 401 250 22", "720 401 250 22", "470 427 250 22", "720 427 250 22" } },

    // The column at its widest, one pixel narrower, where the right half has the odd pixel, and wider than any screen.
    { 548, 574, { "24 401 250 22", "274 401 250 22", "24 427 250 22", "274 427 250 22" } },
    { 547, 574, { "24 401 249 22", "273 401 250 22", "24 427 249 22", "273 427 250 22" } },
    { 549, 574, { "24 401 250 22", "274 401 250 22", "24 427 250 22", "274 427 250 22" } },
    { 9001, 574, { "4250 401 250 22", "4500 401 250 22", "4250 427 250 22", "4500 427 250 22" } },

    // Low: both rows whole, the second cut by one, gone, the first cut, gone.
    { 940, 473, { "220 401 250 22", "470 401 250 22", "220 427 250 22", "470 427 250 22" } },
    { 940, 472, { "220 401 250 22", "470 401 250 22", "220 427 250 21", "470 427 250 21" } },
    { 940, 451, { "220 401 250 22", "470 401 250 22", "220 427 250 0", "470 427 250 0" } },
    { 940, 440, { "220 401 250 15", "470 401 250 15", "220 416 250 0", "470 416 250 0" } },
    { 940, 425, { "220 401 250 0", "470 401 250 0", "220 401 250 0", "470 401 250 0" } },

    // No column.
    { 49, 574, { "24 401 0 22", "24 401 1 22", "24 427 0 22", "24 427 1 22" } },
    { 48, 574, { "24 401 0 22", "24 401 0 22", "24 427 0 22", "24 427 0 22" } },
};

std::vector<std::string> boundsOf (AboutScene& scene)
{
    std::vector<std::string> bounds;

    for (const auto* id : aboutLinks)
        bounds.push_back (scene.link (id).getBounds().toString().toStdString());

    return bounds;
}
}

//==============================================================================
TEST (AboutPageLayout, TheLinksStandInTwoRowsOfTheColumn)
{
    for (const auto& testCase : cases)
    {
        SCOPED_TRACE (std::to_string (testCase.width) + " x " + std::to_string (testCase.height));
        AboutScene scene (testCase.width, testCase.height);
        EXPECT_EQ (boundsOf (scene), std::vector<std::string> (testCase.bounds.begin(), testCase.bounds.end()));
    }
}

TEST (AboutPageLayout, AWindowNarrowerThanItsMarginsLeavesNoColumn)
{
    for (const int width : { 47, 24, 1 })
    {
        SCOPED_TRACE (width);
        AboutScene scene (width, 574);
        EXPECT_EQ (pictureOf (scene.page).getWidth(), width);

        for (const auto* id : aboutLinks)
            EXPECT_EQ (scene.link (id).getWidth(), 0) << id;
    }
}

TEST (AboutPageLayout, InAVeryWideWindowTheColumnStaysCentred)
{
    AboutScene scene (9000, 574);
    const auto left = scene.link ("websiteLink").getBounds(), right = scene.link ("bugLink").getBounds();
    EXPECT_EQ (left.getWidth() + right.getWidth(), 500);
    EXPECT_EQ (left.getX(), 9000 - right.getRight());
}

TEST (AboutPageLayout, WithNoHeightThereAreNoLinks)
{
    AboutScene scene (940, 1);

    for (const auto* id : aboutLinks)
        EXPECT_EQ (scene.link (id).getHeight(), 0) << id;
}

TEST (AboutPageLayout, FollowsTheWindow)
{
    stayOffline();
    HubRun run (Sidebar::Tab::about);

    for (const auto& [width, height, page, first] : { std::tuple { 1100, 720, "160 106 940 574", "380 507 250 22" },
                                                      std::tuple { 900, 600, "160 106 740 454", "280 507 250 22" },
                                                      std::tuple { 1600, 1000, "160 106 1440 854", "630 507 250 22" } })
    {
        SCOPED_TRACE (width);
        run.hub->setSize (width, height);
        auto& about = below (*run.hub, "aboutPage");
        auto& link = below (about, "websiteLink");
        EXPECT_TRUE (about.isShowing());
        EXPECT_EQ (about.getBounds().toString(), page);
        EXPECT_EQ (run.hub->getLocalArea (&link, link.getLocalBounds()).toString(), first);
    }
}
