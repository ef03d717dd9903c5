#include "platform/linux/PeVersionReader.h"
#include "platform/ProductVersion.h"
#include "support/Files.h"
#include "support/PeImage.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
constexpr std::uint32_t upper = (13u << 16) | 4u, lower = (27u << 16) | 9u;

juce::String versionOf (const std::string& bytes)
{
    juce::MemoryInputStream stream (bytes.data(), bytes.size(), false);
    return platform::readPeProductVersion (stream);
}

bool isVersionOrNothing (const juce::String& text)
{
    const auto numbers = juce::StringArray::fromTokens (text, ".", {});
    return text.isEmpty() || (numbers.size() == 3 && text.containsOnly ("0123456789."));
}

class PeVersionReader : public ::testing::TestWithParam<PeImage::Format>
{
protected:
    PeImage image { GetParam(), upper, lower };
};
}

INSTANTIATE_TEST_SUITE_P (BothFormats, PeVersionReader, ::testing::Values (PeImage::Format::pe32, PeImage::Format::pe32Plus),
                          [] (const auto& format) { return format.param == PeImage::Format::pe32 ? "Pe32" : "Pe32Plus"; });

//==============================================================================
TEST_P (PeVersionReader, GivesTheFirstThreeNumbersOfTheProductVersion)
{
    EXPECT_EQ (versionOf (image.bytes), "13.4.27");
    EXPECT_EQ (versionOf (PeImage (GetParam(), 0, 0).bytes), "0.0.0");
    EXPECT_EQ (versionOf (PeImage (GetParam(), 0xffffffffu, 0xffffffffu).bytes), "65535.65535.65535");
}

TEST_P (PeVersionReader, AFileCutOffAnywhereHasNoVersion)
{
    for (size_t length = 0; length < image.bytes.size(); ++length)
    {
        const auto needsTheRest = length < PeImage::fixedBlock + 52;
        ASSERT_EQ (versionOf (image.bytes.substr (0, length)), needsTheRest ? "" : "13.4.27") << length;
    }
}

TEST_P (PeVersionReader, EveryFalsifiedNumberThatMattersMeansNoVersion)
{
    struct Falsification { const char* what; size_t position; std::uint32_t value; };
    const auto section = image.sectionHeader;

    const Falsification cases[]
    {
        { "no MZ", 0, 0 }, { "PE header behind the end", 0x3c, 0xffffffffu }, { "PE header at the last byte", 0x3c, (std::uint32_t) image.bytes.size() - 1 },
        { "negative PE header", 0x3c, 0x80000000u }, { "no PE", PeImage::peHeader, 0x4550 + 1 },
        { "no sections", PeImage::sectionCount - 2, 0x0000014cu }, { "more sections than a loader takes", PeImage::sectionCount - 2, 0x0061014cu },
        { "unknown format", PeImage::optionalHeader, 0x107 }, { "two data directories", image.directoryCount, 2 },
        { "no resources", image.resourceDirectory, 0 }, { "resources before the section", image.resourceDirectory, 0xfff },
        { "resources behind the section", image.resourceDirectory, 0x2000 }, { "resources at the end of memory", image.resourceDirectory, 0xffffffffu },
        { "section elsewhere in memory", section + 12, 0x100000 }, { "section at the end of memory", section + 12, 0xffffffffu },
        { "empty section", section + 16, 0 }, { "section without room for the block", section + 16, 100 },
        { "section behind the end", section + 20, 0xfffffff0u },
        { "no types", PeImage::typeDirectory + 12, 0 }, { "another type alone", PeImage::typeDirectory + 12, 0x00010000u },
        { "other types alone", PeImage::versionEntry, 5 }, { "a named type", PeImage::versionEntry, 0x80000010u },
        { "a type that is data", PeImage::versionEntry + 4, 32 }, { "a type that leads to itself", PeImage::versionEntry + 4, 0x80000000u },
        { "a type that leads behind the end", PeImage::versionEntry + 4, 0xffffffffu },
        { "no names", PeImage::nameDirectory + 12, 0 }, { "a name that leads to itself", PeImage::nameDirectory + 20, 0x80000000u | 32 },
        { "a name that is data", PeImage::nameDirectory + 20, 56 },
        { "no languages", PeImage::languageDirectory + 12, 0 }, { "a fourth level", PeImage::languageDirectory + 20, 0x80000000u | 80 },
        { "data behind the end", PeImage::languageDirectory + 20, 0x7fffffffu },
        { "block behind the section", PeImage::dataEntry, 0x2000 }, { "block at the end of memory", PeImage::dataEntry, 0xfffffff0u },
        { "block before the section", PeImage::dataEntry, 0 }, { "block one byte short", PeImage::dataEntry + 4, 91 },
        { "empty block", PeImage::dataEntry + 4, 0 }, { "no fixed block", PeImage::versionBlock, 0 }, { "short fixed block", PeImage::versionBlock, 92 | (51u << 16) },
        { "another key", PeImage::versionBlock + 6, 'V' | ('T' << 16) }, { "a longer key", PeImage::versionBlock + 36, 'X' },
        { "no signature", PeImage::fixedBlock, 0xFEEF04BCu },
    };

    for (const auto& test : cases)
    {
        auto changed = image;
        changed.set32 (test.position, test.value);
        EXPECT_EQ (versionOf (changed.bytes), "") << test.what;
    }
}

TEST_P (PeVersionReader, CountsBeyondTheTableDoNotLeadOutOfTheFile)
{
    image.set32 (PeImage::typeDirectory + 12, 0xffffffffu);
    EXPECT_EQ (versionOf (image.bytes), "13.4.27") << "the entry is still there";

    image.set32 (PeImage::versionEntry, 5);
    EXPECT_EQ (versionOf (image.bytes), "");
}

TEST_P (PeVersionReader, AnyOneFalsifiedByteGivesAVersionOrNothing)
{
    for (size_t position = 0; position < image.bytes.size(); ++position)
        for (const char value : { '\x00', '\x01', '\x7f', '\x80', '\xff' })
        {
            auto bytes = image.bytes;
            bytes[position] = value;
            ASSERT_TRUE (isVersionOrNothing (versionOf (bytes))) << position;
        }
}

TEST_P (PeVersionReader, ReadsAResourceFarIntoAHugeFile)
{
    constexpr std::uint32_t farAway = 0xF0000000u;
    const auto file = in (freshFolder ("pe"), "huge.exe");
    image.set32 (image.sectionHeader + 20, farAway);

    {
        juce::FileOutputStream stream (file);
        ASSERT_TRUE (stream.write (image.bytes.data(), image.typeDirectory));
        ASSERT_TRUE (stream.setPosition (farAway));
        ASSERT_TRUE (stream.write (image.bytes.data() + image.typeDirectory, image.bytes.size() - image.typeDirectory));
    }

    EXPECT_EQ (platform::productVersionOf (file), "13.4.27");
}

//==============================================================================
TEST (ProductVersion, ReadsAProgramFile)
{
    const PeImage image (PeImage::Format::pe32Plus, upper, lower);

    EXPECT_EQ (platform::productVersionOf (writeBytes (in (freshFolder ("pe"), "a.exe"), image.bytes)), "13.4.27");
}

TEST (ProductVersion, WhatIsNoProgramHasNone)
{
    const auto folder = freshFolder ("pe");

    EXPECT_EQ (platform::productVersionOf (in (folder, "absent.exe")), "");
    EXPECT_EQ (platform::productVersionOf (folder), "");
    EXPECT_EQ (platform::productVersionOf (write (in (folder, "empty.exe"), {})), "");
    EXPECT_EQ (platform::productVersionOf (write (in (folder, "text.exe"), "MZ but no program")), "");
    EXPECT_EQ (platform::productVersionOf (write (in (folder, "script.exe"), "#!/bin/sh\nexit 0\n")), "");
    EXPECT_EQ (platform::productVersionOf (juce::File()), "");
}
