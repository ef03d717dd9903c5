#include "creator/ImageRules.h"
#include "creator/JpegHeader.h"
#include "support/Files.h"
#include "support/PictureBuilder.h"
#include "support/TinyJpeg.h"

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

TEST (JpegHeader, TheDecodersFrameTellsItsColours)
{
    const auto colours = [] (const std::string& bytes) { return JpegHeader::coloursForDecoder (reinterpret_cast<const juce::uint8*> (bytes.data()), bytes.size()); };

    for (const int count : { 1, 2, 3, 4 })
        EXPECT_EQ (colours (jpegOfComponents (count)), count);

    EXPECT_EQ (colours (start + jpegFrame (640, 480).substr (0, 9)), 0) << "broken off";
    EXPECT_EQ (colours (start + jpegFrame (640, 480).substr (0, 10)), 3);
    EXPECT_EQ (colours (start + tail), 0);
}

TEST (JpegHeader, ScansAreCountedUpToTheEndOfThePicture)
{
    const auto count = [] (const std::string& bytes) { return JpegHeader::scanCount (reinterpret_cast<const juce::uint8*> (bytes.data()), bytes.size()); };

    for (const int scans : { 1, 2, 10, 1000 })
        EXPECT_EQ (count (jpegOfScans (scans)), scans);

    const auto scan = jpegSegment (0xda, std::string (6, 0));
    const std::string escaped ("\xff\0\xff\xd3 \xff\xff\0", 8);
    EXPECT_EQ (count (start), 0);
    EXPECT_EQ (count (start + scan + escaped + scan + escaped), 2) << "escaped bytes and restarts are of the picture";
    EXPECT_EQ (count (start + jpegSegment (0xe1, scan + scan) + scan + tail), 1) << "a thumbnail's do not count";
    EXPECT_EQ (count (start + scan + tail + jpegMarker (0xd9) + scan + tail), 1) << "nor what follows the end";
    EXPECT_EQ (count (start + scan + tail + jpegStart() + scan + tail), 1);
    EXPECT_EQ (count (start + scan + jpegMarker (0xda)), 1) << "broken off";
}

TEST (JpegHeader, APictureOfTooManyScansIsNeverDecoded)
{
    const auto file = in (freshFolder ("pictures"), "scans.jpg");

    for (const auto& [scans, accepted] : { std::pair { 1, true }, { 2, true }, { 100, true }, { 101, false }, { 400000, false } })
    {
        writeBytes (file, jpegOfScans (scans));
        EXPECT_TRUE (isAcceptableImageHeader (file)) << scans;
        EXPECT_EQ (decodesWithinLimits (file), accepted) << scans;
        EXPECT_EQ (isAcceptableProfileImage (file.getFullPathName()), accepted) << scans;
    }
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
