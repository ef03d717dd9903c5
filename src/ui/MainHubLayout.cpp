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
