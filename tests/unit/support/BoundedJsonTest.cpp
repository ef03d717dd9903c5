#include "support/BoundedJson.h"
#include "support/Files.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <limits>

using namespace zorva::test;

namespace
{
constexpr auto largest = std::numeric_limits<juce::int64>::max();
constexpr auto smallest = std::numeric_limits<juce::int64>::min();

juce::String nested (int depth, const juce::String& inside = {})
{
    return juce::String::repeatedString ("[", depth) + inside + juce::String::repeatedString ("]", depth);
}

juce::int64 parsedInteger (const juce::String& number)
{
    return BoundedJson::integerIn (BoundedJson::parse ("{\"n\": " + number + "}"), "n", -77);
}
}

//==============================================================================
TEST (BoundedJson, SixtyFourLevelsAreTheLimit)
{
    EXPECT_TRUE (BoundedJson::isWithinDepth (nested (64)));
    EXPECT_FALSE (BoundedJson::isWithinDepth (nested (65)));
    EXPECT_TRUE (BoundedJson::parse (nested (64)).isArray());
    EXPECT_TRUE (BoundedJson::parse (nested (65)).isVoid());
    EXPECT_TRUE (BoundedJson::isWithinDepth ({}));
}

TEST (BoundedJson, ArraysAndObjectsCountAlike)
{
    juce::String text;

    for (int i = 0; i < 32; ++i)
        text << "[{\"k\":";

    EXPECT_TRUE (BoundedJson::isWithinDepth (text));
    EXPECT_FALSE (BoundedJson::isWithinDepth (text + "{"));
    EXPECT_FALSE (BoundedJson::isWithinDepth (text + "["));
}

TEST (BoundedJson, DepthIsWhatIsOpenAtOnce)
{
    EXPECT_TRUE (BoundedJson::isWithinDepth ("[" + juce::String::repeatedString ("[],{},", 1000) + "0]"));
    EXPECT_FALSE (BoundedJson::isWithinDepth ("]]]]" + nested (65))) << "closing what was never open buys nothing";
}

TEST (BoundedJson, BracketsInStringsDoNotCount)
{
    const auto brackets = juce::String::repeatedString ("[{", 100);

    EXPECT_TRUE (BoundedJson::isWithinDepth ("[\"" + brackets + "\"]"));
    EXPECT_TRUE (BoundedJson::isWithinDepth ("['" + brackets + "']"));
    EXPECT_TRUE (BoundedJson::isWithinDepth ("[\"a \\\" b" + brackets + "\"]")) << "an escaped quote ends no string";
    EXPECT_FALSE (BoundedJson::isWithinDepth ("[\"a \\\\\"," + brackets)) << "an escaped backslash escapes no quote";
    EXPECT_TRUE (BoundedJson::isWithinDepth ("[\"" + brackets)) << "a string that never ends";
}

TEST (BoundedJson, NoKindOfQuoteHidesNestingFromTheCount)
{
    const auto deep = nested (100000);

    for (const auto& text : { "['\"', " + deep + "]", "[\"'\", " + deep + "]", "['\\'\"', " + deep + "]", "[\"\\\\\", " + deep + "]" })
        EXPECT_TRUE (BoundedJson::parse (text).isVoid()) << text.substring (0, 20);
}

TEST (BoundedJson, ParsesWhatJsonAllows)
{
    const auto value = BoundedJson::parse (utf8 ("{ \"text\": \"Größe \\u00e4 \\\"q\\\"\", \"list\": [1, -2.5, true, null], \"o\": {} } and more"));

    ASSERT_NE (BoundedJson::objectIn (value), nullptr);
    EXPECT_EQ (BoundedJson::textIn (value, "text"), utf8 ("Größe ä \"q\""));
    ASSERT_TRUE (value["list"].isArray());
    EXPECT_EQ (value["list"].size(), 4);
    EXPECT_EQ ((double) value["list"][1], -2.5);
    EXPECT_NE (BoundedJson::objectIn (value["o"]), nullptr);
}

TEST (BoundedJson, WhatIsNoJsonIsVoid)
{
    for (const auto* text : { "", " ", "no", "[", "{", "{\"a\"", "{\"a\":}", "[1,", "[1 2]", "[\"a", "[tru]", "[-", "[- ", "[-]", "[-,1]", "[-x]",
                              "[1-]", "[1e]", "[1e+]", "[99999999999999999999e]", "[99999999999999999999x]", "[1.5.5]", "{\"a\":-}" })
        EXPECT_TRUE (BoundedJson::parse (text).isVoid()) << text;
}

TEST (BoundedJson, WhatFollowsTheFirstValueIsNotRead)
{
    for (const auto* text : { "[5]-", "[5] - x", "[5]99999999999999999999", "[5]]" })
        EXPECT_EQ ((int) BoundedJson::parse (text)[0], 5) << text;
}

//==============================================================================
TEST (BoundedJson, ObjectInTakesNoArrayForAnObject)
{
    EXPECT_EQ (BoundedJson::objectIn (BoundedJson::parse ("[{}]")), nullptr);
    EXPECT_EQ (BoundedJson::objectIn ({}), nullptr);
    EXPECT_EQ (BoundedJson::objectIn ("text"), nullptr);
    EXPECT_EQ (BoundedJson::objectIn (5), nullptr);
}

TEST (BoundedJson, TextInGivesTheTextUntrimmed)
{
    const auto value = BoundedJson::parse ("{\"a\": \" x \", \"n\": 7, \"null\": null}");

    EXPECT_EQ (BoundedJson::textIn (value, "a"), " x ");
    EXPECT_EQ (BoundedJson::textIn (value, "n"), "7");
    EXPECT_EQ (BoundedJson::textIn (value, "null"), "");
    EXPECT_EQ (BoundedJson::textIn (value, "absent"), "");
    EXPECT_EQ (BoundedJson::textIn (BoundedJson::parse ("[1]"), "a"), "");
    EXPECT_EQ (BoundedJson::textIn ({}, "a"), "");
}

TEST (BoundedJson, IntegersAreConvertedAndClamped)
{
    const struct { const char* number; juce::int64 expected; } cases[]
    {
        { "0", 0 }, { "-1", -1 }, { "2147483648", 2147483648LL }, { "-2147483649", -2147483649LL },
        { "9223372036854775807", largest }, { "9223372036854775808", largest }, { "-9223372036854775807", -largest },
        { "-9223372036854775808", smallest }, { "-9223372036854775809", smallest }, { "99999999999999999999", largest },
        { "-99999999999999999999", smallest }, { "00000000000000000000000000000005", 5 },
        { "1e3", 1000 }, { "1.9", 1 }, { "-1.9", -1 }, { "1e30", largest }, { "-1e30", smallest }, { "1e999", largest }, { "-1e999", smallest },
        { "1e-5", 0 }, { "1e99999999999999999999", largest }, { "1e-99999999999999999999", 0 }, { "1e+99999999999999999999", largest },
        { "1E00000000000000000002", 100 }, { "123456789012345678901.9", largest }, { "123456789012345678901e-20", 1 },
        { "123456789012345678901.5e-19", 12 }, { "0000000000000000000000000000000000007e1", 70 }, { "1.5e0000000000001", 15 }, { "1.00000000000000000000000000001", 1 },
        { "\"42\"", 42 }, { "\"  42x\"", 42 }, { "\"-42\"", -42 }, { "\"1e30\"", 1 }, { "\"x\"", 0 }, { "\"\"", 0 }, { "\"-\"", 0 },
        { "\"9223372036854775807\"", largest }, { "\"9223372036854775808\"", largest }, { "\"-9223372036854775808\"", smallest },
        { "\"-9999999999999999999999\"", smallest },
        { "true", 1 }, { "false", 0 }, { "null", 0 }, { "{}", 0 },
    };

    for (const auto& test : cases)
        EXPECT_EQ (parsedInteger (test.number), test.expected) << test.number;
}

TEST (BoundedJson, NotANumberIsZero)
{
    juce::DynamicObject::Ptr object = new juce::DynamicObject();
    object->setProperty ("n", std::numeric_limits<double>::quiet_NaN());

    EXPECT_EQ (BoundedJson::integerIn (object.get(), "n", 5), 0);
}

TEST (BoundedJson, NumericStringsConvertAsTheFrameworkDoes)
{
    for (const auto* text : { "0", "12", " \t-12", "+12", "12.9", "0x10", "abc", "- 5", "--5", "007", "1 2" })
        EXPECT_EQ (parsedInteger (juce::String (text).replace ("\t", "\\t").quoted()), (juce::int64) juce::var (text)) << text;
}

TEST (BoundedJson, AnAbsentIntegerIsTheFallback)
{
    EXPECT_EQ (BoundedJson::integerIn (BoundedJson::parse ("{}"), "n", 9), 9);
    EXPECT_EQ (BoundedJson::integerIn (BoundedJson::parse ("[1]"), "n", 9), 9);
    EXPECT_EQ (BoundedJson::integerIn ({}, "n"), 0);
}

TEST (BoundedJson, RepairedNumbersLeaveTheRestOfTheTextAsItIs)
{
    const auto value = BoundedJson::parse (utf8 ("{\"a\": \"ä 99999999999999999999 1e99999999999 - \", \"b\": 99999999999999999999, \"c\": [1e0000000001], \"d\": \"ö\"}"));

    EXPECT_EQ (BoundedJson::textIn (value, "a"), utf8 ("ä 99999999999999999999 1e99999999999 - "));
    EXPECT_EQ ((double) value["b"], 1e20);
    EXPECT_EQ ((double) value["c"][0], 10.0);
    EXPECT_EQ ((double) BoundedJson::parse ("[" + juce::String::repeatedString ("9", 400) + "e-390]")[0], 1e10);
    EXPECT_EQ (BoundedJson::textIn (value, "d"), utf8 ("ö"));
}

//==============================================================================
TEST (BoundedJson, ReadsAFile)
{
    const auto file = write (in (freshFolder ("json"), "a.json"), utf8 ("{\"name\": \"Größe\"}"));

    EXPECT_EQ (BoundedJson::textIn (BoundedJson::parseFile (file), "name"), utf8 ("Größe"));
}

TEST (BoundedJson, AByteOrderMarkIsNoPartOfTheText)
{
    const auto file = writeBytes (in (freshFolder ("json"), "a.json"), "\xef\xbb\xbf{\"a\": 1}");

    EXPECT_EQ (BoundedJson::integerIn (BoundedJson::parseFile (file), "a"), 1);
}

TEST (BoundedJson, AFileThatCannotBeReadIsVoid)
{
    const auto folder = freshFolder ("json");

    EXPECT_TRUE (BoundedJson::parseFile (in (folder, "absent")).isVoid());
    EXPECT_TRUE (BoundedJson::parseFile (folder).isVoid());
    EXPECT_TRUE (BoundedJson::parseFile (link (in (folder, "dangling"), "nowhere")).isVoid());
    EXPECT_TRUE (BoundedJson::parseFile (juce::File()).isVoid());
    EXPECT_TRUE (BoundedJson::parseFile (write (in (folder, "empty"), {})).isVoid());
    EXPECT_TRUE (BoundedJson::parseFile (write (in (folder, "deep"), nested (65))).isVoid());
    EXPECT_TRUE (BoundedJson::parseFile (juce::File ("/proc/self/mem")).isVoid()) << "opens, but cannot be read";
}

TEST (BoundedJson, AFileOfMoreThan64MebibytesIsVoid)
{
    constexpr size_t limit = 64 * 1024 * 1024;
    const auto folder = freshFolder ("json");
    const auto atLimit = writeBytes (in (folder, "at limit"), "[1]" + std::string (limit - 3, ' '));
    const auto above = writeBytes (in (folder, "above"), "[1]" + std::string (limit - 2, ' '));

    EXPECT_TRUE (BoundedJson::parseFile (atLimit).isArray());
    EXPECT_TRUE (BoundedJson::parseFile (above).isVoid());
}
