#include "ui/ScaledPicture.h"

#include "ui/PictureScaling.h"

#include <algorithm>

namespace
{
/** More sizes than the pages show of one picture on one screen. */
constexpr size_t maximumCopies = 4;
}

ScaledPicture::ScaledPicture (juce::Image picture) : source (std::move (picture)) {}

bool ScaledPicture::isValid() const { return source.isValid(); }

bool ScaledPicture::shows (const juce::Image& picture) const { return source == picture; }

const juce::Image& ScaledPicture::original() const { return source; }

void ScaledPicture::draw (juce::Graphics& g, juce::Rectangle<int> box)
{
    if (! source.isValid() || box.isEmpty())
        return;

    const juce::RectanglePlacement placement (juce::RectanglePlacement::xMid | juce::RectanglePlacement::yMid
                                              | juce::RectanglePlacement::onlyReduceInSize);
    const auto place = placement.appliedTo (source.getBounds().toFloat(), box.toFloat());
    const auto pixelsPerUnit = g.getInternalContext().getPhysicalPixelScaleFactor();
    const auto inPixels = [pixelsPerUnit] (float length) { return juce::roundToInt (length * pixelsPerUnit); };

    const auto& copy = copyOfSize (juce::jmax (1, inPixels (place.getWidth())), juce::jmax (1, inPixels (place.getHeight())));
    const juce::Point<int> corner (inPixels (place.getX()), inPixels (place.getY()));

    // On whole pixels, so that the copy is copied and not filtered once more.
    g.setOpacity (1.0f);
    g.drawImageTransformed (copy, juce::AffineTransform::translation (corner.toFloat()).scaled (1.0f / pixelsPerUnit));
}

const juce::Image& ScaledPicture::copyOfSize (int width, int height)
{
    const auto found = std::find_if (copies.begin(), copies.end(), [width, height] (const juce::Image& copy)
                                     { return copy.getWidth() == width && copy.getHeight() == height; });

    if (found != copies.end())
        return *found;

    if (copies.size() >= maximumCopies)
        copies.erase (copies.begin());

    return copies.emplace_back (scaledTo (source, width, height));
}
