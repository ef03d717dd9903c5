#pragma once

#include <juce_graphics/juce_graphics.h>

/** The picture at another size in pixels, each at least 1, with as little lost as a smooth scaling loses. Any thread. */
juce::Image scaledTo (juce::Image picture, int width, int height);

/** The part of a picture of this size that fills a box of these proportions: all of its height when it is wider than the box,
    cut around `focus`, a fraction of its width, and otherwise all of its width, cut evenly. Pure. */
juce::Rectangle<float> coveringPart (juce::Rectangle<float> picture, float boxWidth, float boxHeight, float focus);

/** The size at which a whole picture is shown in a box: as large as the box allows, never larger than it is. Pure. */
juce::Rectangle<float> wholeSize (juce::Rectangle<float> picture, float boxWidth, float boxHeight);
