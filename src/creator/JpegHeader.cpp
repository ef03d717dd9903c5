#include "creator/JpegHeader.h"

namespace JpegHeader
{
namespace
{
constexpr size_t firstMarkerOffset = 2;
constexpr size_t shortestFrameHeader = 7;       // length, precision, height and width

bool isFrame (juce::uint8 marker)
{
    return marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
}

bool isRestart (juce::uint8 marker)
{
    return marker >= 0xd0 && marker <= 0xd7;
}

/** A second start, or the end. */
bool endsPicture (juce::uint8 marker)
{
    return marker == 0xd8 || marker == 0xd9;
}

/** The picture's own bytes begin behind this one. */
bool isScan (juce::uint8 marker)
{
    return marker == 0xda;
}

/** Markers that no length follows; the first is none at all, but an escaped byte of the picture. */
bool standsAloneForDecoder (juce::uint8 marker)
{
    return marker == 0 || marker == 1 || isRestart (marker);
}

size_t read16 (const juce::uint8* bytes)
{
    return juce::ByteOrder::bigEndianShort (bytes);
}

size_t afterFillBytes (const juce::uint8* data, size_t size, size_t offset)
{
    while (offset < size && data[offset] == 0xff)
        ++offset;

    return offset;
}

/** The marker at or behind this offset to which a decoder comes next; an offset with less than two bytes behind it when none does. */
size_t toMarker (const juce::uint8* data, size_t size, size_t offset)
{
    while (offset < size && data[offset] != 0xff)
        ++offset;

    return afterFillBytes (data, size, offset);
}

/** The next one behind the marker at this offset, two bytes of which follow. */
size_t toNextMarker (const juce::uint8* data, size_t size, size_t at)
{
    return toMarker (data, size, at + 1 + (standsAloneForDecoder (data[at]) ? 0 : std::max ((size_t) 2, read16 (data + at + 1))));
}

/** Where the marker of the frame header stands at which a decoder arrives; nothing when it would find none and give up. */
std::optional<size_t> frameForDecoder (const juce::uint8* data, size_t size)
{
    for (auto at = toMarker (data, size, firstMarkerOffset); at + 3 <= size && ! endsPicture (data[at]) && ! isScan (data[at]);
         at = toNextMarker (data, size, at))
        if (isFrame (data[at]))
            return at;

    return {};
}

Size frameAt (const juce::uint8* marker)
{
    return { .width = (juce::int64) read16 (marker + 6), .height = (juce::int64) read16 (marker + 4) };
}
}

std::optional<Size> announcedSize (const juce::uint8* data, size_t size)
{
    for (auto offset = firstMarkerOffset; offset + 9 < size;)
    {
        if (data[offset] != 0xff)
        {
            ++offset;
            continue;
        }

        const auto at = afterFillBytes (data, size, offset);

        if (at == size)
            return {};

        const auto marker = data[at];

        if (marker >= 0xd0 && marker <= 0xd9)
        {
            offset = at + 1;
            continue;
        }

        if (at + 3 > size)
            return {};

        const auto length = read16 (data + at + 1);

        if (length < 2 || at + 1 + length > size)
            return {};

        if (isFrame (marker) && length >= shortestFrameHeader)
            return frameAt (data + at);

        offset = at + 1 + length;
    }

    return {};
}

std::optional<Size> sizeForDecoder (const juce::uint8* data, size_t size)
{
    const auto frame = frameForDecoder (data, size);
    return frame.has_value() && *frame + 8 <= size ? std::optional<Size> (frameAt (data + *frame)) : std::nullopt;
}

int coloursForDecoder (const juce::uint8* data, size_t size)
{
    const auto frame = frameForDecoder (data, size);
    return frame.has_value() && *frame + 9 <= size ? data[*frame + 8] : 0;
}

int scanCount (const juce::uint8* data, size_t size)
{
    int scans = 0;

    for (auto at = toMarker (data, size, firstMarkerOffset); at + 3 <= size && ! endsPicture (data[at]); at = toNextMarker (data, size, at))
        if (isScan (data[at]))
            ++scans;

    return scans;
}
}
