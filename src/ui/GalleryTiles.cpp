#include "ui/GalleryTiles.h"

#include "ui/HubPalette.h"
#include "ui/TextPainting.h"

#include <cmath>
#include <vector>

namespace
{
constexpr int padsPerSide = 4, waveformSteps = 48;

/** The plate that the samplers are drawn on, and what is left for them inside it. */
juce::Rectangle<float> drawPlate (juce::Graphics& g, juce::Rectangle<float> tile)
{
    const juce::Rectangle<float> plate (tile.getX() + 9.0f, tile.getY() + 9.0f, juce::jmax (tile.getWidth() - 18.0f, 0.0f),
                                        juce::jmax (tile.getHeight() - 15.0f, 0.0f));
    g.setColour (HubPalette::accent.withAlpha (0.1f));
    g.fillRoundedRectangle (plate, 4.0f);
    g.setColour (HubPalette::accent.withAlpha (0.55f));
    g.drawRoundedRectangle (plate.reduced (0.5f), 4.0f, 1.0f);
    return plate.reduced (8.0f, 7.0f);
}

/** A glyph is drawn in a square from -1 to 1 in both directions, y downwards. */
using Glyph = juce::Path;

Glyph polyline (const std::vector<juce::Point<float>>& points)
{
    Glyph glyph;
    glyph.startNewSubPath (points.front());

    for (const auto& point : points)
        glyph.lineTo (point);

    return glyph;
}

Glyph equaliser()
{
    Glyph glyph;
    glyph.startNewSubPath (-1.0f, 0.25f);
    glyph.cubicTo (-0.65f, 0.25f, -0.6f, -0.6f, -0.3f, -0.6f);
    glyph.cubicTo (0.0f, -0.6f, 0.05f, 0.6f, 0.4f, 0.6f);
    glyph.cubicTo (0.7f, 0.6f, 0.7f, -0.1f, 1.0f, -0.1f);
    return glyph;
}

Glyph tape()
{
    Glyph glyph;

    for (const auto x : { -0.55f, 0.55f })
    {
        glyph.addEllipse (x - 0.38f, -0.48f, 0.76f, 0.76f);
        glyph.addEllipse (x - 0.1f, -0.2f, 0.2f, 0.2f);
    }

    glyph.startNewSubPath (-0.55f, 0.5f);
    glyph.lineTo (0.55f, 0.5f);
    return glyph;
}

Glyph delay()
{
    Glyph glyph;

    for (int i = 0; i < 5; ++i)
    {
        const auto x = -0.8f + 0.4f * (float) i;
        const auto half = 0.7f * std::pow (0.68f, (float) i);
        glyph.startNewSubPath (x, -half);
        glyph.lineTo (x, half);
    }

    return glyph;
}

Glyph reverb()
{
    Glyph glyph;

    for (const auto radius : { 0.35f, 0.7f, 1.05f })
        glyph.addCentredArc (-0.55f, 0.0f, radius, radius, 0.0f, juce::MathConstants<float>::pi * 0.25f,
                             juce::MathConstants<float>::pi * 0.75f, true);

    glyph.addEllipse (-0.66f, -0.11f, 0.22f, 0.22f);
    return glyph;
}

Glyph groove()
{
    std::vector<juce::Point<float>> points;

    for (int i = 0; i < 9; ++i)
        points.emplace_back (-1.0f + 0.25f * (float) i, i % 2 == 0 ? 0.4f : (i % 4 == 1 ? -0.65f : -0.2f));

    return polyline (points);
}

Glyph glyphOf (int effect)
{
    switch (effect)
    {
        case 0:     return equaliser();
        case 1:     return tape();
        case 2:     return polyline ({ { -1.0f, 0.65f }, { -0.35f, 0.0f }, { -0.35f, -0.25f }, { 0.35f, -0.45f }, { 0.35f, -0.6f },
                                       { 1.0f, -0.6f } });
        case 3:     return polyline ({ { -1.0f, 0.65f }, { -0.1f, -0.25f }, { -0.1f, -0.4f }, { 1.0f, -0.6f } });
        case 4:     return delay();
        case 5:     return polyline ({ { -1.0f, 0.65f }, { 0.1f, -0.5f }, { 0.1f, -0.6f }, { 1.0f, -0.6f } });
        case 6:     return reverb();
        case 7:     return groove();
        default:    return {};
    }
}

bool isWarm (int effect)
{
    return effect == 1 || effect == 4 || effect == 7;
}
}

void GalleryTiles::drawDrumSampler (juce::Graphics& g, juce::Rectangle<float> tile)
{
    const auto area = drawPlate (g, tile);
    const auto width = area.getWidth() / (float) padsPerSide, height = area.getHeight() / (float) padsPerSide;

    if (width < 4.0f || height < 4.0f)
        return;

    for (int i = 0; i < padsPerSide * padsPerSide; ++i)
        g.drawRoundedRectangle (juce::Rectangle<float> (area.getX() + width * (float) (i % padsPerSide),
                                                        area.getY() + height * (float) (i / padsPerSide), width, height).reduced (1.5f),
                                2.0f, 1.0f);
}

void GalleryTiles::drawSampler (juce::Graphics& g, juce::Rectangle<float> tile)
{
    const auto area = drawPlate (g, tile);

    if (area.isEmpty())
        return;

    for (int i = 0; i < waveformSteps; ++i)
    {
        const auto position = (float) i / (float) (waveformSteps - 1);
        const auto decay = std::exp (-2.2f * position);
        const auto height = area.getHeight() * juce::jmax (0.05f, decay * (0.55f + 0.45f * std::sin ((float) i * 1.7f)));
        const auto x = area.getX() + area.getWidth() * position;
        g.drawLine (x, area.getCentreY() - height * 0.5f, x, area.getCentreY() + height * 0.5f, 1.2f);
    }
}

void GalleryTiles::drawEffect (juce::Graphics& g, juce::Rectangle<float> tile, int effect)
{
    const auto diameter = juce::jmin (tile.getWidth(), tile.getHeight()) - 12.0f;

    if (diameter < 12.0f)
        return;

    const auto colour = isWarm (effect) ? HubPalette::action : HubPalette::accent;
    const auto circle = juce::Rectangle<float> (diameter, diameter).withCentre (tile.getCentre());

    g.setColour (colour.withAlpha (0.08f));
    g.fillEllipse (circle);
    g.setColour (colour.withAlpha (0.42f));
    g.drawEllipse (circle.reduced (0.5f), 1.0f);

    const auto radius = diameter * 0.3f;
    const auto place = juce::AffineTransform::scale (radius).translated (circle.getCentreX(), circle.getCentreY() - diameter * 0.06f);
    g.setColour (colour.withAlpha (0.82f));
    g.strokePath (glyphOf (effect), juce::PathStrokeType (1.8f, juce::PathStrokeType::curved, juce::PathStrokeType::rounded), place);

    const auto wordHeight = juce::jlimit (6.0f, 9.0f, diameter * 0.11f);
    const auto word = circle.withTop (circle.getBottom() - diameter * 0.08f - wordHeight * 1.4f).withHeight (wordHeight * 1.4f);
    drawTextLine (g, "ZORVA", word.toNearestInt(), boldFont (wordHeight), colour.withAlpha (0.82f),
                  juce::Justification::centred, Overflow::clip);
}
