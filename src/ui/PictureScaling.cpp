#include "ui/PictureScaling.h"

juce::Image scaledTo (juce::Image picture, int width, int height)
{
    const auto step = [&] (int w, int h) { picture = picture.rescaled (w, h, juce::Graphics::highResamplingQuality); };

    // Halves the picture before the last step: one step alone would skip pixels of a picture more than twice as large.
    while (picture.getWidth() >= width * 2 && picture.getHeight() >= height * 2)
        step (picture.getWidth() / 2, picture.getHeight() / 2);

    if (picture.getWidth() != width || picture.getHeight() != height)
        step (width, height);

    return picture;
}

juce::Rectangle<float> coveringPart (juce::Rectangle<float> picture, float boxWidth, float boxHeight, float focus)
{
    const auto boxAspect = boxWidth / boxHeight;

    if (picture.getWidth() > boxAspect * picture.getHeight())
    {
        const auto width = boxAspect * picture.getHeight();
        const auto left = juce::jlimit (0.0f, picture.getWidth() - width, picture.getWidth() * focus - width * 0.5f);
        return picture.withX (picture.getX() + left).withWidth (width);
    }

    return picture.withSizeKeepingCentre (picture.getWidth(), picture.getWidth() / boxAspect);
}

juce::Rectangle<float> wholeSize (juce::Rectangle<float> picture, float boxWidth, float boxHeight)
{
    const juce::RectanglePlacement placement (juce::RectanglePlacement::xMid | juce::RectanglePlacement::yMid
                                              | juce::RectanglePlacement::onlyReduceInSize);
    return placement.appliedTo (picture, { boxWidth, boxHeight }).withZeroOrigin();
}
