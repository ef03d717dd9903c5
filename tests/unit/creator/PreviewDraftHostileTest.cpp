#include "HostileDraft.h"
#include "ai/BrokerProtocol.h"

#include <cstring>

namespace
{
using namespace zorva::test;

class PreviewDraftHostile : public HostileDraftTest {};
}

//==============================================================================
TEST_F (PreviewDraftHostile, SixtyFourLevelsAreReadAndNoneDeeper)
{
    EXPECT_EQ (reasonOf (withNote (times ("[", 63) + times ("]", 63))), "");
    EXPECT_EQ (reasonOf (withNote (times ("[", 64) + times ("]", 64))), "unsupported_schema");
    EXPECT_EQ (reasonOf (withNote (times ("{\"a\":", 63) + "1" + times ("}", 63))), "");
    EXPECT_EQ (reasonOf (withNote (times ("{\"a\":", 64) + "1" + times ("}", 64))), "unsupported_schema");
    EXPECT_EQ (reasonOf (withNote (times ("[", 200000))), "unsupported_schema");
    EXPECT_EQ (reasonOf (withNote ("\"" + times ("[{", 2000) + "\"")), "") << "brackets in a text are none";
    EXPECT_EQ (reasonOf (with ("tags", times ("[", 63) + times ("]", 63))), "invalid_tags");
}

TEST_F (PreviewDraftHostile, AnEmptyPropertyNameIsNoRequest)
{
    for (const auto* more : { R"("": 1)", R"("" : "x")", "\"\"\n\t:{}", R"("note": {"": 1})", R"("note": [[{"a": "", "": ""}]])", R"("")", R"("", "a": 1)", R"(""title": "x")",
                              R"("a": {""})", R"("a": {"" 1})" })
        EXPECT_EQ (reasonOf (withMore (more)), "unsupported_schema") << more;

    EXPECT_EQ (reasonOf ("{\"\":" + payload() + "}"), "unsupported_schema");
}

TEST_F (PreviewDraftHostile, WhatOnlyLooksLikeAnEmptyPropertyNameIsTaken)
{
    for (const auto* more : { R"("note": "")", R"("note": ["", ""])", R"("note": "\"\": 1")", R"("note": '"": 1')", R"("\"\"": 1)", R"("a\\": "", ":": ":")" })
        EXPECT_EQ (reasonOf (withMore (more)), "") << more;

    EXPECT_EQ (reasonOf (payload() + " {\"\": 1}"), "") << "nothing behind the object is read";
}

TEST_F (PreviewDraftHostile, OfAKeyThatStandsTwiceTheLastCounts)
{
    EXPECT_EQ (reasonOf (withMore (R"("title": "")")), "invalid_metadata");
    EXPECT_EQ (reasonOf (withMore (R"("visibility": "public")")), "invalid_metadata");
    EXPECT_EQ (reasonOf (withMore (R"("rightsConfirmed": false)")), "invalid_metadata");
    EXPECT_EQ (reasonOf (withMore (R"("schemaVersion": 2)")), "unsupported_schema");
    EXPECT_EQ (reasonOf (withMore (R"("sourcePath": "/absent.wav")")), "invalid_source_wav");
    EXPECT_EQ (reasonOf (withMore (R"("tags": null)")), "invalid_tags");

    EXPECT_EQ (reasonOf (with ("title", R"("", "title": 5, "title": "Other")")), "");
    EXPECT_EQ (lastRecord["title"].toString(), "Other");
    EXPECT_EQ (reasonOf (withMore (R"("rightsConfirmed": false, "rightsConfirmed": true)")), "");
    EXPECT_FALSE (lastRecord.hasProperty ("rightsConfirmed")) << "no second one is left over";
    EXPECT_EQ (reasonOf (withMore (R"("Title": "", "VISIBILITY": "public")")), "") << "another case is another key";
}

//==============================================================================
TEST_F (PreviewDraftHostile, OnlyTheIntegerOneIsTheSchema)
{
    for (const auto* one : { "1", "01", "0000000000000000000000000000001" })
        EXPECT_EQ (reasonOf (with ("schemaVersion", one)), "") << one;

    for (const auto* other : { "0", "-1", "2", "1.0", "1e0", "10e-1", "\"1\"", "true", "null", "[1]", "{}", "1e30", "-1e30", "1e999", "2147483648", "2147483649",
                               "-2147483648", "4294967297", "-4294967295", "9223372036854775807", "9223372036854775808", "-9223372036854775808",
                               "18446744073709551617", "99999999999999999999999999999999999999999999999999", "NaN", "nan", "Infinity", "-Infinity", "+1", "0x1",
                               "1.", "-", "- ", "--1", "1 1", "1x", "1e", "\"" })
        EXPECT_EQ (reasonOf (with ("schemaVersion", other)), "unsupported_schema") << other;
}

TEST_F (PreviewDraftHostile, HugeSecondsDoNotBecomeSmallOnes)
{
    const struct { const char *start, *duration, *reason; } cases[]
    {
        { "0", "30", "" }, { "1", "30", "" },
        { "4294967296", "30", "preview_out_of_range" }, { "9223372036854775807", "30", "preview_out_of_range" }, { "2147483648", "30", "preview_out_of_range" },
        { "9223372036854775808", "30", "invalid_metadata" }, { "18446744073709551616", "30", "invalid_metadata" }, { "1e30", "30", "invalid_metadata" },
        { "1e999", "30", "invalid_metadata" }, { "0.0", "30", "invalid_metadata" }, { "0e0", "30", "invalid_metadata" },
        { "-1", "30", "invalid_metadata" }, { "-4294967296", "30", "invalid_metadata" }, { "-9223372036854775808", "30", "invalid_metadata" },
        { "-9223372036854775807", "30", "invalid_metadata" }, { "-1e30", "30", "invalid_metadata" },
        { "0", "4294967326", "invalid_metadata" }, { "0", "18446744073709551646", "invalid_metadata" }, { "0", "30.0", "invalid_metadata" },
        { "0", "3e1", "invalid_metadata" }, { "0", "1e30", "invalid_metadata" }, { "0", "-30", "invalid_metadata" },
        { "NaN", "30", "unsupported_schema" }, { "0", "NaN", "unsupported_schema" }, { "0", "Infinity", "unsupported_schema" },
    };

    for (const auto& each : cases)
    {
        const auto text = with ("previewStartSeconds", each.start).replace ("\"previewDurationSeconds\": 30", juce::String ("\"previewDurationSeconds\": ") + each.duration);
        EXPECT_EQ (reasonOf (text), each.reason) << each.start << " and " << each.duration;
    }
}

TEST_F (PreviewDraftHostile, NumbersThatTheHubDoesNotKnowAreKeptOrNull)
{
    EXPECT_EQ (reasonOf (withNote ("[1e999, -1e999, 1e-999, 1e30, 9223372036854775808, -0, 0.1]")), "");
    EXPECT_EQ (juce::JSON::toString (lastRecord["note"][0], true), "null");
    EXPECT_EQ (juce::JSON::toString (lastRecord["note"][1], true), "null");
    EXPECT_EQ ((double) lastRecord["note"][2], 0.0);
    EXPECT_EQ ((double) lastRecord["note"][3], 1e30);
    EXPECT_NEAR ((double) lastRecord["note"][4] / 9223372036854775808.0, 1.0, 1e-12);
}

TEST_F (PreviewDraftHostile, EachFieldRefusesEveryOtherType)
{
    const struct { juce::String key; std::initializer_list<const char*> types; const char* reason; } cases[]
    {
        { "jobId", { "null", "true", "5", "1.5", "[]", "{}" }, "invalid_metadata" },
        { "sourcePath", { "null", "true", "5", "1.5", "[]", "{}" }, "invalid_metadata" },
        { "title", { "null", "true", "5", "1.5", "[]", "{}" }, "invalid_metadata" },
        { "description", { "null", "true", "5", "1.5", "[]", "{}" }, "invalid_metadata" },
        { "genre", { "null", "true", "5", "1.5", "[]", "{}" }, "invalid_metadata" },
        { "visibility", { "null", "true", "5", "1.5", "[]", "{}", "[\"private\"]" }, "invalid_metadata" },
        { "rightsConfirmed", { "null", "1", "1.0", "\"true\"", "[true]", "{}" }, "invalid_metadata" },
        { "rightsConfirmedAt", { "null", "true", "1777860121000", "1.5", "[]", "{}" }, "invalid_metadata" },
        { "origin", { "null", "true", "5", "1.5", "[]", "{}" }, "invalid_metadata" },
        { "previewStartSeconds", { "null", "true", "false", "\"0\"", "0.0", "[]", "{}" }, "invalid_metadata" },
        { "previewDurationSeconds", { "null", "true", "\"30\"", "30.0", "[30]", "{}" }, "invalid_metadata" },
        { "tags", { "null", "true", "5", "\"\"", "{}", "[null]", "[5]", "[true]", "[[]]", "[{}]", "[\"a\", 5]" }, "invalid_tags" },
    };

    for (const auto& each : cases)
        for (const auto* type : each.types)
            EXPECT_EQ (reasonOf (with (each.key, type)), each.reason) << each.key << " as " << type;
}

TEST_F (PreviewDraftHostile, TheTwoOptionalFieldsAreReadAsText)
{
    for (const auto* key : { "coverArtPath", "fullReleaseUrl" })
    {
        const auto reason = juce::String (key) == "coverArtPath" ? "invalid_cover_art" : "invalid_metadata";

        for (const auto* emptyText : { "null", "\"\"" })
            EXPECT_EQ (reasonOf (withMore ("\"" + juce::String (key) + "\": " + emptyText)), "") << key << " as " << emptyText;

        for (const auto* text : { "true", "false", "0", "5", "1.5", "1e999", "[1]", "{}", "\" \"" })
            EXPECT_EQ (reasonOf (withMore ("\"" + juce::String (key) + "\": " + text)), reason) << key << " as " << text;
    }
}

//==============================================================================
TEST_F (PreviewDraftHostile, LimitsCountCharactersAndNotBytes)
{
    const struct { juce::String key; int longest; } cases[] { { "title", 160 }, { "description", 4000 }, { "genre", 64 } };

    for (const auto& each : cases)
    {
        EXPECT_EQ (reasonOf (with (each.key, "\"" + times ("😀", each.longest) + "\"")), "") << each.key;
        EXPECT_EQ (reasonOf (with (each.key, "\"" + times ("😀", each.longest) + "x\"")), "invalid_metadata") << each.key;
        EXPECT_EQ (reasonOf (with (each.key, "\"" + times ("\\ud83d\\ude00", each.longest) + "\"")), "") << each.key << " with escapes";
        EXPECT_EQ (reasonOf (with (each.key, "\"" + times ("\\ud83d\\ude00", each.longest) + "x\"")), "invalid_metadata") << each.key << " with escapes";
    }

    EXPECT_EQ (reasonOf (with ("tags", "[\"" + times ("😀", 48) + "\"]")), "");
    EXPECT_EQ (reasonOf (with ("tags", "[\"" + times ("😀", 48) + "x\"]")), "invalid_tags");
    EXPECT_EQ (reasonOf (with ("tags", "[" + times ("\"a\",", 15) + "\"a\"]")), "");
    EXPECT_EQ (reasonOf (with ("tags", "[" + times ("\"a\",", 16) + "\"a\"]")), "invalid_tags");
    EXPECT_EQ (reasonOf (with ("rightsConfirmedAt", "\"2026-05-04T12:34:56.789Z" + times (" ", 40) + "\"")), "") << "64 characters";
    EXPECT_EQ (reasonOf (with ("rightsConfirmedAt", "\"2026-05-04T12:34:56.789Z" + times (" ", 41) + "\"")), "invalid_metadata");
}

TEST_F (PreviewDraftHostile, ThePayloadsSizeIsCountedInBytes)
{
    const auto filled = [this] (int bytes)
    {
        const auto missing = bytes - (int) withNote ("\"\"").getNumBytesAsUTF8();
        return withNote ("\"" + times ("é", missing / 2) + times ("x", missing % 2) + "\"");
    };

    EXPECT_EQ (filled (262144).getNumBytesAsUTF8(), 262144u);
    EXPECT_EQ (reasonOf (filled (262144)), "");
    EXPECT_EQ (reasonOf (filled (262145)), "payload_size");
    EXPECT_EQ (reasonOf (times ("[", 262145)), "payload_size") << "before anything is parsed";
}

TEST_F (PreviewDraftHostile, NoZeroCharacterComesThrough)
{
    EXPECT_EQ (reasonOf (with ("title", R"("a\u0000b")")), "unsupported_schema");
    EXPECT_EQ (reasonOf (withNote (R"("\u0000")")), "unsupported_schema");
    EXPECT_EQ (reasonOf (withMore (R"("no\u0000te": 1)")), "unsupported_schema");

    const auto cutAt = [this] (int bytes)
    {
        auto text = payload().toStdString();
        text[(size_t) bytes] = '\0';
        return juce::String (juce::CharPointer_UTF8 (text.data()), juce::CharPointer_UTF8 (text.data() + text.size()));
    };

    EXPECT_EQ (reasonOf (cutAt (0)), "payload_size");
    EXPECT_EQ (reasonOf (cutAt (40)), "unsupported_schema");
}

TEST_F (PreviewDraftHostile, BrokenEscapesAreNoRequest)
{
    for (const auto* escape : { "\\ud800", "\\udc00", "\\ud800\\ud800", "\\ud800x", "\\u12", "\\u12g4", "\\u" })
        EXPECT_EQ (reasonOf (with ("title", "\"a" + juce::String (escape) + "\"")), "unsupported_schema") << escape;
}

TEST_F (PreviewDraftHostile, NoBytesThatAreNoUtf8ReachTheStore)
{
    const auto token = times ("5a", brokerTokenDigits / 2);
    const auto frame = [&] (const std::string& bytes)
    {
        const auto input = juce::JSON::toString (with ("title", "\"a@b\"")).toStdString();
        auto text = ("{\"version\": 2, \"token\": \"" + token + "\", \"op\": \"creator.preview.draft.save\", \"requestId\": \"1\", \"input\": ").toStdString() + input + "}";
        text.replace (text.find ('@'), 1, bytes);
        return juce::MemoryBlock (text.data(), text.size());
    };

    BrokerRequest request;
    juce::String error;
    EXPECT_TRUE (parseBrokerRequest (frame ("\xc3\xa9"), token, request, error)) << error;
    EXPECT_EQ (reasonOf (request.input), "");
    EXPECT_EQ (lastRecord["title"].toString(), utf8 ("aéb"));

    for (const auto* bytes : { "\x80", "\xbf", "\xc3", "\xff", "\xe9", "\xe2\x82", "\xf0\x9f\x98", "\xc1\x81", "\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80",
                               "\xf8\x88\x80\x80", "\xe1\"", "\xc3\\" })
    {
        EXPECT_FALSE (parseBrokerRequest (frame (bytes), token, request, error));
        EXPECT_EQ (error, "invalid_json") << juce::String::toHexString (bytes, (int) std::strlen (bytes));
    }
}

TEST_F (PreviewDraftHostile, OddCharactersAreKept)
{
    for (const auto c : std::initializer_list<juce::juce_wchar> { 0x7f, 0x80, 0xa0, 0xad, 0x200b, 0x202e, 0x2028, 0xfeff, 0xfffd, 0xffff, 0x1f600, 0x10ffff })
    {
        const auto title = "a" + juce::String::charToString (c) + "b";
        EXPECT_EQ (reasonOf (with ("title", "\"" + title + "\"")), "") << (juce::uint32) c;
        EXPECT_EQ (lastRecord["title"].toString(), title) << (juce::uint32) c;
    }
}

//==============================================================================
TEST_F (PreviewDraftHostile, ASourcePathWithForwardSlashesIsRefusedWhereTheSystemWritesOthers)
{
    const auto slashed = render.getFullPathName().replaceCharacter (juce::File::getSeparatorChar(), '/');
    EXPECT_EQ (reasonOf (with ("sourcePath", juce::JSON::toString (slashed))), juce::File::getSeparatorChar() == '/' ? "" : "invalid_source_wav");
}
