#include "support/BoundedJson.h"
#include "support/Files.h"
#include "support/PrivateMounts.h"
#include "support/RecordFile.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace zorva::test;
using RecordFile::Outcome;

namespace
{
/** Longer than any buffer that a writer might have. */
const juce::String longText = juce::String::repeatedString ("0123456789abcdef", 64 * 1024);
}

//==============================================================================
TEST (RecordFile, TextIsOnSeveralLinesInTheOrderOfTheProperties)
{
    juce::DynamicObject::Ptr object = new juce::DynamicObject();
    object->setProperty ("zeta", "z");
    object->setProperty ("alpha", 0.1);
    object->setProperty ("size", (juce::int64) 5000000000LL);

    EXPECT_EQ (RecordFile::toText (object.get()),
               "{\r\n  \"zeta\": \"z\",\r\n  \"alpha\": 0.1,\r\n  \"size\": 5000000000\r\n}");
}

TEST (RecordFile, WritesANewFileWithWindowsLineEndsAndNoMark)
{
    const auto folder = freshFolder ("records");
    const auto file = in (folder, "record.json");

    EXPECT_EQ (RecordFile::replace (file, utf8 ("a\nGröße\r\nb\n\n")), Outcome::written);
    EXPECT_EQ (treeOf (folder), (Tree { { "record.json", "file: a\r\nGröße\r\nb\r\n\r\n" } }));
}

TEST (RecordFile, WhatIsWrittenReadsBackAsTheSameValue)
{
    const auto file = in (freshFolder ("records"), "record.json");
    const auto value = BoundedJson::parse (utf8 ("{\"a\": \"line\\nbreak ä\", \"list\": [1, 2.5, {\"b\": null}]}"));

    EXPECT_EQ (RecordFile::replace (file, RecordFile::toText (value)), Outcome::written);
    EXPECT_EQ (juce::JSON::toString (BoundedJson::parseFile (file)), juce::JSON::toString (value));
}

TEST (RecordFile, ReplacesLongerAndShorterFilesWhole)
{
    const auto folder = freshFolder ("records");
    const auto file = in (folder, "record.json");

    for (const auto& text : { longText, juce::String ("short"), longText, juce::String() })
    {
        EXPECT_EQ (RecordFile::replace (file, text), Outcome::written);
        EXPECT_EQ (treeOf (folder), (Tree { { "record.json", "file: " + text.toStdString() } }));
    }
}

TEST (RecordFile, ALinkIsReplacedAndWhatItLedToStays)
{
    const auto folder = freshFolder ("records");
    write (in (folder, "elsewhere"), "mine");
    link (in (folder, "record.json"), "elsewhere");

    EXPECT_EQ (RecordFile::replace (in (folder, "record.json"), "new"), Outcome::written);
    EXPECT_EQ (treeOf (folder), (Tree { { "elsewhere", "file: mine" }, { "record.json", "file: new" } }));
}

//==============================================================================
TEST (RecordFile, WithoutAParentNothingIsWritten)
{
    const auto folder = freshFolder ("records");

    EXPECT_EQ (RecordFile::replace (in (folder, "absent/record.json"), "new"), Outcome::notWritten);
    EXPECT_EQ (treeOf (folder), Tree());
}

TEST (RecordFile, AReadOnlyFolderKeepsTheOldFile)
{
    const auto folder = freshFolder ("records");
    const auto file = write (in (folder, "record.json"), "old");
    const ReadOnlyFolder readOnly (folder);

    EXPECT_EQ (RecordFile::replace (file, "new"), Outcome::notWritten);
    EXPECT_EQ (treeOf (folder), (Tree { { "record.json", "file: old" } }));
}

TEST (RecordFile, ADiskWithoutRoomForTheBytesKeepsTheOldFileAndNoLitter)
{
    const auto folder = freshFolder ("records");
    SmallDisk disk (folder, 100);
    const auto file = write (in (folder, "record.json"), "old");
    disk.fillWithBytes();

    for (const auto& text : { juce::String ("new"), longText })
    {
        EXPECT_EQ (RecordFile::replace (file, text), Outcome::notWritten);
        EXPECT_EQ (read (file), "old");
    }

    disk.clear();
    EXPECT_EQ (treeOf (folder), (Tree { { "record.json", "file: old" } }));

    EXPECT_EQ (RecordFile::replace (file, "new"), Outcome::written);
    EXPECT_EQ (read (file), "new");
}

TEST (RecordFile, ADiskWithoutRoomForOneMoreFileKeepsTheOldFile)
{
    const auto folder = freshFolder ("records");
    SmallDisk disk (folder, 20);
    const auto file = write (in (folder, "record.json"), "old");
    disk.fill();

    EXPECT_EQ (RecordFile::replace (file, "new"), Outcome::notWritten);

    disk.clear();
    EXPECT_EQ (treeOf (folder), (Tree { { "record.json", "file: old" } }));
}

TEST (RecordFile, ATargetThatCannotBeReplacedStaysAndNoLitterIsLeft)
{
    const auto folder = freshFolder ("records");
    const auto file = write (in (folder, "record.json"), "old");

    {
        const BusyPath busy (file);
        EXPECT_EQ (RecordFile::replace (file, "new"), Outcome::notReplaced);
    }

    EXPECT_EQ (treeOf (folder), (Tree { { "record.json", "file: old" } }));
}

TEST (RecordFile, AFolderIsNoTargetNotEvenAnEmptyOne)
{
    const auto folder = freshFolder ("records");
    ASSERT_TRUE (in (folder, "record.json").createDirectory().wasOk());

    EXPECT_EQ (RecordFile::replace (in (folder, "record.json"), "new"), Outcome::notReplaced);
    EXPECT_EQ (treeOf (folder), (Tree { { "record.json", "folder" } }));
}
