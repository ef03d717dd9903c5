#pragma once

#include "ui/HubLookAndFeel.h"

#include <functional>
#include <gtest/gtest.h>
#include <juce_gui_basics/juce_gui_basics.h>
#include <string>
#include <vector>

/** Pictures of components, and pictures painted by hand to compare them with. */
namespace zorva::test
{
/** The Hub's look, the default for all components while this lives. */
class HubLook
{
public:
    HubLook()     { juce::LookAndFeel::setDefaultLookAndFeel (&lookAndFeel); }
    ~HubLook()    { juce::LookAndFeel::setDefaultLookAndFeel (nullptr); }

    HubLookAndFeel lookAndFeel;

    JUCE_DECLARE_NON_COPYABLE (HubLook)
};

/** A component with everything in it, one pixel a logical pixel. */
juce::Image pictureOf (juce::Component&);

/** What the function paints on a transparent ground. */
juce::Image painted (int width, int height, const std::function<void (juce::Graphics&)>& paint);

/** The same, on a ground of one colour. */
juce::Image paintedOn (juce::Colour ground, int width, int height, const std::function<void (juce::Graphics&)>& paint);

/** Empty when the pictures agree outside the spared areas; otherwise how many pixels differ, and the first of them. Forgives what
    rounding does to a colour, and a few pixels of rounded corners. */
std::string difference (const juce::Image& actual, const juce::Image& expected, const std::vector<juce::Rectangle<int>>& spared = {});

/** Quick access to many pixels of a picture, which must not change meanwhile. */
class Pixels
{
public:
    explicit Pixels (const juce::Image& image) : copy (image.convertedToFormat (juce::Image::ARGB)), data (copy, juce::Image::BitmapData::readOnly) {}

    /** Premultiplied. */
    juce::PixelARGB at (int x, int y) const    { return *reinterpret_cast<const juce::PixelARGB*> (data.getPixelPointer (x, y)); }

private:
    juce::Image copy;
    juce::Image::BitmapData data;
};

/** The part of a picture. */
juce::Image cut (const juce::Image&, juce::Rectangle<int> area);

/** How many pixels of the area have about this colour. */
int pixelsOf (const juce::Image&, juce::Colour, juce::Rectangle<int> area);

/** A colour as "#aarrggbb". */
std::string hex (juce::Colour);

/** The colour of one pixel as hex(). */
std::string pixel (const juce::Image&, int x, int y);

/** A font of the Hub, made as its rules say. */
juce::Font plain (float height);
juce::Font bold (float height);

/** The measured width of a line of text, rounded up. */
int widthOf (const juce::Font&, const juce::String&);

/** One line of text in a colour. */
void line (juce::Graphics&, const juce::String&, juce::Rectangle<int>, const juce::Font&, juce::Colour,
           juce::Justification = juce::Justification::centredLeft, bool ellipsis = true);

/** Counts and collects what a component asks to be painted anew while this lives. */
class RepaintWatch
{
public:
    explicit RepaintWatch (juce::Component&);
    ~RepaintWatch();

    /** The areas so far, in the component's coordinates. */
    const std::vector<juce::Rectangle<int>>& areas() const;

    int count() const    { return (int) areas().size(); }

private:
    class Recorder;
    juce::Component& component;
    Recorder* recorder;   // owned by the component

    JUCE_DECLARE_NON_COPYABLE (RepaintWatch)
};
}
