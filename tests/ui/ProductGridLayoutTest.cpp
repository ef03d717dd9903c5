#include "ui/ProductGridLayout.h"

#include <gtest/gtest.h>

namespace
{
using Bounds = juce::Rectangle<int>;

std::string textOf (Bounds bounds)    { return bounds.toString().toStdString(); }
}

TEST (ProductGridLayout, TheWidthGivesOneToThreeColumns)
{
    struct Case
    {
        int width, columns, cardWidth;
    };

    for (const auto& c : { Case { -5, 1, 0 },
                           { 0, 1, 0 },
                           { 39, 1, 0 },
                           { 40, 1, 0 },
                           { 41, 1, 1 },
                           { 279, 1, 239 },
                           { 280, 1, 240 },
                           { 535, 1, 495 },
                           { 536, 2, 240 },
                           { 537, 2, 240 },
                           { 791, 2, 367 },
                           { 792, 3, 240 },
                           { 934, 3, 287 },
                           { 5000, 3, 1642 } })
    {
        const ProductGridLayout layout (c.width);
        EXPECT_EQ (layout.columns, c.columns) << c.width;
        EXPECT_EQ (layout.cardWidth, c.cardWidth) << c.width;
    }
}

TEST (ProductGridLayout, CardsStandRowByRow)
{
    const ProductGridLayout three (934);

    EXPECT_EQ (textOf (three.cardBounds (0)), "20 20 287 380");
    EXPECT_EQ (textOf (three.cardBounds (1)), "323 20 287 380");
    EXPECT_EQ (textOf (three.cardBounds (2)), "626 20 287 380");
    EXPECT_EQ (textOf (three.cardBounds (3)), "20 416 287 380");
    EXPECT_EQ (textOf (three.cardBounds (7)), "323 812 287 380");

    const ProductGridLayout two (614);
    EXPECT_EQ (textOf (two.cardBounds (1)), "315 20 279 380");
    EXPECT_EQ (textOf (two.cardBounds (2)), "20 416 279 380");

    const ProductGridLayout one (280);
    EXPECT_EQ (textOf (one.cardBounds (0)), "20 20 240 380");
    EXPECT_EQ (textOf (one.cardBounds (9)), "20 3584 240 380");
}

TEST (ProductGridLayout, TheHeightCountsRowsAndMargins)
{
    struct Case
    {
        int width, cards, height;
    };

    for (const auto& c : { Case { 934, 0, 0 },
                           { 934, 1, 420 },
                           { 934, 3, 420 },
                           { 934, 4, 816 },
                           { 934, 5, 816 },
                           { 934, 6, 816 },
                           { 934, 7, 1212 },
                           { 614, 5, 1212 },
                           { 280, 5, 2004 } })
        EXPECT_EQ (ProductGridLayout (c.width).contentHeight (c.cards), c.height) << c.width << " " << c.cards;
}

TEST (ProductGridLayout, FiveCardsInThreeColumnsNeedTwoRowsOf816)
{
    const ProductGridLayout layout (792);

    EXPECT_EQ (layout.columns, 3);
    EXPECT_EQ (layout.contentHeight (5), 816);
    EXPECT_EQ (layout.cardBounds (4).getY(), 416);
}
