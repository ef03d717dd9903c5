#include "Painting.h"

#include <algorithm>
#include <cmath>

namespace zorva::test
{
namespace
{
/** The largest difference of a channel; premultiplied, so that the colour of nothing doesn't matter. */
int distance (juce::PixelARGB p, juce::PixelARGB q)
{
    return std::max ({ std::abs (p.getAlpha() - q.getAlpha()), std::abs (p.getRed() - q.getRed()),
                       std::abs (p.getGreen() - q.getGreen()), std::abs (p.getBlue() - q.getBlue()) });
}

constexpr int sameColour = 3;         ///< blending rounds differently in pictures with and without transparency
constexpr int roundedCorner = 12;     ///< the curve of a corner is flattened a little differently in another place,
constexpr int cornerPixels = 16;      ///< but only for so many pixels of a picture
}

juce::Image pictureOf (juce::Component& component)
{
    return component.createComponentSnapshot (component.getLocalBounds(), true, 1.0f);
}

juce::Image painted (int width, int height, const std::function<void (juce::Graphics&)>& paint)
{
    juce::Image image (juce::Image::ARGB, width, height, true);
    juce::Graphics g (image);
    paint (g);
    return image;
}

juce::Image paintedOn (juce::Colour ground, int width, int height, const std::function<void (juce::Graphics&)>& paint)
{
    return painted (width, height, [&] (juce::Graphics& g)
    {
        g.fillAll (ground);
        paint (g);
    });
}

std::string difference (const juce::Image& actual, const juce::Image& expected, const std::vector<juce::Rectangle<int>>& spared)
{
    if (actual.getBounds() != expected.getBounds())
        return "size " + actual.getBounds().toString().toStdString() + " instead of " + expected.getBounds().toString().toStdString();

    const Pixels actualPixels (actual), expectedPixels (expected);
    int count = 0, corners = 0;
    juce::Rectangle<int> where;
    std::string first;

    for (int y = 0; y < actual.getHeight(); ++y)
        for (int x = 0; x < actual.getWidth(); ++x)
        {
            const int d = distance (actualPixels.at (x, y), expectedPixels.at (x, y));

            if (d <= sameColour || std::any_of (spared.begin(), spared.end(), [&] (auto area) { return area.contains (x, y); }))
                continue;

            if (d <= roundedCorner && ++corners <= cornerPixels)
                continue;

            where = count++ == 0 ? juce::Rectangle<int> (x, y, 1, 1) : where.getUnion ({ x, y, 1, 1 });

            if (first.empty())
                first = pixel (actual, x, y) + " instead of " + pixel (expected, x, y) + " at " + std::to_string (x) + ", " + std::to_string (y);
        }

    return count == 0 ? std::string()
                      : std::to_string (count) + " pixels within " + where.toString().toStdString() + ", the first is " + first;
}

juce::Image cut (const juce::Image& image, juce::Rectangle<int> area)
{
    return image.getClippedImage (area).createCopy();
}

int pixelsOf (const juce::Image& image, juce::Colour colour, juce::Rectangle<int> area)
{
    const Pixels pixels (image);
    const auto wanted = colour.getPixelARGB();
    int count = 0;
    area = area.getIntersection (image.getBounds());

    for (int y = area.getY(); y < area.getBottom(); ++y)
        for (int x = area.getX(); x < area.getRight(); ++x)
            count += distance (pixels.at (x, y), wanted) <= sameColour ? 1 : 0;

    return count;
}

std::string hex (juce::Colour colour)
{
    return "#" + colour.toDisplayString (true).toLowerCase().toStdString();
}

std::string pixel (const juce::Image& image, int x, int y)
{
    return hex (image.getPixelAt (x, y));
}

juce::Font plain (float height)    { return juce::Font (juce::FontOptions (height)); }
juce::Font bold (float height)     { return juce::Font (juce::FontOptions (height).withStyle ("Bold")); }

int widthOf (const juce::Font& font, const juce::String& text)
{
    return (int) std::ceil (juce::GlyphArrangement::getStringWidth (font, text));
}

void line (juce::Graphics& g, const juce::String& text, juce::Rectangle<int> area, const juce::Font& font, juce::Colour colour,
           juce::Justification justification, bool ellipsis)
{
    g.setFont (font);
    g.setColour (colour);
    g.drawText (text, area, justification, ellipsis);
}

//==============================================================================
class RepaintWatch::Recorder final : public juce::CachedComponentImage
{
public:
    explicit Recorder (juce::Component& componentToUse) : component (componentToUse) {}

    void paint (juce::Graphics& g) override                         { component.paintEntireComponent (g, true); }
    bool invalidateAll() override                                   { areas.push_back (component.getLocalBounds()); return true; }
    bool invalidate (const juce::Rectangle<int>& area) override     { areas.push_back (area); return true; }
    void releaseResources() override                                {}

    juce::Component& component;
    std::vector<juce::Rectangle<int>> areas;
};

RepaintWatch::RepaintWatch (juce::Component& componentToUse) : component (componentToUse), recorder (new Recorder (componentToUse))
{
    component.setCachedComponentImage (recorder);
    recorder->areas.clear();   // it begins with a repaint of its own
}

RepaintWatch::~RepaintWatch()
{
    component.setCachedComponentImage (nullptr);
}

const std::vector<juce::Rectangle<int>>& RepaintWatch::areas() const
{
    return recorder->areas;
}
}
