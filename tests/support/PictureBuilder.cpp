#include "support/PictureBuilder.h"

#include <juce_graphics/juce_graphics.h>

namespace zorva::test
{
namespace
{
juce::uint32 crcOf (const std::string& bytes)
{
    juce::uint32 crc = 0xffffffffu;

    for (const char byte : bytes)
    {
        crc ^= (juce::uint8) byte;

        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xedb88320u : 0u);
    }

    return ~crc;
}

std::string pngChunk (const std::string& type, const std::string& content)
{
    return big32 ((juce::uint32) content.size()) + type + content + big32 (crcOf (type + content));
}

std::string compressed (const std::string& bytes)
{
    juce::MemoryOutputStream packed;
    {
        juce::GZIPCompressorOutputStream compressor (packed);
        compressor.write (bytes.data(), bytes.size());
    }
    return { static_cast<const char*> (packed.getData()), packed.getDataSize() };
}

const std::string pngSignature ("\x89PNG\r\n\x1a\n");
}

std::string big16 (int value)             { return { (char) (value >> 8), (char) value }; }
std::string big32 (juce::uint32 value)    { return big16 ((int) (value >> 16)) + big16 ((int) (value & 0xffff)); }

std::string pngHeader (juce::uint32 width, juce::uint32 height)
{
    return pngSignature + big32 (13) + "IHDR" + big32 (width) + big32 (height);
}

std::string blankPng (int width, int height)
{
    const std::string oneBitGrey { 1, 0, 0, 0, 0 };
    const auto rowBytes = (size_t) (1 + (width + 7) / 8);
    return pngSignature + pngChunk ("IHDR", big32 ((juce::uint32) width) + big32 ((juce::uint32) height) + oneBitGrey)
           + pngChunk ("IDAT", compressed (std::string (rowBytes * (size_t) height, '\0'))) + pngChunk ("IEND", {});
}

std::string jpegStart()              { return jpegMarker (0xd8); }
std::string jpegMarker (int code)    { return { (char) 0xff, (char) code }; }

std::string jpegSegment (int code, const std::string& content)
{
    return jpegMarker (code) + big16 ((int) content.size() + 2) + content;
}

std::string jpegFrame (int width, int height, int code)
{
    return jpegSegment (code, std::string (1, 8) + big16 (height) + big16 (width) + std::string ("\3\1\x11\0\2\x11\0\3\x11\0", 10));
}

std::string jpegHeader (int width, int height, int code, const std::string& before)
{
    return jpegStart() + before + jpegFrame (width, height, code) + std::string (16, '\0');
}

std::string blankJpeg (int width, int height)
{
    juce::MemoryOutputStream bytes;
    juce::JPEGImageFormat().writeImageToStream (juce::Image (juce::Image::RGB, width, height, true), bytes);
    return { static_cast<const char*> (bytes.getData()), bytes.getDataSize() };
}
}
