#include "ui/ProductGridLayout.h"

namespace
{
constexpr int cardHeight = 380;
constexpr int gap = 16;
constexpr int pitch = cardHeight + gap;
constexpr int firstEdge = 20;   ///< left of the first column and above the first row
constexpr int margins = 24;
constexpr int widthOfColumn = 256;
}

ProductGridLayout::ProductGridLayout (int visibleWidth)
{
    const auto width = juce::jmax (0, visibleWidth);
    columns = juce::jlimit (1, 3, (width - margins) / widthOfColumn);
    cardWidth = juce::jmax (0, (width - columns * gap - margins) / columns);
}

juce::Rectangle<int> ProductGridLayout::cardBounds (int index) const
{
    const auto column = index % columns;
    const auto row = index / columns;
    return { (cardWidth + gap) * column + firstEdge, firstEdge + row * pitch, cardWidth, cardHeight };
}

int ProductGridLayout::contentHeight (int numCards) const
{
    if (numCards <= 0)
        return 0;

    const auto rows = (numCards + columns - 1) / columns;
    return rows * pitch + margins;
}
