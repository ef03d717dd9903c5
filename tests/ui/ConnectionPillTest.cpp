#include "Painting.h"
#include "support/GuiHarness.h"
#include "support/Text.h"
#include "ui/ConnectionPill.h"
#include "ui/HubPalette.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
const char* const offlineText = "Offline — updates unavailable";

juce::Image picture (int width, const char* text, bool online)
{
    return painted (width, 26, [&] (juce::Graphics& g)
    {
        const juce::Rectangle<float> bounds (0.0f, 0.0f, (float) width, 26.0f);
        g.setColour (HubPalette::raised);
        g.fillRoundedRectangle (bounds, 12.0f);
        g.setColour (HubPalette::border);
        g.drawRoundedRectangle (bounds.reduced (0.5f), 12.0f, 1.0f);
        g.setColour (online ? HubPalette::success : HubPalette::warning);
        g.fillEllipse (10.0f, 8.0f, 10.0f, 10.0f);
        line (g, utf8 (text), { 26, 0, std::max (width - 36, 0), 26 }, plain (12.0f), online ? HubPalette::textPrimary : HubPalette::textSecondary);
    });
}

int preferredWidthFor (const char* text)    { return widthOf (plain (12.0f), utf8 (text)) + 36; }
}

TEST (ConnectionPill, StartsOffline)
{
    ConnectionPill pill;
    EXPECT_EQ (pill.getPreferredWidth(), preferredWidthFor (offlineText));

    pill.setSize (pill.getPreferredWidth(), 26);
    EXPECT_EQ (difference (pictureOf (pill), picture (pill.getWidth(), offlineText, false)), "");
}

TEST (ConnectionPill, TextAndWidthFollowTheConnectionAtOnce)
{
    ConnectionPill pill;
    pill.setOnline (true);
    EXPECT_EQ (pill.getPreferredWidth(), preferredWidthFor ("Connected"));

    pill.setSize (pill.getPreferredWidth(), 26);
    EXPECT_EQ (difference (pictureOf (pill), picture (pill.getWidth(), "Connected", true)), "");

    pill.setOnline (false);
    EXPECT_EQ (pill.getPreferredWidth(), preferredWidthFor (offlineText));
    EXPECT_EQ (difference (pictureOf (pill), picture (pill.getWidth(), offlineText, false)), "");
}

TEST (ConnectionPill, ANarrowPillEndsItsTextInAnEllipsis)
{
    ConnectionPill pill;

    for (const int width : { 120, 60, 36, 20 })
    {
        pill.setSize (width, 26);
        EXPECT_EQ (difference (pictureOf (pill), picture (width, offlineText, false)), "") << width;
    }
}

TEST (ConnectionPill, ItsDotIsCentredAtOtherHeights)
{
    ConnectionPill pill;
    pill.setSize (200, 60);
    const auto image = pictureOf (pill);

    EXPECT_EQ (pixel (image, 15, 30), hex (HubPalette::warning));
    EXPECT_EQ (pixel (image, 15, 23), hex (HubPalette::raised));
    EXPECT_EQ (pixel (image, 15, 37), hex (HubPalette::raised));
}

TEST (ConnectionPill, IgnoresTheMouse)
{
    ConnectionPill pill;
    bool own = true, childrens = true;
    pill.getInterceptsMouseClicks (own, childrens);

    EXPECT_FALSE (own);
    EXPECT_FALSE (childrens);
}

TEST (ConnectionPill, AChangeIsRepainted)
{
    ConnectionPill pill;
    pill.setSize (200, 26);
    pill.setVisible (true);
    const RepaintWatch repaints (pill);

    pill.setOnline (true);
    EXPECT_EQ (repaints.count(), 1);
}

TEST (ConnectionPill, TextWidthsAreRoundedUpToWholePixels)
{
    for (const auto& font : { plain (11.0f), plain (12.0f), bold (10.0f) })
        for (const char* text : { "", "i", "Vault: ", "Connected", offlineText })
        {
            const auto exact = juce::GlyphArrangement::getStringWidth (font, utf8 (text));
            EXPECT_EQ (connectionPillTextWidth (font, utf8 (text)), (int) std::ceil (exact)) << text;
        }
}
