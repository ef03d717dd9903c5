#pragma once

#include <juce_graphics/juce_graphics.h>

/** Where everything of the main window lies, in logical pixels. */
struct MainHubLayout
{
    static constexpr int sidebarWidth = 160;
    static constexpr int headerHeight = 60;
    static constexpr int noticeHeight = 46;
    static constexpr int statusBarHeight = 40;
    static constexpr int pageTop = headerHeight + noticeHeight;
    static constexpr int detailPaneWidth = 320;
    static constexpr int scrollBarThickness = 6;

    juce::Rectangle<int> statusBar, sidebar, releaseNotice, page, searchBox, connectionPill, libraryViewport, detailPane;

    /** The width of what scrolls in the library: always without the scroll bar, shown or not. */
    int libraryContentWidth = 0;
};

/** Where what scrolls in the library lies, one below the other over the whole width. */
struct LibraryColumnLayout
{
    juce::Rectangle<int> productGrid, campaignBanner, soundPacksNotice, galleryHeader, whatsIncludedGallery;

    /** The height of all, at least that of the page. */
    int height = 0;
};

/** The column for a width without the scroll bar. Pure. */
LibraryColumnLayout layoutLibraryColumn (int width, int gridHeight, int galleryHeight, int pageHeight);

/** The layout of a window content of this size. pillWidth is the connection pill's preferred width; with the detail pane shown the
    library shares the page with it. Pure. */
MainHubLayout layoutMainHub (int width, int height, int pillWidth, bool showsDetailPane);
