#include "creator/WavDuration.h"
#include "support/Files.h"
#include "support/WavBuilder.h"

#include <gtest/gtest.h>

namespace
{
using namespace zorva::test;
using Format = WavBuilder::Format;

/** The duration, or -1 when it cannot be measured. */
double durationOf (const std::string& bytes)
{
    juce::MemoryInputStream stream (bytes.data(), bytes.size(), false);
    return wavDurationInSeconds (stream).value_or (-1.0);
}

double durationOf (const Format& format) { return durationOf (WavBuilder().format (format).data (4000).bytes()); }
}

TEST (WavDuration, IsTheDataSizeOverTheByteRate)
{
    EXPECT_DOUBLE_EQ (durationOf (WavBuilder().format().data (16000).bytes()), 2.0);
    EXPECT_DOUBLE_EQ (durationOf ({ .byteRate = 32000 }), 0.125);
}

TEST (WavDuration, IsTheSameForAFile)
{
    const auto file = writeBytes (freshFolder ("wavs").getChildFile ("a.wav"), WavBuilder().format().data (8000).bytes());
    EXPECT_DOUBLE_EQ (wavDurationInSeconds (file).value_or (-1.0), 1.0);
    EXPECT_FALSE (wavDurationInSeconds (file.getSiblingFile ("absent.wav")).has_value());
}

TEST (WavDuration, DataMayComeFirstAndOtherChunksAreSkipped)
{
    EXPECT_DOUBLE_EQ (durationOf (WavBuilder().data (8000).format().bytes()), 1.0);
    EXPECT_DOUBLE_EQ (durationOf (WavBuilder().chunk ("LIST", "odd").format().chunk ("fact", "1234").data (8000).bytes()), 1.0);
    EXPECT_DOUBLE_EQ (durationOf (WavBuilder().format().data (8000).chunk ("id3 ", "tail").bytes()), 1.0);
}

TEST (WavDuration, ALongerFormatChunkPasses)
{
    for (const int size : { 16, 18, 40, 4096 })
        EXPECT_GT (durationOf ({ .size = size }), 0.0) << size;

    EXPECT_LT (durationOf (WavBuilder().chunk ("fmt ", std::string (14, '\1')).data (4000).bytes()), 0.0);
    EXPECT_LT (durationOf ({ .size = 4097 }), 0.0);
}

TEST (WavDuration, FormatsOutsideTheLimitsFail)
{
    const std::pair<Format, bool> cases[]
    {
        { { .tag = 1 }, true }, { { .tag = 3 }, true }, { { .tag = 65534 }, true }, { { .tag = 2 }, false }, { { .tag = 0 }, false },
        { { .channels = 64 }, true }, { { .channels = 0 }, false }, { { .channels = 65 }, false },
        { { .sampleRate = 8000 }, true }, { { .sampleRate = 7999 }, false }, { { .sampleRate = 384000 }, true }, { { .sampleRate = 384001 }, false },
        { { .byteRate = 0 }, false }, { { .blockAlign = 0 }, false },
        { { .bits = 8 }, true }, { { .bits = 7 }, false }, { { .bits = 64 }, true }, { { .bits = 65 }, false },
    };

    for (const auto& [format, passes] : cases)
        EXPECT_EQ (durationOf (format) > 0.0, passes) << format.tag << " " << format.channels << " " << format.sampleRate << " " << format.bits;
}

TEST (WavDuration, ARiffSizeThatOverstatesTheFileByOneByteFails)
{
    const auto wav = WavBuilder().format().data (4000);
    EXPECT_GT (durationOf (wav.bytes()), 0.0);
    EXPECT_GT (durationOf (wav.bytes (-100)), 0.0) << "less than the file is no lie that matters";
    EXPECT_LT (durationOf (wav.bytes (1)), 0.0);
}

TEST (WavDuration, WhatIsNoRiffWaveFails)
{
    auto bytes = WavBuilder().format().data (4000).bytes();
    EXPECT_LT (durationOf ("RIFX" + bytes.substr (4)), 0.0);
    EXPECT_LT (durationOf (bytes.substr (0, 8) + "WAVX" + bytes.substr (12)), 0.0);
    EXPECT_LT (durationOf (std::string (5000, 'x')), 0.0);
    EXPECT_LT (durationOf (std::string()), 0.0);
    EXPECT_LT (durationOf (bytes.substr (0, 43)), 0.0) << "under 44 bytes";
}

TEST (WavDuration, BothChunksMustBeThereAndNotEmpty)
{
    EXPECT_LT (durationOf (WavBuilder().format().chunk ("LIST", std::string (100, 'x')).bytes()), 0.0);
    EXPECT_LT (durationOf (WavBuilder().data (4000).bytes()), 0.0);
    EXPECT_LT (durationOf (WavBuilder().format().data (0).chunk ("LIST", std::string (100, 'x')).bytes()), 0.0);
}

TEST (WavDuration, AChunkLargerThanWhatIsLeftFails)
{
    EXPECT_LT (durationOf (WavBuilder().format().chunk ("data", std::string (4000, 'x'), 4001).bytes()), 0.0);
    EXPECT_LT (durationOf (WavBuilder().chunk ("LIST", "abcd", 0xffffffff).format().data (4000).bytes()), 0.0);
}

TEST (WavDuration, AChunkThatStartsAfterTheFirstMebibyteIsNotFound)
{
    // 12 of the file, 24 of "fmt ", 8 of the filler's own header: data then starts at 44 + filler.
    EXPECT_GT (durationOf (WavBuilder().format().chunk ("junk", std::string (1048576 - 44 - 2, 'j')).data (4000).bytes()), 0.0);
    EXPECT_LT (durationOf (WavBuilder().format().chunk ("junk", std::string (1048576 - 44, 'j')).data (4000).bytes()), 0.0);
}

TEST (WavDuration, AThousandEmptyChunksEndInTime)
{
    WavBuilder wav;

    for (int i = 0; i < 200000; ++i)
        wav.chunk ("junk", "");

    EXPECT_LT (durationOf (wav.format().data (4000).bytes()), 0.0) << "the format starts after the first mebibyte";
}
