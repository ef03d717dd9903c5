#include "app/HubPaths.h"
#include "creator/PreviewDraftStore.h"
#include "support/Files.h"
#include "support/SpecialFiles.h"
#include "support/Text.h"
#include "support/WavBuilder.h"

#include <gtest/gtest.h>
#include <juce_cryptography/juce_cryptography.h>
#include <juce_graphics/juce_graphics.h>
#include <thread>

namespace
{
using namespace zorva::test;
using Changes = std::initializer_list<std::pair<const char*, juce::var>>;

const juce::String jobId ("0123456789abcdef0123456789abcdef");

/** A WAV of so many seconds at 8000 bytes a second. */
juce::File wav (int seconds = 60, const juce::String& name = "song.wav")
{
    const auto file = HubPaths::root().getChildFile ("renders").getChildFile (name);
    return writeBytes (file, WavBuilder().format().data (8000 * seconds).bytes());
}

juce::File cover()
{
    const auto file = HubPaths::root().getChildFile ("renders/cover.png");
    file.getParentDirectory().createDirectory();
    juce::FileOutputStream out (file);
    juce::PNGImageFormat().writeImageToStream (juce::Image (juce::Image::RGB, 8, 8, true), out);
    return file;
}

juce::var requestValue (Changes changes = {})
{
    const auto value = juce::JSON::parse (R"({"schemaVersion":1,"jobId":"","sourcePath":"","title":"Song","description":"","genre":"",
        "visibility":"private","rightsConfirmed":true,"rightsConfirmedAt":"2026-05-04T03:02:01.000+02:00","origin":"zorva-daw-render-complete",
        "previewStartSeconds":0,"previewDurationSeconds":30,"tags":[]})");
    auto& object = *value.getDynamicObject();
    object.setProperty ("jobId", jobId);
    object.setProperty ("sourcePath", HubPaths::root().getChildFile ("renders/song.wav").getFullPathName());

    for (const auto& [key, change] : changes)
        change.isVoid() ? object.removeProperty (key) : object.setProperty (key, change);

    return value;
}

juce::String request (Changes changes = {}) { return juce::JSON::toString (requestValue (changes), true); }

juce::File record (const juce::String& id = jobId) { return HubPaths::publishDraftsDirectory().getChildFile (id + ".json"); }

/** The reason of a refused request; "" when it was accepted. Nothing may be written for a refused one. */
std::string reasonOf (const juce::String& text)
{
    PreviewDraftStore store;
    const auto before = store.count();
    const auto result = store.save (text);
    EXPECT_EQ (result.accepted, result.reason.isEmpty());
    EXPECT_TRUE (result.accepted || store.count() == before);
    EXPECT_FALSE (result.idempotentReplay && ! result.accepted);

    if (result.accepted)
        record (result.jobId).deleteFile();

    return result.reason.toStdString();
}

std::string reasonOf (Changes changes) { return reasonOf (request (changes)); }

juce::String times (const char* text, int count) { return juce::String::repeatedString (utf8 (text), count); }
juce::var list (std::initializer_list<juce::var> items) { return juce::Array<juce::var> (items); }

class PreviewDraftStoreTest : public testing::Test
{
protected:
    PreviewDraftStoreTest() { wav(); }
};
}

//==============================================================================
TEST_F (PreviewDraftStoreTest, AGoodRequestBecomesARecordOfOneLine)
{
    PreviewDraftStore store;
    const auto result = store.save (request ({ { "tags", list ({ "calm", "slow" }) }, { "color", "blue" } }));
    EXPECT_TRUE (result.accepted);
    EXPECT_FALSE (result.idempotentReplay);
    EXPECT_EQ (result.jobId, jobId);
    EXPECT_EQ (result.reason, "");

    const auto text = record().loadFileAsString();
    const auto value = juce::JSON::parse (text);
    const auto path = juce::JSON::toString (HubPaths::root().getChildFile ("renders/song.wav").getFullPathName());
    EXPECT_EQ (text.replace (value["payloadHash"].toString(), "HASH").replace (value["savedAt"].toString(), "NOW").toStdString(),
               (R"({"schemaVersion": 1, "jobId": "0123456789abcdef0123456789abcdef", "sourcePath": )" + path
                + R"(, "title": "Song", "description": "", "genre": "", "origin": "zorva-daw-render-complete", "previewStartSeconds": 0, )"
                  R"("previewDurationSeconds": 30, "tags": ["calm", "slow"], "color": "blue", "renderPreparationRightsAcknowledged": true, )"
                  R"("renderPreparationRightsAcknowledgedAt": "2026-05-04T03:02:01.000+02:00", "localDraftVisibility": "private", )"
                  R"("status": "Draft", "serviceAvailable": false, "hubTransferConsent": false, )"
                  R"("requiresFreshRightsAndVisibilityConfirmation": true, "payloadHash": "HASH", "savedAt": "NOW"})").toStdString());
    EXPECT_LT (std::abs ((juce::Time::getCurrentTime() - juce::Time::fromISO8601 (value["savedAt"].toString())).inSeconds()), 60.0);
}

TEST_F (PreviewDraftStoreTest, TheRecordHoldsNoConfirmationOfTheDaws)
{
    PreviewDraftStore().save (request());
    const auto value = juce::JSON::parse (record());

    for (const auto* key : { "rightsConfirmed", "rightsConfirmedAt", "visibility" })
        EXPECT_FALSE (value.hasProperty (key)) << key;
}

TEST_F (PreviewDraftStoreTest, TheHashIsThatOfTheObjectOverSeveralLines)
{
    PreviewDraftStore().save (request());
    const auto value = juce::JSON::parse (record());
    const auto stated = value["payloadHash"].toString();
    value.getDynamicObject()->removeProperty ("payloadHash");
    value.getDynamicObject()->removeProperty ("savedAt");
    EXPECT_EQ (stated, juce::SHA256 (juce::JSON::toString (value, false, 15).toUTF8()).toHexString());
    EXPECT_EQ (stated.length(), 64);
}

TEST_F (PreviewDraftStoreTest, AReplayIsAcceptedAndChangesNothing)
{
    PreviewDraftStore store;
    store.save (request());
    const auto before = record().loadFileAsString();
    const auto result = store.save (request());
    EXPECT_TRUE (result.accepted);
    EXPECT_TRUE (result.idempotentReplay);
    EXPECT_EQ (record().loadFileAsString(), before) << "with its first savedAt";
    EXPECT_EQ (store.count(), 1);
}

TEST_F (PreviewDraftStoreTest, AnotherRequestUnderAUsedJobIdIsAConflict)
{
    PreviewDraftStore store;
    store.save (request());
    const auto before = record().loadFileAsString();

    for (const auto& other : { request ({ { "title", "Other" } }), request ({ { "rightsConfirmedAt", "2026-05-04T03:02:02.000+02:00" } }),
                               request ({ { "anything", 1 } }) })
    {
        const auto result = store.save (other);
        EXPECT_FALSE (result.accepted);
        EXPECT_EQ (result.reason, "job_id_conflict");
        EXPECT_EQ (result.jobId, jobId);
        EXPECT_EQ (record().loadFileAsString(), before);
    }
}

TEST_F (PreviewDraftStoreTest, ARecordThatCannotBeUsedIsLeftAlone)
{
    const std::pair<std::string, const char*> cases[] { { "", "draft_recovery_required" }, { std::string (524289, ' '), "draft_recovery_required" },
                                                        { "plain text", "job_id_conflict" }, { "[]", "job_id_conflict" }, { "{}", "job_id_conflict" },
                                                        { std::string (40960, '['), "job_id_conflict" } };

    for (const auto& [content, reason] : cases)
    {
        writeBytes (record(), content);
        EXPECT_EQ (PreviewDraftStore().save (request()).reason, reason);
        EXPECT_EQ (read (record()), content);
    }
}

//==============================================================================
TEST_F (PreviewDraftStoreTest, ThePayloadIsOneTo262144Bytes)
{
    EXPECT_EQ (reasonOf (juce::String()), "payload_size");
    EXPECT_EQ (reasonOf (request().paddedRight (' ', 262144)), "");
    EXPECT_EQ (reasonOf (request().paddedRight (' ', 262145)), "payload_size");
}

TEST_F (PreviewDraftStoreTest, TheSchemaIsTheIntegerOne)
{
    for (const auto* text : { "x", "[]", "null", "{}", "{" })
        EXPECT_EQ (reasonOf (juce::String (text)), "unsupported_schema") << text;

    EXPECT_EQ (reasonOf (times ("[", 40960)), "unsupported_schema");
    EXPECT_EQ (reasonOf ({ { "schemaVersion", 1.0 } }), "unsupported_schema");
    EXPECT_EQ (reasonOf (request().replace ("\"schemaVersion\": 1,", "\"schemaVersion\": 1.0,")), "unsupported_schema");
    EXPECT_EQ (reasonOf ({ { "schemaVersion", "1" } }), "unsupported_schema");
    EXPECT_EQ (reasonOf ({ { "schemaVersion", true } }), "unsupported_schema");
    EXPECT_EQ (reasonOf ({ { "schemaVersion", 2 } }), "unsupported_schema");
    EXPECT_EQ (reasonOf ({ { "schemaVersion", juce::var() } }), "unsupported_schema");
}

TEST_F (PreviewDraftStoreTest, EachValueHasItsType)
{
    for (const auto* key : { "jobId", "sourcePath", "title", "description", "genre", "visibility", "rightsConfirmedAt", "origin" })
    {
        EXPECT_EQ (reasonOf ({ { key, 5 } }), "invalid_metadata") << key;
        EXPECT_EQ (reasonOf ({ { key, juce::var() } }), "invalid_metadata") << key;
    }

    for (const auto* key : { "previewStartSeconds", "previewDurationSeconds" })
        for (const auto& wrong : { juce::var ("30"), juce::var (30.0), juce::var (true), juce::var() })
            EXPECT_EQ (reasonOf ({ { key, wrong } }), "invalid_metadata") << key;

    for (const auto& wrong : { juce::var (1), juce::var ("true"), juce::var() })
        EXPECT_EQ (reasonOf ({ { "rightsConfirmed", wrong } }), "invalid_metadata");
}

TEST_F (PreviewDraftStoreTest, AJobIdIs32LowerCaseHexadecimalDigitsNotAllZero)
{
    for (const auto& bad : { jobId.toUpperCase(), jobId.dropLastCharacters (1), jobId + "0", times ("0", 32), jobId.replaceSection (3, 1, "g"),
                             jobId.replaceSection (3, 1, "/"), juce::String() })
        EXPECT_EQ (reasonOf ({ { "jobId", bad } }), "invalid_metadata") << bad;
}

TEST_F (PreviewDraftStoreTest, TextsHaveTheirLengthsAndTheFreeTextRule)
{
    const struct { const char* key; int longest; bool mayBeBlank; } cases[] { { "title", 160, false }, { "description", 4000, true }, { "genre", 64, true } };

    for (const auto& each : cases)
    {
        EXPECT_EQ (reasonOf ({ { each.key, times ("é", each.longest) } }), "") << each.key;
        EXPECT_EQ (reasonOf ({ { each.key, times ("é", each.longest + 1) } }), "invalid_metadata") << each.key;
        EXPECT_EQ (reasonOf ({ { each.key, "" } }), each.mayBeBlank ? "" : "invalid_metadata") << each.key;
        EXPECT_EQ (reasonOf ({ { each.key, "  \n " } }), each.mayBeBlank ? "" : "invalid_metadata") << each.key;
        EXPECT_EQ (reasonOf ({ { each.key, "a\tb\nc\rd" } }), "") << each.key;
        EXPECT_EQ (reasonOf ({ { each.key, "a\x0b" } }), "invalid_metadata") << each.key;
        EXPECT_EQ (reasonOf ({ { each.key, "a\x1f" } }), "invalid_metadata") << each.key;
    }

    EXPECT_EQ (reasonOf ({ { "title", times ("x", 158) + "   " } }), "invalid_metadata") << "blanks count toward the length";
}

TEST_F (PreviewDraftStoreTest, TheFixedValuesMustStand)
{
    EXPECT_EQ (reasonOf ({ { "visibility", "public" } }), "invalid_metadata");
    EXPECT_EQ (reasonOf ({ { "visibility", "Private" } }), "invalid_metadata");
    EXPECT_EQ (reasonOf ({ { "rightsConfirmed", false } }), "invalid_metadata");
    EXPECT_EQ (reasonOf ({ { "origin", "zorva-daw" } }), "invalid_metadata");
}

TEST_F (PreviewDraftStoreTest, TheConfirmationHasATime)
{
    for (const auto* bad : { "", "yesterday", "1970-01-01T00:00:00.000Z", "1960-01-01T00:00:00.000Z" })
        EXPECT_EQ (reasonOf ({ { "rightsConfirmedAt", bad } }), "invalid_metadata") << bad;

    EXPECT_EQ (reasonOf ({ { "rightsConfirmedAt", "1970-01-01T00:00:00.001Z" } }), "");
    EXPECT_EQ (reasonOf ({ { "rightsConfirmedAt", "2026-05-04T03:02:01.000Z" + times ("x", 41) } }), "invalid_metadata") << "65 characters";
}

TEST_F (PreviewDraftStoreTest, TheReleaseAddressIsHttpsOrEmpty)
{
    EXPECT_EQ (reasonOf ({ { "fullReleaseUrl", "" } }), "");
    EXPECT_EQ (reasonOf ({ { "fullReleaseUrl", "https://a.example/song" } }), "");
    EXPECT_EQ (reasonOf ({ { "fullReleaseUrl", "http://a.example/song" } }), "invalid_metadata");
    EXPECT_EQ (reasonOf ({ { "fullReleaseUrl", "HTTPS://a.example/song" } }), "invalid_metadata");
    EXPECT_EQ (reasonOf ({ { "fullReleaseUrl", "https://a.example/" + times ("x", 2030) } }), "");
    EXPECT_EQ (reasonOf ({ { "fullReleaseUrl", "https://a.example/" + times ("x", 2031) } }), "invalid_metadata");
}

TEST_F (PreviewDraftStoreTest, APreviewIs30Or60Or90SecondsFromZeroOn)
{
    wav (200);

    for (const int good : { 30, 60, 90 })
        EXPECT_EQ (reasonOf ({ { "previewDurationSeconds", good } }), "");

    for (const int bad : { 0, 29, 45, 91, -30 })
        EXPECT_EQ (reasonOf ({ { "previewDurationSeconds", bad } }), "invalid_metadata") << bad;

    EXPECT_EQ (reasonOf ({ { "previewStartSeconds", -1 } }), "invalid_metadata");
    EXPECT_EQ (reasonOf ({ { "previewStartSeconds", (juce::int64) 9000000000000000000 } }), "preview_out_of_range");
}

TEST_F (PreviewDraftStoreTest, TagsAreAtMost16ShortTexts)
{
    juce::Array<juce::var> tags;

    for (int i = 0; i < 16; ++i)
        tags.add ("tag" + juce::String (i));

    EXPECT_EQ (reasonOf ({ { "tags", tags } }), "");
    tags.add ("one more");
    EXPECT_EQ (reasonOf ({ { "tags", tags } }), "invalid_tags");
    EXPECT_EQ (reasonOf ({ { "tags", juce::var() } }), "invalid_tags");
    EXPECT_EQ (reasonOf ({ { "tags", "calm" } }), "invalid_tags");
    EXPECT_EQ (reasonOf ({ { "tags", list ({ 5 }) } }), "invalid_tags");
    EXPECT_EQ (reasonOf ({ { "tags", list ({ " " }) } }), "invalid_tags");
    EXPECT_EQ (reasonOf ({ { "tags", list ({ times ("é", 48) }) } }), "");
    EXPECT_EQ (reasonOf ({ { "tags", list ({ times ("é", 49) }) } }), "invalid_tags");
    EXPECT_EQ (reasonOf ({ { "tags", list ({ "a\x01" }) } }), "invalid_tags");
}

//==============================================================================
TEST_F (PreviewDraftStoreTest, TheSourceIsAPlainWavFileByItsOwnFullPath)
{
    const auto song = wav();
    const auto folder = song.getParentDirectory();
    const auto at = [] (const juce::String& path) { return reasonOf ({ { "sourcePath", path } }); };
    const char* const bad = "invalid_source_wav";

    EXPECT_EQ (at (song.getFullPathName()), "");
    EXPECT_EQ (at (wav (60, "LOUD.WAV").getFullPathName()), "");
    EXPECT_EQ (at (""), bad);
    EXPECT_EQ (at ("song.wav"), bad);
    EXPECT_EQ (at ("~/song.wav"), bad);
    EXPECT_EQ (at (folder.getFullPathName() + "/absent.wav"), bad);
    EXPECT_EQ (at (folder.getFullPathName() + "/../renders/song.wav"), bad);
    EXPECT_EQ (at (folder.getFullPathName() + "//song.wav"), bad);
    EXPECT_EQ (at ("/" + times ("x", 4093) + ".wav"), bad);
    EXPECT_EQ (at (wav (60, "song.aif").getFullPathName()), bad);
    EXPECT_EQ (at (writeBytes (in (folder, "empty.wav"), "").getFullPathName()), bad);
    EXPECT_EQ (at (link (in (folder, "link.wav"), song.getFullPathName()).getFullPathName()), bad);
    EXPECT_EQ (at (link (in (HubPaths::root(), "way"), folder.getFullPathName()).getFullPathName() + "/song.wav"), bad);
    ASSERT_TRUE (in (folder, "folder.wav").createDirectory());
    EXPECT_EQ (at (in (folder, "folder.wav").getFullPathName()), bad);
    EXPECT_EQ (at (specialFile (folder, ".wav").getFullPathName()), bad) << "and returns";
}

TEST_F (PreviewDraftStoreTest, ThePreviewMustFitIntoTheWav)
{
    EXPECT_EQ (reasonOf ({ { "previewStartSeconds", 30 } }), "");
    EXPECT_EQ (reasonOf ({ { "previewStartSeconds", 31 } }), "preview_out_of_range");
    EXPECT_EQ (reasonOf ({ { "previewDurationSeconds", 60 } }), "");
    EXPECT_EQ (reasonOf ({ { "previewDurationSeconds", 90 } }), "preview_out_of_range");

    const auto song = HubPaths::root().getChildFile ("renders/song.wav");
    writeBytes (song, WavBuilder().format().data (8000 * 30 - 7).bytes());
    EXPECT_EQ (reasonOf (Changes {}), "") << "less than a millisecond short";
    writeBytes (song, WavBuilder().format().data (8000 * 30 - 16).bytes());
    EXPECT_EQ (reasonOf (Changes {}), "preview_out_of_range");
}

TEST_F (PreviewDraftStoreTest, AFileThatIsNoWavIsOutOfRange)
{
    writeBytes (HubPaths::root().getChildFile ("renders/song.wav"), std::string (5000, 'x'));
    EXPECT_EQ (reasonOf (Changes {}), "preview_out_of_range");
}

TEST_F (PreviewDraftStoreTest, CoverArtIsAPicture)
{
    const auto art = cover();
    EXPECT_EQ (reasonOf ({ { "coverArtPath", "" } }), "");
    EXPECT_EQ (reasonOf ({ { "coverArtPath", art.getFullPathName() } }), "");
    EXPECT_EQ (reasonOf ({ { "coverArtPath", "cover.png" } }), "invalid_cover_art");
    EXPECT_EQ (reasonOf ({ { "coverArtPath", wav().getFullPathName() } }), "invalid_cover_art");
    EXPECT_EQ (reasonOf ({ { "coverArtPath", writeBytes (art.getSiblingFile ("bad.png"), "no picture").getFullPathName() } }), "invalid_cover_art");
    EXPECT_EQ (reasonOf ({ { "coverArtPath", 5 } }), "invalid_cover_art") << "read as text";
}

TEST_F (PreviewDraftStoreTest, TheFirstFailureWins)
{
    const auto bad = [] (Changes changes) { return reasonOf (changes); };
    const juce::var badCover ("x.png"), badTags ("none"), badPath ("x.wav");
    EXPECT_EQ (bad ({ { "schemaVersion", 2 }, { "title", "" }, { "tags", badTags } }), "unsupported_schema");
    EXPECT_EQ (bad ({ { "title", "" }, { "tags", badTags }, { "sourcePath", badPath } }), "invalid_metadata");
    EXPECT_EQ (bad ({ { "tags", badTags }, { "sourcePath", badPath }, { "coverArtPath", badCover } }), "invalid_tags");
    EXPECT_EQ (bad ({ { "sourcePath", badPath }, { "previewStartSeconds", 99 }, { "coverArtPath", badCover } }), "invalid_source_wav");
    EXPECT_EQ (bad ({ { "previewStartSeconds", 99 }, { "coverArtPath", badCover } }), "preview_out_of_range");
}

TEST_F (PreviewDraftStoreTest, TheJobIdIsToldAsSoonAsItHasBeenRead)
{
    EXPECT_EQ (PreviewDraftStore().save (request ({ { "title", "" } })).jobId, jobId);
    EXPECT_EQ (PreviewDraftStore().save (request ({ { "schemaVersion", 2 } })).jobId, "");
}

TEST_F (PreviewDraftStoreTest, WithoutAPlaceForItNothingIsAccepted)
{
    HubPaths::creatorDirectory().createDirectory();
    HubPaths::publishDraftsDirectory().deleteRecursively();
    ASSERT_TRUE (HubPaths::publishDraftsDirectory().replaceWithText ("in the way"));
    EXPECT_EQ (PreviewDraftStore().save (request()).reason, "storage_unavailable");
}

TEST_F (PreviewDraftStoreTest, KeysOfTheClientsOwnOfThoseNamesStayInPlaceAndCount)
{
    PreviewDraftStore store;
    ASSERT_TRUE (store.save (request ({ { "payloadHash", "mine" }, { "savedAt", "then" } })).accepted);
    const auto properties = juce::JSON::parse (record()).getDynamicObject()->getProperties();
    EXPECT_LT (properties.indexOf ("payloadHash"), properties.indexOf ("status"));
    EXPECT_TRUE (store.save (request ({ { "payloadHash", "mine" }, { "savedAt", "then" } })).idempotentReplay);
    EXPECT_EQ (store.save (request ({ { "payloadHash", "other" }, { "savedAt", "then" } })).reason, "job_id_conflict");
}

TEST_F (PreviewDraftStoreTest, CountsItsRecordsOnly)
{
    PreviewDraftStore store;
    EXPECT_EQ (store.count(), 0);
    store.save (request());
    write (record ("other"), "{}");
    write (HubPaths::publishDraftsDirectory().getChildFile ("note.txt"), "x");
    write (HubPaths::publishDraftsDirectory().getChildFile ("deeper/third.json"), "{}");
    EXPECT_EQ (store.count(), 2);
}

TEST_F (PreviewDraftStoreTest, ACountNeverSeesASaveHalfWay)
{
    PreviewDraftStore store;
    std::atomic<bool> done { false };
    std::thread saving ([&]
    {
        for (int i = 1; i <= 100; ++i)
            EXPECT_TRUE (store.save (request ({ { "jobId", juce::String::toHexString (i).paddedLeft ('0', 32) } })).accepted);

        done = true;
    });

    for (int last = 0; ! done;)
    {
        const auto count = store.count();
        EXPECT_GE (count, last);
        last = count;
    }

    saving.join();
    EXPECT_EQ (store.count(), 100);
}
