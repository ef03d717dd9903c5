#include "ui/CardShadow.h"

void CardShadow::draw (juce::Graphics& g, juce::Rectangle<int> cardBounds)
{
    if (cardBounds.isEmpty())
        return;

    const auto pixelsPerUnit = g.getInternalContext().getPhysicalPixelScaleFactor();
    const auto width  = juce::jmax (1, juce::roundToInt ((float) cardBounds.getWidth() * pixelsPerUnit));
    const auto height = juce::jmax (1, juce::roundToInt ((float) cardBounds.getHeight() * pixelsPerUnit));

    if (shadow.getWidth() != width || shadow.getHeight() != height)
    {
        shadow = juce::Image (juce::Image::ARGB, width, height, true);

        juce::Path shape;
        shape.addRoundedRectangle (cardBounds.withZeroOrigin().reduced (2).toFloat(), 4.0f);

        juce::Graphics shadowGraphics (shadow);
        shadowGraphics.addTransform (juce::AffineTransform::scale (pixelsPerUnit));
        juce::DropShadow (juce::Colours::black.withAlpha (0.5f), 12, { 0, 4 }).drawForPath (shadowGraphics, shape);
    }

    g.setOpacity (1.0f);
    g.drawImageTransformed (shadow, juce::AffineTransform::scale (1.0f / pixelsPerUnit)
                                        .translated (cardBounds.getPosition().toFloat()));
}
