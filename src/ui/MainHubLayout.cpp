#include "ui/MainHubLayout.h"

static void layoutHeader (MainHubLayout& layout, int width, int pillWidth)
{
    juce::Rectangle<int> row (176, 0, juce::jmax (width - 192, 0), MainHubLayout::headerHeight);

    const auto searchSlot = row.removeFromRight (juce::jmin (200, row.getWidth()));
    layout.searchBox = searchSlot.withSizeKeepingCentre (200, 30);

    row.removeFromRight (juce::jmin (12, row.getWidth()));
    const auto pillSlot = row.removeFromRight (juce::jmin (pillWidth, row.getWidth()));
    layout.connectionPill = pillSlot.withSizeKeepingCentre (pillWidth, 26);
}

MainHubLayout layoutMainHub (int width, int height, int pillWidth, bool showsDetailPane)
{
    constexpr int left = MainHubLayout::sidebarWidth;
    constexpr int top = MainHubLayout::pageTop;
    const int pageWidth = juce::jmax (width - left, 0);
    const int pageHeight = juce::jmax (height - top - MainHubLayout::statusBarHeight, 0);

    MainHubLayout layout;
    layout.statusBar = { 0, height - MainHubLayout::statusBarHeight, width, MainHubLayout::statusBarHeight };
    layout.sidebar = { 0, 0, left, juce::jmax (height - MainHubLayout::statusBarHeight, 0) };
    layout.releaseNotice = { left, MainHubLayout::headerHeight, pageWidth, MainHubLayout::noticeHeight };
    layout.page = { left, top, pageWidth, pageHeight };
    layoutHeader (layout, width, pillWidth);

    auto library = layout.page;

    if (showsDetailPane)
        layout.detailPane = library.removeFromRight (juce::jmin (pageWidth, MainHubLayout::detailPaneWidth));

    layout.libraryViewport = library;
    layout.libraryContentWidth = juce::jmax (library.getWidth() - MainHubLayout::scrollBarThickness, 0);
    return layout;
}

LibraryColumnLayout layoutLibraryColumn (int width, int gridHeight, int galleryHeight, int pageHeight)
{
    const int bannerHeight = juce::jlimit (180, 360, juce::roundToInt (juce::jmax (width - 40, 0) * 0.375));
    int y = 0;

    const auto take = [&y, width] (int height, int gapAfter)
    {
        const juce::Rectangle<int> row (0, y, width, height);
        y += height + gapAfter;
        return row;
    };

    LibraryColumnLayout layout;
    layout.productGrid = take (gridHeight, 8);
    layout.campaignBanner = take (bannerHeight, 8);
    layout.soundPacksNotice = take (320, 8);
    layout.galleryHeader = take (28, 8);
    layout.whatsIncludedGallery = take (galleryHeight, 0);
    layout.height = juce::jmax (y, pageHeight);
    return layout;
}
