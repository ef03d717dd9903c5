#pragma once

#include <juce_graphics/juce_graphics.h>

/** The drawn tiles of the gallery: small decorations of lines. Pure painting, in logical pixels. */
namespace GalleryTiles
{
/** How many effects have an emblem. */
constexpr int numEffects = 8;

/** A box with sixteen pads, and one with a waveform, in a tile. */
void drawDrumSampler (juce::Graphics& g, juce::Rectangle<float> tile);
void drawSampler (juce::Graphics& g, juce::Rectangle<float> tile);

/** The emblem of an effect, 0 to numEffects - 1, in a tile: EQ, tape, bus compressor, channel compressor, delay, limiter, reverb,
    groove. */
void drawEffect (juce::Graphics& g, juce::Rectangle<float> tile, int effect);
}
