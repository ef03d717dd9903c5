#include "creator/ImageRules.h"
#include "creator/JpegHeader.h"
#include "support/Files.h"
#include "support/PictureBuilder.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
const std::string start = jpegStart();
const std::string tail (16, 0);

/** The size as the decoder finds it, as "width x height"; empty for none. */
std::string forDecoder (const std::string& bytes)
{
    const auto size = JpegHeader::sizeForDecoder (reinterpret_cast<const juce::uint8*> (bytes.data()), bytes.size());
    return size.has_value() ? std::to_string (size->width) + " x " + std::to_string (size->height) : std::string();
}
}

TEST (JpegHeader, TheDecoderFindsTheFrameOfAPlainFile)
{
    EXPECT_EQ (forDecoder (start + jpegSegment (0xe0, "JFIF") + jpegFrame (640, 480) + tail), "640 x 480");
    EXPECT_EQ (forDecoder (start + jpegSegment (0xc4, "tables") + jpegFrame (640, 480, 0xc2) + tail), "640 x 480");
    EXPECT_EQ (forDecoder (start + "stray" + jpegMarker (0xff) + jpegFrame (640, 480) + tail), "640 x 480") << "strays and fill bytes are skipped";
}

TEST (JpegHeader, TheDecoderSkipsMarkersWithoutALength)
{
    for (const int code : { 0x00, 0x01, 0xd0, 0xd3, 0xd7 })
        EXPECT_EQ (forDecoder (start + jpegMarker (code) + jpegFrame (640, 480) + tail), "640 x 480") << code;
}

TEST (JpegHeader, TheDecoderGivesUpAtTheEndOfTheHeader)
{
    for (const int code : { 0xd8, 0xd9, 0xda })
        EXPECT_EQ (forDecoder (start + jpegMarker (code) + jpegFrame (640, 480) + tail), "") << code;

    EXPECT_EQ (forDecoder (start), "");
    EXPECT_EQ (forDecoder (start + "\xff"), "");
    EXPECT_EQ (forDecoder (start + "\xff\xff\xff\xff"), "");
    EXPECT_EQ (forDecoder (start + jpegFrame (640, 480).substr (0, 8)), "");
    EXPECT_EQ (forDecoder (start + jpegFrame (640, 480).substr (0, 9)), "640 x 480");
}

TEST (JpegHeader, TheDecoderTakesTooShortALengthForNone)
{
    EXPECT_EQ (forDecoder (start + jpegMarker (0xe1) + big16 (0) + jpegFrame (640, 480) + tail), "640 x 480");
    EXPECT_EQ (forDecoder (start + jpegMarker (0xe1) + big16 (1) + jpegFrame (640, 480) + tail), "640 x 480");
}

TEST (JpegHeader, AFrameThatOnlyTheDecoderWouldSeeIsNeverDecoded)
{
    const auto file = in (freshFolder ("pictures"), "hidden.jpg");
    const auto realPicture = blankJpeg (20, 10).substr (start.size());
    const auto huge = jpegFrame (60000, 60000);

    // By the header's rule these two markers have a length and hide what follows; the decoder goes on right behind them.
    for (const int code : { 0x01, 0x00 })
    {
        writeBytes (file, start + jpegMarker (code) + big16 ((int) huge.size() + 2) + huge + realPicture);
        EXPECT_TRUE (isAcceptableImageHeader (file)) << code;
        EXPECT_FALSE (decodesWithinLimits (file)) << code;
        EXPECT_FALSE (isAcceptableProfileImage (file.getFullPathName())) << code;
    }

    writeBytes (file, start + realPicture);
    EXPECT_TRUE (decodesWithinLimits (file));
    EXPECT_TRUE (isAcceptableProfileImage (file.getFullPathName()));
}
