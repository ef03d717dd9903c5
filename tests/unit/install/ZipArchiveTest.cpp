#include "install/ZipArchive.h"
#include "support/Files.h"
#include "support/ZipBuilder.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
/** Bytes in memory that remember how many of them were read. */
class CountedStream final : public juce::MemoryInputStream
{
public:
    CountedStream (const std::string& bytes, juce::int64& counter)
        : juce::MemoryInputStream (bytes.data(), bytes.size(), false), numRead (counter) {}

    int read (void* destination, int size) override
    {
        const auto count = juce::MemoryInputStream::read (destination, size);
        numRead += count;
        return count;
    }

private:
    juce::int64& numRead;
};

std::unique_ptr<juce::InputStream> streamOf (const std::string& bytes)
{
    return std::make_unique<juce::MemoryInputStream> (bytes.data(), bytes.size(), true);
}

size_t numEntriesIn (const std::string& bytes)
{
    return ZipArchive (streamOf (bytes)).getEntries().size();
}

/** A number as it stands in an archive. */
std::string bytesOf (size_t number, int size)
{
    std::string bytes;

    for (int i = 0; i < size; ++i)
        bytes += (char) ((number >> (8 * i)) & 0xff);

    return bytes;
}

/** The bytes with those of a number overwritten, counted from the end. */
std::string withEnd (std::string bytes, size_t fromEnd, const std::string& number)
{
    return bytes.replace (bytes.size() - fromEnd, number.size(), number);
}

// Where the end record's numbers are, counted from the archive's end.
constexpr size_t countAt = 12, directorySizeAt = 10, directoryStartAt = 6, commentSizeAt = 2;

std::string contentOf (ZipArchive& archive, size_t index)
{
    const auto stream = archive.open (archive.getEntries()[index]);
    return stream != nullptr ? stream->readEntireStreamAsString().toStdString() : "(null)";
}
}

//==============================================================================
TEST (ZipArchive, TellsWhatTheDirectoryStates)
{
    ZipBuilder builder;
    builder.file ("a/deflated", std::string (1000, 'x')).folder ("a/b").link ("l", "a");
    builder.add ({ "back\\", "", 0, 0x0800, 0100644, 77, {}, 5 }).add ({ "secret", "s", 99, 0x0801, 0100644, {}, {}, {} });
    const auto bytes = builder.bytes();
    ZipArchive archive (streamOf (bytes));
    const auto& entries = archive.getEntries();
    ASSERT_EQ (entries.size(), (size_t) 5);

    EXPECT_EQ (entries[0].name, "a/deflated");
    EXPECT_EQ (entries[0].uncompressedSize, 1000);
    EXPECT_LT (entries[0].compressedSize, 100);
    EXPECT_EQ (entries[0].headerOffset, 0);
    EXPECT_EQ (entries[0].crc32, ZipBuilder::crc32 (std::string (1000, 'x')));
    EXPECT_EQ (entries[0].modified, juce::Time (2026, 0, 1, 0, 0));
    EXPECT_EQ (entries[3].uncompressedSize, 77);
    EXPECT_EQ (entries[3].crc32, 5u);

    const struct { bool folder, link, encrypted, unpackable; int method; } expected[]
    {
        { false, false, false, true, 8 }, { true, false, false, true, 0 }, { false, true, false, true, 0 },
        { true, false, false, true, 0 }, { false, false, true, false, 99 },
    };

    for (size_t i = 0; i < entries.size(); ++i)
    {
        EXPECT_EQ (entries[i].isFolder(), expected[i].folder) << i;
        EXPECT_EQ (entries[i].isSymbolicLink, expected[i].link) << i;
        EXPECT_EQ (entries[i].isEncrypted, expected[i].encrypted) << i;
        EXPECT_EQ (entries[i].canBeUnpacked(), expected[i].unpackable) << i;
        EXPECT_EQ (entries[i].method, expected[i].method) << i;
    }

    EXPECT_EQ (contentOf (archive, 0), std::string (1000, 'x'));
    EXPECT_EQ (contentOf (archive, 2), "a");
    EXPECT_EQ (contentOf (archive, 4), "(null)");
    EXPECT_EQ (contentOf (archive, 0), std::string (1000, 'x')) << "and again";
}

TEST (ZipArchive, AgreesWithTheFramework)
{
    juce::ZipFile::Builder builder;
    juce::Random random (1);

    for (int i = 0; i < 300; ++i)
    {
        const auto text = juce::String::repeatedString (juce::String (i) + " ", random.nextInt (5000));
        builder.addEntry (new juce::MemoryInputStream (text.toRawUTF8(), text.getNumBytesAsUTF8(), true), i % 10,
                          "folder " + juce::String (i % 7) + "/" + juce::String (i), juce::Time (1990 + i % 60, i % 12, 1 + i % 28, i % 24, i % 60, i % 60));
    }

    juce::MemoryOutputStream out;
    ASSERT_TRUE (builder.writeToStream (out, nullptr));
    const std::string bytes (static_cast<const char*> (out.getData()), out.getDataSize());
    juce::MemoryInputStream in (bytes.data(), bytes.size(), false);
    juce::ZipFile expected (in);
    ZipArchive archive (streamOf (bytes));
    ASSERT_EQ ((int) archive.getEntries().size(), expected.getNumEntries());

    for (int i = 0; i < expected.getNumEntries(); ++i)
    {
        const auto& entry = archive.getEntries()[(size_t) i];
        EXPECT_EQ (entry.name, expected.getEntry (i)->filename);
        EXPECT_EQ (entry.uncompressedSize, expected.getEntry (i)->uncompressedSize);
        EXPECT_EQ (entry.isSymbolicLink, expected.getEntry (i)->isSymbolicLink);
        EXPECT_EQ (entry.modified, expected.getEntry (i)->fileTime);

        const std::unique_ptr<juce::InputStream> stream (expected.createStreamForEntry (i));
        EXPECT_EQ (contentOf (archive, (size_t) i), stream->readEntireStreamAsString().toStdString()) << i;
    }
}

//==============================================================================
TEST (ZipArchive, WhatIsNoArchiveHasNoEntries)
{
    EXPECT_TRUE (ZipArchive (nullptr).getEntries().empty());

    for (const auto& bytes : { std::string(), std::string ("x"), std::string (22, '\0'), std::string (100000, 'P'), std::string ("PK\5\6"),
                               ZipBuilder().bytes() })
        EXPECT_EQ (numEntriesIn (bytes), 0u) << bytes.size();
}

TEST (ZipArchive, NoPartOfAnArchiveHasEntries)
{
    const auto bytes = ZipBuilder().file ("a", "x").folder ("b").file ("b/c", "y").bytes();
    ASSERT_EQ (numEntriesIn (bytes), 3u);

    for (size_t size = 0; size < bytes.size(); ++size)
        EXPECT_EQ (numEntriesIn (bytes.substr (0, size)), 0u) << size;

    for (size_t start = 1; start < bytes.size(); ++start)
        EXPECT_EQ (numEntriesIn (bytes.substr (start)), 0u) << start;
}

TEST (ZipArchive, ADirectoryThatIsNotWhatItsEndSaysHasNoEntries)
{
    const auto bytes = ZipBuilder().file ("a", "x").file ("b", "y").file ("c", "z").bytes();

    constexpr size_t size = 3 * (46 + 1);
    const auto start = bytes.size() - 22 - size;
    ASSERT_EQ (numEntriesIn (withEnd (bytes, directorySizeAt, bytesOf (size, 4) + bytesOf (start, 4))), 3u) << "the truth";

    const struct { const char* what; size_t fromEnd; std::string number; size_t expected; } rows[]
    {
        { "a count that hides entries", countAt, bytesOf (2, 2), 0 },
        { "a count of none", countAt, bytesOf (0, 2), 0 },
        { "a count that is too large", countAt, bytesOf (4, 2), 0 },
        { "the largest count", countAt, bytesOf (0xffff, 2), 0 },
        { "no size", directorySizeAt, bytesOf (0, 4), 0 },
        { "a size that is too small", directorySizeAt, bytesOf (size - 1, 4), 0 },
        { "a size beyond the end", directorySizeAt, bytesOf (size + 1, 4), 0 },
        { "the largest size", directorySizeAt, bytesOf (0xffffffff, 4), 0 },
        { "an earlier start", directoryStartAt, bytesOf (start - 1, 4), 0 },
        { "a later start", directoryStartAt, bytesOf (start + 1, 4), 0 },
        { "the mark of the 64-bit extensions", directoryStartAt, bytesOf (0xffffffff, 4), 0 },
        { "a comment that is not there", commentSizeAt, bytesOf (1, 2), 3 },
    };

    for (const auto& row : rows)
        EXPECT_EQ (numEntriesIn (withEnd (bytes, row.fromEnd, row.number)), row.expected) << row.what;
}

TEST (ZipArchive, ACommentMayLieBehindTheDirectory)
{
    const auto bytes = ZipBuilder().file ("a", "x").bytes();
    const auto commented = [&bytes] (size_t size)
    {
        return withEnd (bytes, commentSizeAt, bytesOf (size, 2)) + std::string (size, 'c');
    };

    for (const size_t size : { 1u, 100u, 65535u })
        EXPECT_EQ (numEntriesIn (commented (size)), 1u) << size;

    EXPECT_EQ (numEntriesIn (bytes + std::string (65535, 'c')), 1u) << "even if unannounced";
    EXPECT_EQ (numEntriesIn (bytes + std::string (65536, 'c')), 0u);
}

TEST (ZipArchive, HoldsUpTo65535Entries)
{
    ZipBuilder builder;

    for (int i = 0; i < 65535; ++i)
        builder.claim (std::to_string (i), 0);

    EXPECT_EQ (numEntriesIn (builder.bytes()), 65535u);
    EXPECT_EQ (numEntriesIn (builder.claim ("one more", 0).bytes()), 0u) << "its count says none";
    EXPECT_EQ (numEntriesIn (builder.claim ("and more", 0).bytes()), 0u) << "its count says one";
}

TEST (ZipArchive, ReadsOnlyTheEndOfWhatIsNoArchive)
{
    const std::string bytes (64 << 20, 'x');
    juce::int64 numRead = 0;
    const ZipArchive archive (std::make_unique<CountedStream> (bytes, numRead));
    EXPECT_TRUE (archive.getEntries().empty());
    EXPECT_LT (numRead, 1 << 20);
}

TEST (ZipArchive, RefusesADirectoryOfMoreThan128MiB)
{
    std::string bytes (130 << 20, 'x');
    bytes += ZipBuilder().bytes();                        // the end of an empty archive
    bytes = withEnd (bytes, countAt, bytesOf (1, 2));
    bytes = withEnd (bytes, directorySizeAt, bytesOf (130 << 20, 4));    // all that lies before
    juce::int64 numRead = 0;
    const ZipArchive archive (std::make_unique<CountedStream> (bytes, numRead));
    EXPECT_TRUE (archive.getEntries().empty());
    EXPECT_LT (numRead, 1 << 20);
}
