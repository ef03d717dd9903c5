#include "creator/ImageRules.h"
#include "support/Files.h"
#include "support/PictureBuilder.h"
#include "support/SpecialFiles.h"
#include "support/TinyJpeg.h"

#include <gtest/gtest.h>

namespace
{
using namespace zorva::test;

bool accepts (const std::string& bytes)
{
    const bool fromMemory = isAcceptableImageHeader (reinterpret_cast<const juce::uint8*> (bytes.data()),
                                                     juce::jmin (bytes.size(), (size_t) 1048576));
    EXPECT_EQ (isAcceptableImageHeader (writeBytes (freshFolder ("headers").getChildFile ("x.bin"), bytes)), fromMemory);
    return fromMemory;
}

juce::File picture (const juce::String& name)
{
    const auto isPng = name.endsWithIgnoreCase (".png");
    return writeBytes (in (freshFolder ("pictures " + name), name), isPng ? blankPng (8, 8) : blankJpeg (8, 8));
}
}

//==============================================================================
TEST (ImageRules, APngHeaderWithinTheLimitsPasses)
{
    const struct { juce::uint32 width, height; bool passes; } cases[]
    {
        { 1, 1, true }, { 8192, 4096, true }, { 8192, 4097, false }, { 4096, 8192, true }, { 8193, 1, false }, { 1, 8193, false }, { 0, 5, false },
        { 5, 0, false }, { 8192, 8192, false }, { 0x80000000u, 1, false }, { 0xffffffffu, 0xffffffffu, false }, { 65536, 65536, false },
    };

    for (const auto& each : cases)
        EXPECT_EQ (accepts (pngHeader (each.width, each.height)), each.passes) << each.width << " x " << each.height;
}

TEST (ImageRules, ATruncatedOrForeignPngHeaderFails)
{
    const auto header = pngHeader (8, 8);
    EXPECT_FALSE (accepts (header.substr (0, 23)));
    EXPECT_FALSE (accepts (header.substr (0, 12) + "IDAT" + header.substr (16)));
    EXPECT_FALSE (accepts ("GIF89a" + std::string (30, 0)));
    EXPECT_FALSE (accepts (""));
    EXPECT_FALSE (accepts ("\x89PN"));
}

TEST (ImageRules, AJpegHeaderWithinTheLimitsPasses)
{
    EXPECT_TRUE (accepts (jpegHeader (8192, 4096)));
    EXPECT_FALSE (accepts (jpegHeader (8192, 4097)));
    EXPECT_FALSE (accepts (jpegHeader (8193, 1)));
    EXPECT_FALSE (accepts (jpegHeader (0, 8)));
    EXPECT_FALSE (accepts (jpegHeader (8, 0)));
    EXPECT_FALSE (accepts (jpegHeader (65535, 65535)));
}

TEST (ImageRules, OnlyStartOfFrameMarkersAreFrames)
{
    for (int code = 0xc0; code <= 0xcf; ++code)
    {
        const bool isFrame = code != 0xc4 && code != 0xc8 && code != 0xcc;
        EXPECT_EQ (accepts (jpegHeader (8, 8, code)), isFrame) << code;
    }
}

TEST (ImageRules, AFrameIsFoundBehindOtherSegmentsFillBytesAndBareMarkers)
{
    EXPECT_TRUE (accepts (jpegHeader (8, 8, 0xc0, jpegSegment (0xe0, "JFIF") + jpegSegment (0xdb, std::string (65, 1)))));
    EXPECT_TRUE (accepts (jpegHeader (8, 8, 0xc2, std::string ("\xff\xff\xff", 3) + "\xd0" + std::string ("\xff\xd7", 2))));
    EXPECT_TRUE (accepts (jpegHeader (8, 8, 0xc0, "stray bytes")));
}

TEST (ImageRules, ABrokenJpegFails)
{
    EXPECT_FALSE (accepts (std::string ("\xff\xd8", 2) + std::string (30, '\xff'))) << "fill bytes to the end";
    EXPECT_FALSE (accepts (std::string ("\xff\xd8\xff\xe0\0\1", 6) + std::string (30, 0))) << "a length below 2";
    EXPECT_FALSE (accepts (std::string ("\xff\xd8\xff\xe0\xff\xff", 6) + std::string (30, 0))) << "a segment past the end";
    EXPECT_FALSE (accepts (std::string ("\xff\xd8\xff\xc0", 4) + std::string (4, 0)));
    EXPECT_FALSE (accepts ("\xff\xd8" + jpegSegment (0xe0, std::string (100, 'x')))) << "no frame at all";
    EXPECT_FALSE (accepts (jpegHeader (8, 8).substr (0, 11)));
}

TEST (ImageRules, AJpegWhoseFrameLiesBeyondTheFirstMebibyteIsRefused)
{
    std::string filler;

    while (filler.size() < 1048576)
        filler += jpegSegment (0xe1, std::string (65000, 'x'));

    EXPECT_FALSE (accepts (jpegHeader (8, 8, 0xc0, filler)));
    EXPECT_TRUE (accepts (jpegHeader (8, 8, 0xc0, filler.substr (0, 65004 * 10))));
}

//==============================================================================
TEST (ImageRules, PngAndJpegFilesPass)
{
    EXPECT_TRUE (isAcceptableProfileImage ({})) << "an empty path";
    EXPECT_TRUE (isAcceptableProfileImage (picture ("a.png").getFullPathName()));
    EXPECT_TRUE (isAcceptableProfileImage (picture ("A.PNG").getFullPathName()));
    EXPECT_TRUE (isAcceptableProfileImage (picture ("a.jpg").getFullPathName()));
    EXPECT_TRUE (isAcceptableProfileImage (picture ("a.jpeg").getFullPathName()));
}

TEST (ImageRules, OtherPathsFail)
{
    const auto good = picture ("a.png");
    EXPECT_FALSE (isAcceptableProfileImage ("a.png")) << "relative";
    EXPECT_FALSE (isAcceptableProfileImage ("~/a.png"));
    EXPECT_FALSE (isAcceptableProfileImage (good.getSiblingFile ("absent.png").getFullPathName()));
    EXPECT_FALSE (isAcceptableProfileImage (good.getParentDirectory().getFullPathName()));
    EXPECT_FALSE (isAcceptableProfileImage ("/dev/zero"));
    EXPECT_FALSE (isAcceptableProfileImage ("/" + juce::String::repeatedString ("x", 2048)));

    const auto renamed = good.getSiblingFile ("a.gif");
    ASSERT_TRUE (good.copyFileTo (renamed));
    EXPECT_FALSE (isAcceptableProfileImage (renamed.getFullPathName()));
    EXPECT_FALSE (isAcceptableProfileImage (specialFile (good.getParentDirectory(), ".png").getFullPathName())) << "and returns";
}

TEST (ImageRules, APathThroughALinkAnywhereFails)
{
    const auto good = picture ("a.png");
    const auto folder = freshFolder ("links");
    EXPECT_FALSE (isAcceptableProfileImage (link (in (folder, "b.png"), good.getFullPathName()).getFullPathName()));
    const auto way = link (in (folder, "way"), good.getParentDirectory().getFullPathName());
    EXPECT_FALSE (isAcceptableProfileImage (way.getFullPathName() + "/a.png"));
}

TEST (ImageRules, SizeAndContentDecide)
{
    const auto folder = freshFolder ("contents");
    EXPECT_FALSE (isAcceptableProfileImage (writeBytes (in (folder, "empty.png"), "").getFullPathName()));
    EXPECT_FALSE (isAcceptableProfileImage (writeBytes (in (folder, "header.png"), pngHeader (8, 8)).getFullPathName())) << "does not decode";
    EXPECT_FALSE (isAcceptableProfileImage (writeBytes (in (folder, "text.png"), "not a picture").getFullPathName()));

    auto bytes = blankPng (8, 8);
    bytes.resize (20971520, '\0');
    EXPECT_TRUE (isAcceptableProfileImage (writeBytes (in (folder, "most.png"), bytes).getFullPathName()));
    bytes += '\0';
    EXPECT_FALSE (isAcceptableProfileImage (writeBytes (in (folder, "more.png"), bytes).getFullPathName()));
}

TEST (ImageRules, AJpegInColoursThatAreNotTheScreensFails)
{
    const std::pair<int, bool> cases[] { { 1, true }, { 2, false }, { 3, true }, { 4, false } };
    const auto folder = freshFolder ("colours");

    for (const auto& [components, passes] : cases)
    {
        const auto file = writeBytes (in (folder, "x.jpg"), jpegOfComponents (components));
        EXPECT_TRUE (isAcceptableImageHeader (file)) << components;
        EXPECT_EQ (isAcceptableProfileImage (file.getFullPathName()), passes) << components;
    }
}

TEST (ImageRules, NoBrokenPictureBringsTheDecoderDown)
{
    const auto folder = freshFolder ("broken");
    const auto file = in (folder, "x.png");

    for (const bool asJpeg : { false, true })
    {
        const auto whole = asJpeg ? blankJpeg (40, 30) : blankPng (40, 30);
        const auto step = juce::jmax ((size_t) 1, whole.size() / 60);

        for (size_t length = 0; length < whole.size(); length += step)
            decodesWithinLimits (writeBytes (file, whole.substr (0, length)));

        for (size_t at = 0; at < whole.size(); at += step)
        {
            auto flipped = whole;
            flipped[at] = (char) ~flipped[at];
            decodesWithinLimits (writeBytes (file, flipped));
        }

        EXPECT_TRUE (decodesWithinLimits (writeBytes (file, whole)));
    }

    EXPECT_FALSE (decodesWithinLimits (writeBytes (file, pngHeader (8, 8))));
}
