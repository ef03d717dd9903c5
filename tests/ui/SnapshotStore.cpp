#include "SnapshotStore.h"

#include "Painting.h"
#include "support/GuiHarness.h"

#include <cstdlib>

namespace zorva::test
{
namespace
{
constexpr int squareSize = 8;
constexpr int tolerance = 12;   ///< of 255, for each channel of a square's mean colour

struct Means
{
    int red = 0, green = 0, blue = 0;
};

Means meansOf (const Pixels& pixels, juce::Rectangle<int> area)
{
    Means sum;

    for (int y = area.getY(); y < area.getBottom(); ++y)
        for (int x = area.getX(); x < area.getRight(); ++x)
        {
            const auto colour = pixels.at (x, y);
            sum.red += colour.getRed();
            sum.green += colour.getGreen();
            sum.blue += colour.getBlue();
        }

    const int count = std::max (1, area.getWidth() * area.getHeight());
    return { sum.red / count, sum.green / count, sum.blue / count };
}

int distance (const Means& a, const Means& b)
{
    return std::max ({ std::abs (a.red - b.red), std::abs (a.green - b.green), std::abs (a.blue - b.blue) });
}
}

std::string differenceBySquares (const juce::Image& actual, const juce::Image& expected)
{
    if (actual.getBounds() != expected.getBounds())
        return "size " + actual.getBounds().toString().toStdString() + " instead of " + expected.getBounds().toString().toStdString();

    const Pixels actualPixels (actual), expectedPixels (expected);
    int squares = 0, worst = tolerance;
    juce::Rectangle<int> where;

    for (int y = 0; y < actual.getHeight(); y += squareSize)
        for (int x = 0; x < actual.getWidth(); x += squareSize)
        {
            const auto area = juce::Rectangle<int> (x, y, squareSize, squareSize).getIntersection (actual.getBounds());
            const int d = distance (meansOf (actualPixels, area), meansOf (expectedPixels, area));
            squares += d > tolerance ? 1 : 0;

            if (d > worst)
            {
                worst = d;
                where = area;
            }
        }

    return squares == 0 ? std::string()
                        : std::to_string (squares) + " squares differ, the worst by " + std::to_string (worst) + " at "
                              + where.toString().toStdString();
}

std::string differenceToStored (const juce::Image& image, const juce::String& name)
{
    const auto stored = juce::File (HUB_UI_TESTS_FOLDER).getChildFile ("snapshots").getChildFile (name + ".png");

    if (juce::String (std::getenv ("HUB_UPDATE_SNAPSHOTS")) == "1")
    {
        stored.getParentDirectory().createDirectory();
        savePng (image, stored);
        return {};
    }

    const auto expected = juce::ImageFileFormat::loadFrom (stored);
    const auto difference = expected.isValid() ? differenceBySquares (image, expected) : "there is no stored picture " + name.toStdString();

    if (difference.empty())
        return {};

    const auto left = juce::File::getCurrentWorkingDirectory().getChildFile ("snapshot-differences").getChildFile (name + ".png");
    left.getParentDirectory().createDirectory();
    savePng (image, left);
    return name.toStdString() + ": " + difference + "; see " + left.getFullPathName().toStdString();
}
}
