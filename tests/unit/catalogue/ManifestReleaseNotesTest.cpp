#include "catalogue/ManifestParser.h"
#include "support/ManifestBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
juce::var note (const juce::String& title, const juce::String& summary = "Summary")
{
    juce::DynamicObject::Ptr object = new juce::DynamicObject();
    object->setProperty ("title", title);
    object->setProperty ("summary", summary);
    return object.get();
}

/** The titles that are kept, joined by blanks; the product itself must always stay. */
std::string titlesOf (const juce::var& notes)
{
    const auto products = parseManifest (manifest ({ with (application ("a"), "releaseNotes", notes) }));

    if (products.size() != 1)
        return "(no product)";

    juce::StringArray titles;

    for (const auto& each : products[0].releaseNotes)
        titles.add (each.title);

    return titles.joinIntoString (" ").toStdString();
}

juce::String times (const char* text, int count)
{
    return juce::String::repeatedString (utf8 (text), count);
}
}

TEST (ManifestParser, ReleaseNotesAreTrimmedAndKeepTheirOrder)
{
    const auto products = parseManifest (manifest ({ with (application ("a"), "releaseNotes", list ({ note (" One ", "\tFirst\n"), note ("Two", "Second") })) }));

    ASSERT_EQ (products.size(), 1u);
    ASSERT_EQ (products[0].releaseNotes.size(), 2u);
    EXPECT_EQ (products[0].releaseNotes[0].title, "One");
    EXPECT_EQ (products[0].releaseNotes[0].summary, "First");
    EXPECT_EQ (products[0].releaseNotes[1].title, "Two");
}

TEST (ManifestParser, ReleaseNotesThatAreNoArrayCountAsAbsent)
{
    for (const auto& notes : { juce::var(), juce::var ("text"), juce::var (1), note ("x") })
        EXPECT_EQ (titlesOf (notes), "") << json (notes);
}

TEST (ManifestParser, AReleaseNoteThatBreaksItsRulesIsDroppedAlone)
{
    const struct { const char* name; juce::var entry; bool kept; } cases[]
    {
        { "empty title", note (""), false }, { "blank title", note (" "), false }, { "empty summary", note ("x", ""), false },
        { "blank summary", note ("x", "\n"), false }, { "no title", without (note ("x"), "title"), false },
        { "no summary", without (note ("x"), "summary"), false }, { "null", juce::var(), false }, { "text", "text", false },
        { "array", list ({ note ("x") }), false },
        { "title of 81", note (times ("t", 81)), false }, { "title of 81 outside ASCII", note (times ("音", 81)), false },
        { "summary of 321", note ("x", times ("s", 321)), false }, { "summary of 321 outside ASCII", note ("x", times ("é", 321)), false },
        { "title of 80", note (times ("t", 80)), true }, { "title of 80 outside ASCII", note (times ("音", 80)), true },
        { "title of 80 with blanks", note ("  " + times ("t", 80) + "  "), true },
        { "summary of 320", note ("x", times ("s", 320)), true }, { "summary of 320 with blanks", note ("x", " " + times ("s", 320) + " "), true },
    };

    for (const auto& test : cases)
    {
        const auto expected = test.kept ? "before " + test.entry["title"].toString().trim().toStdString() + " after" : "before after";
        EXPECT_EQ (titlesOf (list ({ note ("before"), test.entry, note ("after") })), expected) << test.name;
    }
}

TEST (ManifestParser, OnlyTheFirstEightReleaseNotesAreLookedAt)
{
    EXPECT_EQ (titlesOf (list ({ note ("1"), note ("2"), note ("3"), note ("4"), note ("5"), note ("6"), note ("7"), note ("8"), note ("9"), note ("10") })),
               "1 2 3 4 5 6 7 8");
    EXPECT_EQ (titlesOf (list ({ note ("1"), note (""), note ("3"), juce::var(), note ("5"), note ("6"), note ("7"), note ("8"), note ("9"), note ("10") })),
               "1 3 5 6 7 8");
    EXPECT_EQ (titlesOf (list ({ 1, 2, 3, 4, 5, 6, 7, 8, note ("9"), note ("10") })), "");
}
