#include "creator/ImageRules.h"

#include "creator/JpegHeader.h"
#include "creator/JudgedPictures.h"
#include "creator/LocalFileRule.h"
#include "platform/PictureDecoding.h"
#include "support/ChildFile.h"
#include "support/FileHash.h"
#include "support/RegularFile.h"

#include <cstring>

namespace
{
constexpr int maximumPathLength = 2048;
constexpr juce::int64 headerBytes = 0x100000;
constexpr juce::uint8 pngSignature[] { 0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n' };

bool isWithinLimits (juce::int64 width, juce::int64 height)
{
    return width >= 1 && width <= maximumImageSide
        && height >= 1 && height <= maximumImageSide
        && width * height <= maximumImagePixels;
}

bool isWithinLimits (const std::optional<JpegHeader::Size>& size)
{
    return size.has_value() && isWithinLimits (size->width, size->height);
}

bool isPng (const juce::uint8* data, size_t size)
{
    return size >= 24
        && std::memcmp (data, pngSignature, sizeof (pngSignature)) == 0
        && std::memcmp (data + 12, "IHDR", 4) == 0;
}

bool isJpeg (const juce::uint8* data, size_t size)
{
    return size >= 12 && data[0] == 0xff && data[1] == 0xd8;
}

/** The first so many bytes of a file, or all if it has less; nothing when one of them cannot be read. */
std::optional<juce::MemoryBlock> readBeginning (const juce::File& file, juce::int64 mostBytes)
{
    const auto size = std::min (file.getSize(), mostBytes);

    if (size < 1 || ! isRegularFile (file))
        return {};

    juce::FileInputStream stream (file);
    juce::MemoryBlock bytes;

    if (! stream.openedOk() || (juce::int64) stream.readIntoMemoryBlock (bytes, (ssize_t) size) != size)
        return {};

    return bytes;
}

/** A picture whose header passes may still hide, where a decoder looks and the header's rule does not, a frame so large that there
    would be no memory for it; or it may bring so many scans that decoding takes half an hour. And the framework's decoder gives red,
    green and blue, which a picture for print cannot become. */
bool decoderStaysWithinLimits (const juce::uint8* data, size_t size)
{
    if (! isAcceptableImageHeader (data, size))
        return false;

    if (! isJpeg (data, size))
        return true;

    const auto colours = JpegHeader::coloursForDecoder (data, size);
    return isWithinLimits (JpegHeader::sizeForDecoder (data, size))
        && (colours == 1 || colours == 3)
        && JpegHeader::scanCount (data, size) <= maximumJpegScans;
}
}

bool isAcceptableProfileImage (const juce::String& path)
{
    if (path.isEmpty())
        return true;

    if (path.length() > maximumPathLength)
        return false;

    const auto file = fileFromRecordedPath (path);

    return file.has_value()
        && isAcceptableLocalFile (*file, { ".png", ".jpg", ".jpeg" }, maximumImageBytes)
        && isAcceptableImageHeader (*file)
        && decodesWithinLimits (*file);
}

bool isAcceptableImageHeader (const juce::File& file)
{
    const auto bytes = readBeginning (file, headerBytes);
    return bytes.has_value() && isAcceptableImageHeader (static_cast<const juce::uint8*> (bytes->getData()), bytes->getSize());
}

bool isAcceptableImageHeader (const juce::uint8* data, size_t size)
{
    if (isPng (data, size))
        return isWithinLimits (juce::ByteOrder::bigEndianInt (data + 16), juce::ByteOrder::bigEndianInt (data + 20));

    return isJpeg (data, size) && isWithinLimits (JpegHeader::announcedSize (data, size));
}

bool decodesWithinLimits (const juce::File& file)
{
    static JudgedPictures judged;
    const auto bytes = readBeginning (file, maximumImageBytes);

    if (! bytes.has_value())
        return false;

    const auto digest = sha256OfBytes (bytes->getData(), bytes->getSize());

    if (const auto known = judged.verdictOn (digest))
        return *known;

    const bool verdict = decoderStaysWithinLimits (static_cast<const juce::uint8*> (bytes->getData()), bytes->getSize())
                      && platform::canDecodePicture (bytes->getData(), bytes->getSize(), maximumImageSide);
    judged.remember (digest, verdict);
    return verdict;
}
