#include "SettingsPageScene.h"
#include "ui/MainHubLayout.h"

using namespace zorva::test;
using Scene = SettingsScene;

namespace
{
/** In the order of the column. */
const char* const ids[] { "aiSectionLabel", "apiKeyEditor", "saveKeyButton", "testKeyButton", "deleteKeyButton", "keyStatusLabel", "storageLabel",
                          "billingLabel", "manifestSectionLabel", "manifestUrlEditor", "resetManifestButton", "manifestNoticeLabel",
                          "vaultSectionLabel", "vaultPathLabel", "openVaultButton", "changeVaultButton", "advancedButton",
                          "clearCacheToggle", "clearAllCacheButton", "checkUpdatesButton" };

constexpr size_t firstAdvanced = 17;

struct Case
{
    int width, height;
    std::vector<const char*> bounds;    ///< of each child, by ids
};

const Case cases[] {
    // The page in a window of 1100 x 720: everything has its room.
    { 940, 574, { "270 24 400 16", "270 46 400 30", "270 84 128 28", "406 84 128 28", "542 84 128 28", "270 118 400 18", "270 136 400 16",
                  "270 152 400 32", "270 206 400 16", "270 228 400 30", "270 266 130 26", "270 298 400 14",
                  "270 340 400 16", "270 362 400 18", "270 388 110 26", "388 388 110 26", "270 442 160 26",
                  "270 480 400 24", "270 516 130 26", "408 516 200 26" } },

    // In a window of 900 x 600 the column ends within the gap above the advanced part.
    { 740, 454, { "170 24 400 16", "170 46 400 30", "170 84 128 28", "306 84 128 28", "442 84 128 28", "170 118 400 18", "170 136 400 16",
                  "170 152 400 32", "170 206 400 16", "170 228 400 30", "170 266 130 26", "170 298 400 14",
                  "170 340 400 16", "170 362 400 18", "170 388 110 26", "288 388 110 26", "170 430 160 0",
                  "170 430 400 0", "170 430 130 0", "308 430 200 0" } },

    // Exactly as wide as the widest column, and one pixel less.
    { 448, 574, { "24 24 400 16", "24 46 400 30", "24 84 128 28", "160 84 128 28", "296 84 128 28", "24 118 400 18", "24 136 400 16",
                  "24 152 400 32", "24 206 400 16", "24 228 400 30", "24 266 130 26", "24 298 400 14",
                  "24 340 400 16", "24 362 400 18", "24 388 110 26", "142 388 110 26", "24 442 160 26",
                  "24 480 400 24", "24 516 130 26", "162 516 200 26" } },
    { 447, 574, { "24 24 399 16", "24 46 399 30", "24 84 127 28", "159 84 127 28", "294 84 129 28", "24 118 399 18", "24 136 399 16",
                  "24 152 399 32", "24 206 399 16", "24 228 399 30", "24 266 130 26", "24 298 399 14",
                  "24 340 399 16", "24 362 399 18", "24 388 110 26", "142 388 110 26", "24 442 160 26",
                  "24 480 399 24", "24 516 130 26", "162 516 200 26" } },

    // The last of a row gets what the others leave.
    { 200, 574, { "24 24 152 16", "24 46 152 30", "24 84 45 28", "77 84 45 28", "130 84 46 28", "24 118 152 18", "24 136 152 16",
                  "24 152 152 32", "24 206 152 16", "24 228 152 30", "24 266 130 26", "24 298 152 14",
                  "24 340 152 16", "24 362 152 18", "24 388 110 26", "142 388 34 26", "24 442 152 26",
                  "24 480 152 24", "24 516 130 26", "162 516 14 26" } },

    // A row is cut where the column ends, and what follows has no height left.
    { 940, 90, { "270 24 400 16", "270 46 400 20", "270 66 128 0", "406 66 128 0", "542 66 128 0", "270 66 400 0", "270 66 400 0",
                 "270 66 400 0", "270 66 400 0", "270 66 400 0", "270 66 130 0", "270 66 400 0",
                 "270 66 400 0", "270 66 400 0", "270 66 110 0", "388 66 110 0", "270 66 160 0",
                 "270 66 400 0", "270 66 130 0", "408 66 200 0" } },
    { 940, 534, { "270 24 400 16", "270 46 400 30", "270 84 128 28", "406 84 128 28", "542 84 128 28", "270 118 400 18", "270 136 400 16",
                  "270 152 400 32", "270 206 400 16", "270 228 400 30", "270 266 130 26", "270 298 400 14",
                  "270 340 400 16", "270 362 400 18", "270 388 110 26", "388 388 110 26", "270 442 160 26",
                  "270 480 400 24", "270 510 130 0", "408 510 200 0" } },
};

std::string boundsOf (Scene& scene, size_t index)    { return scene.child (ids[index]).getBounds().toString().toStdString(); }
}

//==============================================================================
TEST (SettingsPageLayout, PlacesEverythingByTheTable)
{
    for (const auto& c : cases)
    {
        SCOPED_TRACE (std::to_string (c.width) + " x " + std::to_string (c.height));
        Scene scene;
        scene.show();
        scene.click ("advancedButton");
        scene.page->setSize (c.width, c.height);
        ASSERT_EQ (c.bounds.size(), std::size (ids));

        for (size_t i = 0; i < std::size (ids); ++i)
            EXPECT_EQ (boundsOf (scene, i), c.bounds[i]) << ids[i];
    }
}

TEST (SettingsPageLayout, HidingTheAdvancedPartMovesNothingElse)
{
    for (const auto& c : cases)
    {
        SCOPED_TRACE (std::to_string (c.width) + " x " + std::to_string (c.height));
        Scene scene;
        scene.show();
        scene.page->setSize (c.width, c.height);

        for (size_t i = 0; i < firstAdvanced; ++i)
            EXPECT_EQ (boundsOf (scene, i), c.bounds[i]) << ids[i];
    }
}

TEST (SettingsPageLayout, TheTableCoversThePageAtBothWindowSizes)
{
    for (const auto& [windowSize, index] : { std::pair (juce::Point<int> (1100, 720), 0), std::pair (juce::Point<int> (900, 600), 1) })
    {
        const auto page = layoutMainHub (windowSize.x, windowSize.y, 94, false).page;
        EXPECT_EQ (page.getWidth(), cases[index].width);
        EXPECT_EQ (page.getHeight(), cases[index].height);
    }
}

TEST (SettingsPageLayout, ShowingTheAdvancedPartLaysThePageOutAnew)
{
    Scene scene;
    scene.show();
    scene.click ("advancedButton");

    for (size_t i = firstAdvanced; i < std::size (ids); ++i)
        EXPECT_EQ (boundsOf (scene, i), cases[0].bounds[i]) << ids[i];
}

TEST (SettingsPageLayout, TheTextsFitIntoTheColumn)
{
    Scene scene;
    scene.show();

    for (auto* label : allBelow<juce::Label> (*scene.page))
    {
        if (label->getComponentID() == "vaultPathLabel")
            continue;   // whose length is not the page's

        for (const auto& text : juce::StringArray::fromLines (label->getText()))
            EXPECT_LE (widthOf (label->getFont(), text), label->getWidth()) << label->getComponentID() << ": " << text;
    }
}

TEST (SettingsPageLayout, NoSizeIsTooSmall)
{
    for (const int side : { 0, 1, 23, 24, 47, 48, 49, 64, 70 })
    {
        Scene scene;
        scene.show();
        scene.click ("advancedButton");
        scene.page->setSize (side, side);
        SCOPED_TRACE (side);

        for (const auto* id : ids)
        {
            EXPECT_GE (scene.child (id).getWidth(), 0) << id;
            EXPECT_GE (scene.child (id).getHeight(), 0) << id;
        }
    }
}
