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

/** A second start, the end, or the picture's own bytes: no header comes after them. */
bool endsHeaderForDecoder (juce::uint8 marker)
{
    return marker >= 0xd8 && marker <= 0xda;
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
    for (auto offset = firstMarkerOffset; offset < size;)
    {
        if (data[offset] != 0xff)
        {
            ++offset;
            continue;
        }

        const auto at = afterFillBytes (data, size, offset);

        if (at + 3 > size || endsHeaderForDecoder (data[at]))
            return {};

        if (data[at] == 0 || data[at] == 1 || isRestart (data[at]))
        {
            offset = at + 1;
            continue;
        }

        if (isFrame (data[at]))
            return at + 8 <= size ? std::optional<Size> (frameAt (data + at)) : std::nullopt;

        offset = at + 1 + std::max ((size_t) 2, read16 (data + at + 1));
    }

    return {};
}
}
