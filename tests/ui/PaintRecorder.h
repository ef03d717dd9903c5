#pragma once

#include "Painting.h"
#include "SnapshotStore.h"
#include "support/GuiHarness.h"
#include "ui/AssetPicture.h"
#include "ui/PictureScaling.h"

#include <BinaryData.h>
#include <cmath>

namespace zorva::test
{
/** One picture that was drawn: which, where, and whether it had to be rescaled for that. */
struct DrawnImage
{
    juce::Image image;
    juce::Rectangle<float> place;   ///< of the image, in the coordinates of what is painted
    bool rescaled = false;
};

/** One run of glyphs that was drawn. */
struct DrawnText
{
    std::vector<uint16_t> glyphs;
    juce::Point<float> start;       ///< of the first glyph's baseline
    juce::Font font;
};

/** What a component draws with, besides lines and fills. */
struct PaintRecord
{
    std::vector<DrawnImage> images;
    std::vector<DrawnText> texts;
};

/** Renders as always and notes pictures and texts. */
class RecordingRenderer final : public juce::LowLevelGraphicsSoftwareRenderer
{
public:
    RecordingRenderer (const juce::Image& target, PaintRecord& recordToFill) : LowLevelGraphicsSoftwareRenderer (target), record (recordToFill) {}

    void drawImage (const juce::Image& image, const juce::AffineTransform& transform) override
    {
        const auto scale = getPhysicalPixelScaleFactor();
        const bool sameSize = std::abs (transform.mat00 * scale - 1.0f) < 0.0001f && std::abs (transform.mat11 * scale - 1.0f) < 0.0001f
                           && juce::exactlyEqual (transform.mat01, 0.0f) && juce::exactlyEqual (transform.mat10, 0.0f);
        record.images.push_back ({ image, image.getBounds().toFloat().transformedBy (transform), ! sameSize });
        LowLevelGraphicsSoftwareRenderer::drawImage (image, transform);
    }

    void drawGlyphs (juce::Span<const uint16_t> glyphs, juce::Span<const juce::Point<float>> positions,
                     const juce::AffineTransform& transform) override
    {
        if (! glyphs.empty())
            record.texts.push_back ({ { glyphs.begin(), glyphs.end() }, positions.front().transformedBy (transform), getFont() });

        LowLevelGraphicsSoftwareRenderer::drawGlyphs (glyphs, positions, transform);
    }

private:
    PaintRecord& record;
};

/** What the function draws with on a picture of this size in logical pixels, at so many real ones to a logical one. */
inline PaintRecord recordOf (int width, int height, const std::function<void (juce::Graphics&)>& paint, float scale = 1.0f)
{
    const auto pixels = [scale] (int length) { return std::max (1, juce::roundToInt ((float) length * scale)); };
    PaintRecord record;
    RecordingRenderer renderer (juce::Image (juce::Image::ARGB, pixels (width), pixels (height), true), record);
    juce::Graphics g (renderer);
    g.addTransform (juce::AffineTransform::scale (scale));
    paint (g);
    return record;
}

/** The same of a component with everything in it. */
inline PaintRecord recordOf (juce::Component& component, float scale = 1.0f)
{
    const auto paint = [&component] (juce::Graphics& g) { component.paintEntireComponent (g, true); };
    return recordOf (component.getWidth(), component.getHeight(), paint, scale);
}

/** The glyphs of one word in a font. */
inline std::vector<uint16_t> glyphsOf (const juce::Font& font, const juce::String& word)
{
    const auto record = recordOf (2000, 100, [&] (juce::Graphics& g) { line (g, word, { 2000, 100 }, font, juce::Colours::white); });
    return record.texts.empty() ? std::vector<uint16_t>() : record.texts.front().glyphs;
}

//==============================================================================
/** Waits until every picture that was asked for has come. Fails on time-out. */
inline void waitForPictures()
{
    EXPECT_TRUE (pumpUntil ([] { return ! AssetPicture::isAnyLoading(); }, 30000));
    pump();
}

/** A component's picture on a ground, with whatever has come of its artwork. */
inline juce::Image pictureOn (juce::Colour ground, juce::Component& component)
{
    return paintedOn (ground, component.getWidth(), component.getHeight(),
                      [&component] (juce::Graphics& g) { component.paintEntireComponent (g, true); });
}

/** The same once all of its artwork has come. */
inline juce::Image pictureWithArtworkOn (juce::Colour ground, juce::Component& component)
{
    pictureOn (ground, component);
    waitForPictures();
    return pictureOn (ground, component);
}

/** A compiled-in picture, whole. Fails when there is none. */
inline juce::Image asset (const char* name)
{
    int size = 0;
    const auto* const data = BinaryData::getNamedResource (name, size);
    EXPECT_NE (data, nullptr) << name;
    const auto image = data != nullptr ? juce::ImageFileFormat::loadFrom (data, (size_t) size) : juce::Image();
    EXPECT_TRUE (image.isValid()) << name;
    return image;
}

/** Where a picture stands that is shown whole and centred in a box, never larger than it is. */
inline juce::Rectangle<float> placeOfWhole (const juce::Image& image, juce::Rectangle<int> box)
{
    const juce::RectanglePlacement placement (juce::RectanglePlacement::xMid | juce::RectanglePlacement::yMid
                                              | juce::RectanglePlacement::onlyReduceInSize);
    return placement.appliedTo (image.getBounds().toFloat(), box.toFloat());
}

/** Paints a compiled-in picture whole and centred in a box. */
inline void paintWhole (juce::Graphics& g, const char* name, juce::Rectangle<int> box)
{
    const auto image = asset (name);
    const auto place = placeOfWhole (image, box).toNearestInt();
    g.setOpacity (1.0f);
    g.drawImageAt (scaledTo (image, place.getWidth(), place.getHeight()), place.getX(), place.getY());
}

/** Empty when one rectangle lies within a pixel of the other. */
inline std::string distanceOf (juce::Rectangle<float> actual, juce::Rectangle<float> expected)
{
    const auto apart = std::max ({ std::abs (actual.getX() - expected.getX()), std::abs (actual.getY() - expected.getY()),
                                   std::abs (actual.getRight() - expected.getRight()), std::abs (actual.getBottom() - expected.getBottom()) });
    return apart <= 1.0f ? std::string() : actual.toString().toStdString() + " instead of " + expected.toString().toStdString();
}

/** Empty when the drawn picture is all of this compiled-in one. */
inline std::string differenceToAsset (const juce::Image& drawn, const char* name)
{
    return differenceBySquares (drawn, scaledTo (asset (name), drawn.getWidth(), drawn.getHeight()));
}
}
