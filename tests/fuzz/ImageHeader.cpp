#include "FuzzHome.h"

#include "creator/ImageRules.h"
#include "creator/JpegHeader.h"
#include "platform/PictureDecoding.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace
{
using Size = JpegHeader::Size;

constexpr std::size_t headerBytes = 1048576;
constexpr int smallSide = 256;          // what decodes in no time

void require (bool condition)
{
    if (! condition)
        std::abort();
}

std::size_t big (const std::uint8_t* bytes, int width)
{
    std::size_t value = 0;

    for (int i = 0; i < width; ++i)
        value = value << 8 | bytes[i];

    return value;
}

bool isPng (const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes (reinterpret_cast<const char*> (data), size);
    return size >= 24 && bytes.substr (0, 8) == "\x89PNG\r\n\x1a\n" && bytes.substr (12, 4) == "IHDR";
}

bool isJpeg (const std::uint8_t* data, std::size_t size)
{
    return size >= 2 && data[0] == 0xff && data[1] == 0xd8;
}

/** The header's rule for JPEG once more, step by step, with a check of the place after each. */
bool jpegPasses (const std::uint8_t* data, std::size_t size)
{
    for (std::size_t at = 2; at + 9 < size;)
    {
        if (data[at] != 0xff)
        {
            ++at;
            continue;
        }

        while (at < size && data[at] == 0xff)
            ++at;

        if (at == size)
            return false;

        if (data[at] >= 0xd0 && data[at] <= 0xd9)
        {
            ++at;
            continue;
        }

        if (at + 3 > size || big (data + at + 1, 2) < 2 || at + 1 + big (data + at + 1, 2) > size)
            return false;

        const bool isFrame = (data[at] & 0xf0) == 0xc0 && data[at] != 0xc4 && data[at] != 0xc8 && data[at] != 0xcc;

        if (isFrame && big (data + at + 1, 2) >= 7)
        {
            const auto height = big (data + at + 4, 2), width = big (data + at + 6, 2);
            return width >= 1 && width <= 8192 && height >= 1 && height <= 8192 && width * height <= 33554432;
        }

        at += 1 + big (data + at + 1, 2);
    }

    return false;
}

bool headerPasses (const std::uint8_t* data, std::size_t size)
{
    if (isPng (data, size))
    {
        const auto width = big (data + 16, 4), height = big (data + 20, 4);
        return width >= 1 && width <= 8192 && height >= 1 && height <= 8192 && width * height <= 33554432;
    }

    return size >= 12 && isJpeg (data, size) && jpegPasses (data, size);
}

/** The size that a decoder will find, by what the Hub makes of the header before it lets one look. */
std::optional<Size> foreseenSize (const std::uint8_t* data, std::size_t size)
{
    if (isPng (data, size))
        return Size { .width = (juce::int64) big (data + 16, 4), .height = (juce::int64) big (data + 20, 4) };

    return isJpeg (data, size) ? JpegHeader::sizeForDecoder (data, size) : std::nullopt;
}

/** A JPEG picture of colours that a screen has, in a number of scans that takes no time. */
bool isForScreen (const std::uint8_t* data, std::size_t size)
{
    const auto colours = JpegHeader::coloursForDecoder (data, size);
    return (colours == 1 || colours == 3) && JpegHeader::scanCount (data, size) <= maximumJpegScans;
}

int longerSide (const Size& size)
{
    return (int) std::min<juce::int64> (std::max (size.width, size.height), std::numeric_limits<int>::max());
}
}

/** Any bytes as a picture: the header is judged as the rule has it, from a file as from memory; and a decoder never meets a picture
    of another size than was foreseen. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    const bool passes = isAcceptableImageHeader (data, std::min (size, headerBytes));
    require (passes == headerPasses (data, std::min (size, headerBytes)));

    const auto file = fuzz::home().getChildFile ("picture");
    fuzz::writeBytes (file, data, size);
    require (isAcceptableImageHeader (file) == passes);

    const auto foreseen = foreseenSize (data, size);
    const bool isSmall = foreseen.has_value() && longerSide (*foreseen) <= smallSide;
    const bool decodes = platform::canDecodePicture (data, size, smallSide);
    require (! decodes || isSmall);

    if (decodes)
        require (platform::canDecodePicture (data, size, longerSide (*foreseen)) && ! platform::canDecodePicture (data, size, longerSide (*foreseen) - 1));

    // Anything larger costs the decoder seconds under a sanitizer.
    if (isSmall || ! passes)
        require (decodesWithinLimits (file) == (passes && decodes && (isPng (data, size) || isForScreen (data, size))));

    return 0;
}
