#include "creator/WavDuration.h"

#include "support/RegularFile.h"

#include <cmath>
#include <cstring>

namespace
{
constexpr juce::int64 smallestFile = 44;
constexpr juce::int64 riffHeaderBytes = 12;
constexpr juce::int64 chunkHeaderBytes = 8;
constexpr juce::int64 lastChunkOffset = 0x100000;       // no chunk that begins here or later is looked at
constexpr juce::uint32 formatBytes = 16, longestFormatChunk = 4096;

template <typename Number>
bool isBetween (Number lowest, Number value, Number highest)
{
    return value >= lowest && value <= highest;
}

bool readWhole (juce::InputStream& stream, juce::uint8* bytes, int size)
{
    return stream.read (bytes, size) == size;
}

/** Reads the body of a "fmt " chunk; the byte rate, or nothing when the format is not one that the Hub measures. */
std::optional<juce::uint32> readByteRate (juce::InputStream& stream, juce::uint32 chunkSize)
{
    juce::uint8 format[formatBytes];

    if (! isBetween (formatBytes, chunkSize, longestFormatChunk) || ! readWhole (stream, format, sizeof (format)))
        return {};

    using juce::ByteOrder;
    const auto tag = ByteOrder::littleEndianShort (format);
    const auto channels = ByteOrder::littleEndianShort (format + 2);
    const auto sampleRate = ByteOrder::littleEndianInt (format + 4);
    const auto byteRate = ByteOrder::littleEndianInt (format + 8);
    const auto blockAlign = ByteOrder::littleEndianShort (format + 12);
    const auto bitsPerSample = ByteOrder::littleEndianShort (format + 14);

    const bool isKnownTag = tag == 1 || tag == 3 || tag == 65534;      // integers, floating point, and either by its extension

    if (! isKnownTag || ! isBetween (1, (int) channels, 64) || ! isBetween (8000u, sampleRate, 384000u) || byteRate == 0 || blockAlign == 0
        || ! isBetween (8, (int) bitsPerSample, 64))
        return {};

    return byteRate;
}

bool startsAsWave (juce::InputStream& stream, juce::int64 size)
{
    juce::uint8 header[riffHeaderBytes];

    return readWhole (stream, header, sizeof (header))
        && std::memcmp (header, "RIFF", 4) == 0
        && std::memcmp (header + 8, "WAVE", 4) == 0
        && (juce::int64) juce::ByteOrder::littleEndianInt (header + 4) + chunkHeaderBytes <= size;
}
}

std::optional<double> wavDurationInSeconds (const juce::File& file)
{
    if (! isRegularFile (file))
        return {};

    juce::FileInputStream stream (file);

    if (! stream.openedOk())
        return {};

    return wavDurationInSeconds (stream);
}

std::optional<double> wavDurationInSeconds (juce::InputStream& stream)
{
    const auto size = stream.getTotalLength();

    if (size < smallestFile || ! startsAsWave (stream, size))
        return {};

    std::optional<juce::uint32> dataSize, byteRate;

    for (auto offset = riffHeaderBytes; offset + chunkHeaderBytes <= size && offset < lastChunkOffset && ! (dataSize && byteRate);)
    {
        juce::uint8 header[chunkHeaderBytes];

        if (! stream.setPosition (offset) || ! readWhole (stream, header, sizeof (header)))
            return {};

        const auto chunkSize = juce::ByteOrder::littleEndianInt (header + 4);
        offset += chunkHeaderBytes;

        if (chunkSize > size - offset)
            return {};

        if (std::memcmp (header, "data", 4) == 0)
            dataSize = chunkSize;
        else if (std::memcmp (header, "fmt ", 4) == 0 && ! (byteRate = readByteRate (stream, chunkSize)))
            return {};

        offset += (juce::int64) chunkSize + (chunkSize & 1);      // chunks begin at even places
    }

    if (dataSize.value_or (0) == 0 || ! byteRate)
        return {};

    const auto duration = (double) *dataSize / (double) *byteRate;
    return std::isfinite (duration) && duration > 0.0 ? std::optional<double> (duration) : std::nullopt;
}
