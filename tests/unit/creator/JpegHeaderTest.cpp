#include "creator/ImageRules.h"
#include "creator/JpegHeader.h"
#include "support/Files.h"

#include <gtest/gtest.h>
#include <juce_graphics/juce_graphics.h>

using namespace zorva::test;

namespace
{
std::string big16 (int value)    { return { (char) (value >> 8), (char) value }; }

std::string marker (int code)    { return { (char) 0xff, (char) code }; }

/** A segment whose stated length fits its content. */
std::string segment (int code, const std::string& content)
{
    return marker (code) + big16 ((int) content.size() + 2) + content;
}

/** The header of a frame in three colours. */
std::string frame (int width, int height, int code = 0xc0)
{
    return segment (code, std::string (1, 8) + big16 (height) + big16 (width) + std::string ("\3\1\x11\0\2\x11\0\3\x11\0", 10));
}

const std::string start = marker (0xd8);
const std::string tail (16, 0);

/** The size as the decoder finds it, as "width x height"; empty for none. */
std::string forDecoder (const std::string& bytes)
{
    const auto size = JpegHeader::sizeForDecoder (reinterpret_cast<const juce::uint8*> (bytes.data()), bytes.size());
    return size.has_value() ? std::to_string (size->width) + " x " + std::to_string (size->height) : std::string();
}

/** A real picture's bytes behind its first two. */
std::string realPicture()
{
    juce::MemoryOutputStream bytes;
    juce::JPEGImageFormat().writeImageToStream (juce::Image (juce::Image::RGB, 20, 10, true), bytes);
    return { static_cast<const char*> (bytes.getData()) + 2, bytes.getDataSize() - 2 };
}
}

TEST (JpegHeader, TheDecoderFindsTheFrameOfAPlainFile)
{
    EXPECT_EQ (forDecoder (start + segment (0xe0, "JFIF") + frame (640, 480) + tail), "640 x 480");
    EXPECT_EQ (forDecoder (start + segment (0xc4, "tables") + frame (640, 480, 0xc2) + tail), "640 x 480");
    EXPECT_EQ (forDecoder (start + "stray" + marker (0xff) + frame (640, 480) + tail), "640 x 480") << "strays and fill bytes are skipped";
}

TEST (JpegHeader, TheDecoderSkipsMarkersWithoutALength)
{
    for (const int code : { 0x00, 0x01, 0xd0, 0xd3, 0xd7 })
        EXPECT_EQ (forDecoder (start + marker (code) + frame (640, 480) + tail), "640 x 480") << code;
}

TEST (JpegHeader, TheDecoderGivesUpAtTheEndOfTheHeader)
{
    for (const int code : { 0xd8, 0xd9, 0xda })
        EXPECT_EQ (forDecoder (start + marker (code) + frame (640, 480) + tail), "") << code;

    EXPECT_EQ (forDecoder (start), "");
    EXPECT_EQ (forDecoder (start + "\xff"), "");
    EXPECT_EQ (forDecoder (start + "\xff\xff\xff\xff"), "");
    EXPECT_EQ (forDecoder (start + frame (640, 480).substr (0, 8)), "");
    EXPECT_EQ (forDecoder (start + frame (640, 480).substr (0, 9)), "640 x 480");
}

TEST (JpegHeader, TheDecoderTakesTooShortALengthForNone)
{
    EXPECT_EQ (forDecoder (start + marker (0xe1) + big16 (0) + frame (640, 480) + tail), "640 x 480");
    EXPECT_EQ (forDecoder (start + marker (0xe1) + big16 (1) + frame (640, 480) + tail), "640 x 480");
}

TEST (JpegHeader, AFrameThatOnlyTheDecoderWouldSeeIsNeverDecoded)
{
    const auto file = in (freshFolder ("pictures"), "hidden.jpg");
    const auto huge = frame (60000, 60000);

    // By the header's rule these two markers have a length and hide what follows; the decoder goes on right behind them.
    for (const int code : { 0x01, 0x00 })
    {
        writeBytes (file, start + marker (code) + big16 ((int) huge.size() + 2) + huge + realPicture());
        EXPECT_TRUE (isAcceptableImageHeader (file)) << code;
        EXPECT_FALSE (decodesWithinLimits (file)) << code;
        EXPECT_FALSE (isAcceptableProfileImage (file.getFullPathName())) << code;
    }

    writeBytes (file, start + realPicture());
    EXPECT_TRUE (decodesWithinLimits (file));
    EXPECT_TRUE (isAcceptableProfileImage (file.getFullPathName()));
}
