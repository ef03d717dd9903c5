#pragma once

#include <juce_graphics/juce_graphics.h>
#include <vector>

/** A picture that is drawn into boxes smaller than itself. It keeps a copy for each size at which it is shown, made for the
    pixels of the screen, so that painting never rescales. Message thread. */
class ScaledPicture
{
public:
    /** Holds nothing. */
    ScaledPicture() = default;

    /** Shares the pixels of `source`; an invalid image gives an invalid picture. */
    explicit ScaledPicture (juce::Image source);

    bool isValid() const;

    /** The same pixels, not just equal ones. */
    bool shows (const juce::Image&) const;

    /** The whole picture, or an invalid image. */
    const juce::Image& original() const;

    /** Draws the whole picture centred in the box, never larger than it is. Does nothing when there is no picture or no room. */
    void draw (juce::Graphics&, juce::Rectangle<int> box);

private:
    const juce::Image& copyOfSize (int width, int height);

    juce::Image source;
    std::vector<juce::Image> copies;   ///< the oldest first
};
