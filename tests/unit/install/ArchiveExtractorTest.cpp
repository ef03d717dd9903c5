#include "install/ArchiveExtractor.h"
#include "support/Files.h"
#include "support/PrivateMounts.h"
#include "support/Text.h"
#include "support/ZipBuilder.h"

#include <functional>
#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
constexpr int stored = 0, deflated = 8;

std::string damaged (const std::string& how)    { return "The entry pack/data is damaged: " + how + "."; }

std::unique_ptr<juce::InputStream> streamOf (const std::string& bytes)
{
    return std::make_unique<juce::MemoryInputStream> (bytes.data(), bytes.size(), true);
}

/** "ok", or the error. */
std::string extract (const std::string& bytes, const juce::File& target)
{
    ZipArchive archive (streamOf (bytes));
    EXPECT_FALSE (archive.getEntries().empty());
    const auto result = ArchiveExtractor::extractAll (archive, target);
    return result.wasOk() ? "ok" : result.getErrorMessage().toStdString();
}

std::string extract (const ZipBuilder& builder, const juce::File& target)
{
    return extract (builder.bytes(), target);
}

/** An archive with this one file between two others. */
ZipBuilder among (const ZipBuilder::Entry& entry)
{
    return ZipBuilder().file ("first", "1").add (entry).file ("last", "2");
}

ZipBuilder::Entry data (int method, const std::string& content)
{
    ZipBuilder::Entry entry;
    entry.name = "pack/data";
    entry.content = content;
    entry.method = method;
    return entry;
}

ZipBuilder::Entry withSize (ZipBuilder::Entry entry, std::uint32_t size)
{
    entry.statedSize = size;
    return entry;
}

/** The bytes with the only occurrence of one text overwritten by another of its length. */
std::string patched (std::string bytes, const std::string& from, const std::string& to)
{
    EXPECT_EQ (from.size(), to.size());
    EXPECT_NE (bytes.find (from), std::string::npos);
    EXPECT_EQ (bytes.find (from), bytes.rfind (from));
    return bytes.replace (bytes.find (from), from.size(), to);
}
}

//==============================================================================
TEST (ArchiveExtractor, UnpacksFilesAndFoldersOfEitherMethod)
{
    const std::string large (3000001, 'x');
    const auto target = freshFolder ("target");

    EXPECT_EQ (extract (ZipBuilder().folder ("empty")
                                    .file ("pack/deflated", large)
                                    .add (data (stored, large))
                                    .file ("pack/nothing", "")
                                    .folder ("pack/later")
                                    .folder ("pack")
                                    .file ("pack/later/a", "a")
                                    .file ("~root", "tilde")
                                    .file (utf8 ("größe/Ж").toStdString(), "letters")
                                    .file (" .hidden", "dot"), target), "ok");

    EXPECT_EQ (treeOf (target), (Tree { { "empty", "folder" }, { "pack", "folder" }, { "pack/deflated", "file: " + large },
                                        { "pack/data", "file: " + large }, { "pack/nothing", "file: " }, { "pack/later", "folder" },
                                        { "pack/later/a", "file: a" }, { "~root", "file: tilde" },
                                        { utf8 ("größe").toStdString(), "folder" }, { utf8 ("größe/Ж").toStdString(), "file: letters" },
                                        { " .hidden", "file: dot" } }));
}

TEST (ArchiveExtractor, UnpacksAVeryDeepTree)
{
    std::string path;

    for (int i = 0; i < 500; ++i)
        path += "d/";

    const auto target = freshFolder ("target");
    EXPECT_EQ (extract (ZipBuilder().file (path + "bottom", "x"), target), "ok");
    EXPECT_EQ (read (in (target, path + "bottom")), "x");
}

TEST (ArchiveExtractor, AFewNamesThatStandForManyFoldersAreRefused)
{
    ZipBuilder builder;
    std::string steps;

    for (int i = 0; i < 255; ++i)
        steps += "/d";

    for (int i = 0; i < 257; ++i)    // 256 folders each, and there may be 65536
        builder.file (std::to_string (i) + steps + "/file", {});

    const auto target = freshFolder ("target");
    EXPECT_EQ (extract (builder, target), "It has too many folders.");
    EXPECT_EQ (treeOf (target), Tree()) << "and nothing is made";
}

TEST (ArchiveExtractor, UnpacksThousandsOfFiles)
{
    ZipBuilder builder;

    for (int i = 0; i < 5000; ++i)
        builder.file ("pack/" + std::to_string (i % 37) + "/" + std::to_string (i), std::to_string (i));

    const auto target = freshFolder ("target");
    ASSERT_EQ (extract (builder, target), "ok");
    EXPECT_EQ (target.getNumberOfChildFiles (juce::File::findFiles), 0);
    EXPECT_EQ (target.findChildFiles (juce::File::findFiles, true).size(), 5000);
    EXPECT_EQ (read (in (target, "pack/4/4999")), "4999");
}

TEST (ArchiveExtractor, FilesKeepTheTimeThatTheArchiveGivesThem)
{
    const auto target = freshFolder ("target");
    ASSERT_EQ (extract (ZipBuilder().file ("a", "x"), target), "ok");
    EXPECT_EQ (in (target, "a").getLastModificationTime(), juce::Time (2026, 0, 1, 0, 0));
}

TEST (ArchiveExtractor, MakesTheTargetAndRefusesOneThatIsNotEmpty)
{
    const auto target = in (freshFolder ("parent"), "new/target");
    EXPECT_EQ (extract (ZipBuilder().file ("a", "x"), target), "ok");
    EXPECT_EQ (extract (ZipBuilder().file ("b", "x"), target), "There is no empty folder to unpack into.");
    EXPECT_EQ (treeOf (target), (Tree { { "a", "file: x" } }));

    const auto file = write (in (freshFolder ("parent"), "file"), "x");
    EXPECT_EQ (extract (ZipBuilder().file ("a", "x"), file), "There is no empty folder to unpack into.");
}

//==============================================================================
TEST (ArchiveExtractor, RefusesAFileThatIsNotAsLargeAsStated)
{
    const std::string content (100000, 'x');

    for (const int method : { stored, deflated })
    {
        for (const auto size : { 0u, 1u, 99999u })
            EXPECT_EQ (extract (among (withSize (data (method, content), size)), freshFolder ("target")),
                       damaged ("it is larger than the archive says")) << method << " " << size;

        for (const auto size : { 100001u, 2147483648u, 4294967295u })
            EXPECT_EQ (extract (among (withSize (data (method, content), size)), freshFolder ("target")),
                       damaged ("it is smaller than the archive says")) << method << " " << size;

        EXPECT_EQ (extract (among (withSize (data (method, ""), 1)), freshFolder ("target")), damaged ("it is smaller than the archive says"));
    }
}

TEST (ArchiveExtractor, WritesNoMoreThanWasStated)
{
    const auto target = freshFolder ("target");
    const std::string bomb (16 << 20, '\0');
    EXPECT_EQ (extract (among (withSize (data (deflated, bomb), 1000000)), target), damaged ("it is larger than the archive says"));
    EXPECT_LE (in (target, "pack/data").getSize(), 1000000);
    EXPECT_FALSE (isThere (in (target, "last"))) << "it ended there";
}

TEST (ArchiveExtractor, RefusesAWrongChecksum)
{
    const std::string content ("the content of a file");

    for (const int method : { stored, deflated })
    {
        auto entry = data (method, content);
        entry.statedCrc = ZipBuilder::crc32 (content) ^ 0x80000000u;
        EXPECT_EQ (extract (among (entry), freshFolder ("target")), damaged ("its checksum differs")) << method;
    }

    EXPECT_EQ (extract (patched (among (data (stored, content)).bytes(), content, "The content of a file"), freshFolder ("target")),
               damaged ("its checksum differs"));

    auto empty = data (stored, "");
    empty.statedCrc = 1;
    EXPECT_EQ (extract (among (empty), freshFolder ("target")), damaged ("its checksum differs"));
}

TEST (ArchiveExtractor, RefusesBrokenCompression)
{
    auto entry = data (stored, "this was never deflated");
    auto bytes = among (entry).bytes();
    const std::string name ("pack/data");
    const auto inHeader = bytes.find (name) - 22, inDirectory = bytes.rfind (name) - 36;    // back to the method
    bytes[inHeader] = bytes[inDirectory] = deflated;
    EXPECT_EQ (extract (bytes, freshFolder ("target")), damaged ("it is smaller than the archive says"));
}

TEST (ArchiveExtractor, RefusesAHeaderThatIsNotWhereItShouldBe)
{
    const auto bytes = among (data (stored, "some content")).bytes();
    const auto header = bytes.find ("pack/data") - 30;
    const auto directory = bytes.rfind ("pack/data") - 46;

    const struct { const char* what; size_t position; char value; } rows[]
    {
        { "no header", header, 'x' },
        { "content behind the directory", header + 28, '\xff' },          // of an endless extra field
        { "an offset beyond the end", directory + 45, '\x7f' },
        { "an offset inside another entry", directory + 42, '\x01' },
        { "more packed bytes than there are", directory + 22, '\x01' },
    };

    for (const auto& row : rows)
    {
        auto changed = bytes;
        changed[row.position] = row.value;
        EXPECT_EQ (extract (changed, freshFolder ("target")), damaged ("its header cannot be read")) << row.what;
    }
}

TEST (ArchiveExtractor, RefusesUnknownMethodsAndEncryptionBeforeItWritesAnything)
{
    const std::string unknown ("The entry pack/data is encrypted or packed by an unknown method.");
    const auto target = freshFolder ("target");

    for (const int method : { 1, 6, 7, 9, 12, 14, 93, 95, 98, 65535 })
        EXPECT_EQ (extract (among (data (method, "x")), target), unknown) << method;

    for (const unsigned bits : { 0x0001u, 0x0801u, 0x0041u })
    {
        auto entry = data (deflated, "x");
        entry.flags = bits;
        EXPECT_EQ (extract (among (entry), target), unknown) << bits;
    }

    EXPECT_EQ (treeOf (target), Tree());
}

//==============================================================================
TEST (ArchiveExtractor, NeverMakesALink)
{
    const auto outside = freshFolder ("outside");
    const auto path = outside.getFullPathName().toStdString();
    const auto target = freshFolder ("target");

    const struct { const char* what; ZipBuilder archive; std::string error; } rows[]
    {
        { "a link alone", ZipBuilder().file ("a", "x").link ("l", "a"), "The entry l is a link." },
        { "a file through a link", ZipBuilder().link ("l", path).file ("l/evil", "x"), "The entry l is a link." },
        { "a file of the link's name", ZipBuilder().link ("l", path + "/evil").file ("l", "x"), "The entry l is a link." },
        { "a link of the file's name", ZipBuilder().file ("l", "x").link ("l", path), "The entry l is a link." },
        { "a link as a folder", ZipBuilder().link ("l/", path).file ("l/evil", "x"), "The entry l is a link." },
        { "a link far down", ZipBuilder().link ("a/b/c", "../../..").file ("a/b/c/evil", "x"), "The entry a/b/c is a link." },
    };

    for (const auto& row : rows)
    {
        EXPECT_EQ (extract (row.archive, target), row.error) << row.what;
        EXPECT_EQ (treeOf (target), Tree()) << row.what;
        EXPECT_EQ (treeOf (outside), Tree()) << row.what;
    }
}

TEST (ArchiveExtractor, RefusesTwoEntriesOfOnePath)
{
    const struct { ZipBuilder archive; std::string path; } rows[]
    {
        { ZipBuilder().file ("a", "1").file ("a", "2"), "a" },
        { ZipBuilder().file ("a", "1").file ("a", "1"), "a" },
        { ZipBuilder().file ("d/Read.txt", "1").file ("d/read.TXT", "2"), "d/read.TXT" },
        { ZipBuilder().file (utf8 ("É").toStdString(), "1").file (utf8 ("é").toStdString(), "2"), utf8 ("é").toStdString() },
        { ZipBuilder().file ("D/a", "1").file ("d/A", "2"), "d/A" },
        { ZipBuilder().folder ("a").file ("A", "1"), "A" },
        { ZipBuilder().file ("A", "1").folder ("a"), "a" },
        { ZipBuilder().file ("a", "1").file ("a/b", "2"), "a" },
        { ZipBuilder().file ("a/b", "1").file ("a", "2"), "a" },
        { ZipBuilder().file ("a/b", "1").file ("a\\b", "2"), "a/b" },
    };

    const auto target = freshFolder ("target");

    for (const auto& row : rows)
        EXPECT_EQ (extract (row.archive, target), "Two entries claim the path " + row.path + ".");

    EXPECT_EQ (treeOf (target), Tree());
    EXPECT_EQ (extract (ZipBuilder().folder ("a").folder ("a").file ("a/b", "1").folder ("a"), target), "ok") << "folders may be named again";
}

TEST (ArchiveExtractor, RefusesAFolderWithContent)
{
    auto entry = data (stored, "x");
    entry.name = "folder/";
    EXPECT_EQ (extract (among (entry), freshFolder ("target")), "The entry folder is a folder with content.");
}

TEST (ArchiveExtractor, ABackslashSeparatesStepsToo)
{
    const auto target = freshFolder ("target");
    EXPECT_EQ (extract (ZipBuilder().file ("Tool\\bin\\tool.exe", "program").file ("Tool\\empty\\", "").file ("Tool/mixed\\x", "x"), target), "ok");
    EXPECT_EQ (treeOf (target), (Tree { { "Tool", "folder" }, { "Tool/bin", "folder" }, { "Tool/bin/tool.exe", "file: program" },
                                        { "Tool/empty", "folder" }, { "Tool/mixed", "folder" }, { "Tool/mixed/x", "file: x" } }));
}

TEST (ArchiveExtractor, RefusesEveryNameThatIsNotSafeOnEverySystem)
{
    const auto parent = freshFolder ("parent");
    const auto target = in (parent, "target");

    const std::string names[]
    {
        "", "/", "\\", "//", "..", "../evil", "a/../../evil", "a/../b", "./a", "a/.", "a//b", "a//", "/evil", "\\evil", "..\\evil", "a\\..\\b",
        "a\\..\\..\\evil", "C:/evil", "C:evil", "a:stream", "\\\\host\\share", "//host/share",
        "NUL", "nul.txt", "con", "a/Com1.txt", "aux/b", "lpt9.d/b", "a\\PRN",
        "a.", "a /b", "a./b", "a ", "...", "a/ ", "tab\t", "\tevil", "new\nline", "a\x7f", "a\x1f/b",
        std::string ("a\0b", 3), std::string ("\0", 1),
        "\xff", "caf\x82", "\xc0\xae\xc0\xae/evil", "\xed\xa0\x80", "a\xe2\x82",
        std::string (256, 'n'), std::string (1025, 'a'), "a/" + std::string (300, 'n') + "/b",
    };

    for (const auto& name : names)
    {
        EXPECT_EQ (extract (among ({ name, "x", stored, 0x0800, 0100644, {}, {}, {} }), target), "An entry has an unsafe name.") << name;
        EXPECT_EQ (treeOf (parent), Tree()) << name;
    }
}

//==============================================================================
TEST (ArchiveExtractor, AFullDiskIsAFailure)
{
    const auto disk = freshFolder ("disk");
    const std::string content (1 << 20, 'x');
    const auto file = [&] (const char* name) { auto entry = data (stored, content); entry.name = name; return entry; };
    const SmallDisk small (disk, 40);    // of 4 MiB

    EXPECT_EQ (extract (ZipBuilder().add (file ("a")).add (file ("b")), in (disk, "enough")), "ok");
    EXPECT_EQ (extract (ZipBuilder().add (file ("a")).add (file ("b")).add (file ("c")), in (disk, "too much")), "Could not write c.");
}

TEST (ArchiveExtractor, NoRoomForNamesIsAFailure)
{
    const auto disk = freshFolder ("disk");

    {
        const SmallDisk small (disk, 3);
        EXPECT_EQ (extract (ZipBuilder().folder ("a").folder ("b").folder ("c"), in (disk, "target")), "Could not create the folder c.");
    }

    {
        const SmallDisk small (disk, 3);
        EXPECT_EQ (extract (ZipBuilder().file ("a", "").file ("b", "").file ("c", ""), in (disk, "target")), "Could not write c.");
    }
}

TEST (ArchiveExtractor, ATinyFileOnAFullDiskIsAFailure)
{
    const auto disk = freshFolder ("disk");
    SmallDisk small (disk, 40);
    small.fillWithBytes();
    EXPECT_EQ (extract (ZipBuilder().file ("a", "x"), in (disk, "target")), "Could not write a.");
}
