#include "ui/SettingsPageLayout.h"

namespace
{
constexpr int margin = 24, widestColumn = 400, buttonGap = 8;

/** Hands out rows from the top of a column. */
struct Rows
{
    juce::Rectangle<int> take (int height, int gapAfter)
    {
        const auto row = column.removeFromTop (height);
        column.removeFromTop (gapAfter);
        return row;
    }

    juce::Rectangle<int> column;
};

juce::Rectangle<int> takeButton (juce::Rectangle<int>& row, int widest)
{
    const auto button = row.removeFromLeft (juce::jmin (widest, row.getWidth()));
    row.removeFromLeft (buttonGap);
    return button;
}
}

SettingsPageLayout::SettingsPageLayout (juce::Rectangle<int> page)
{
    const auto content = page.reduced (margin);
    const int width = juce::jmin (content.getWidth(), widestColumn);
    Rows rows { content.withSizeKeepingCentre (width, content.getHeight()) };

    aiSection = rows.take (16, 6);
    apiKey = rows.take (30, 8);
    auto keyButtons = rows.take (28, 6);
    const int keyButtonWidth = juce::jmax ((width - 2 * buttonGap) / 3, 0);
    saveKey = takeButton (keyButtons, keyButtonWidth);
    testKey = takeButton (keyButtons, keyButtonWidth);
    deleteKey = keyButtons;
    keyStatus = rows.take (18, 0);
    storage = rows.take (16, 0);
    billing = rows.take (32, 22);

    manifestSection = rows.take (16, 6);
    manifestUrl = rows.take (30, 8);
    auto resetRow = rows.take (26, 6);
    resetManifest = takeButton (resetRow, 130);
    manifestNotice = rows.take (14, 28);

    vaultSection = rows.take (16, 6);
    vaultPath = rows.take (18, 8);
    auto vaultButtons = rows.take (26, 28);
    openVault = takeButton (vaultButtons, 110);
    changeVault = takeButton (vaultButtons, 110);

    auto advancedRow = rows.take (26, 12);
    advanced = takeButton (advancedRow, 160);
    clearCache = rows.take (24, 12);
    auto cacheButtons = rows.take (26, 0);
    clearAllCache = takeButton (cacheButtons, 130);
    checkUpdates = takeButton (cacheButtons, 200);
}
