#pragma once

#include <juce_core/juce_core.h>
#include <optional>

/** Finding the size of a picture in the header of a JPEG file (ITU-T T.81) without decoding it. The bytes begin with FF D8. Pure
    functions, any thread, in time proportional to the bytes. */
namespace JpegHeader
{
struct Size
{
    juce::int64 width = 0, height = 0;
};

/** The size in the first frame header of a well-formed file; nothing when there is none before the last nine bytes, or when a segment
    breaks off. */
std::optional<Size> announcedSize (const juce::uint8* data, size_t size);

/** The size in the frame header at which a decoder arrives, which forgives more and therefore may read past segments that hide one;
    nothing when it would find none and give up. */
std::optional<Size> sizeForDecoder (const juce::uint8* data, size_t size);

/** The number of colours that a pixel has in that frame: 1 for grey, 3 for the screen, 4 for print; 0 when there is none. */
int coloursForDecoder (const juce::uint8* data, size_t size);

/** The number of scans up to the end of the picture. A progressive one may bring, in a few bytes each, any number of scans that a
    decoder has to work through the whole picture for. */
int scanCount (const juce::uint8* data, size_t size);
}
