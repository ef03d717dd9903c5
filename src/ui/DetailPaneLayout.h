#pragma once

#include "catalogue/ProductCardModel.h"

#include <juce_gui_basics/juce_gui_basics.h>
#include <vector>

/** What is known of a product, one line each, as the detail pane lists it. Pure. */
std::vector<juce::String> factLinesFor (const ProductCardModel&);

/** Where the detail pane draws each thing, from its top downwards. Pure; shared by painting and by placing what follows. */
struct DetailPaneLayout
{
    struct Note
    {
        /** How many lines of the summary stand whole above this y, at most 3. */
        int summaryLinesAbove (int y) const;

        juce::Rectangle<int> title, summary;
    };

    DetailPaneLayout (const ProductCardModel&, int paneWidth);

    juce::Rectangle<int> pictureWell, picture, name, vendor, upperRule;
    juce::Rectangle<int> description;                  ///< empty without a description
    std::vector<juce::String> factLines;
    std::vector<juce::Rectangle<int>> facts;           ///< one for each line
    juce::Rectangle<int> notesBox, notesHeading;       ///< empty without release notes
    std::vector<Note> notes;                           ///< one for each release note
    juce::Rectangle<int> lowerRule, galleryHeading;
    int galleryTop = 0;                                ///< where what follows the heading begins
};

/** Where the buttons of the detail pane stand. Pure. */
struct DetailPaneButtons
{
    DetailPaneButtons (juce::Rectangle<int> paneBounds, bool showsReinstall);

    juce::Rectangle<int> close, primary, reinstall, reveal;   ///< `reinstall` is empty when it is not shown
    int detailsBottom = 0;                                    ///< what is drawn above the buttons ends here
};
