#include "FuzzHome.h"

#include "creator/PreviewDraftStore.h"
#include "support/BoundedJson.h"
#include "support/ChildFile.h"
#include "support/Utf8.h"
#include "support/WavBuilder.h"

#include <juce_graphics/juce_graphics.h>
#include <map>

namespace
{
constexpr std::size_t longestRecord = 0x80000;

/** The ids of the two records that stand already. */
const auto notARecord = juce::String::repeatedString ("c", 32), emptyRecord = juce::String::repeatedString ("e", 32);

void require (bool condition)
{
    if (! condition)
        std::abort();
}

/** The bytes of every file below the drafts' directory by its name. */
using Records = std::map<juce::String, std::string>;

std::string bytesOf (const juce::File& file)
{
    juce::MemoryBlock bytes;
    require (file.loadFileAsData (bytes));
    return { bytes.begin(), bytes.end() };
}

Records records()
{
    Records found;

    for (const auto& file : HubPaths::publishDraftsDirectory().findChildFiles (juce::File::findFilesAndDirectories, true, "*"))
        found[file.getFileName()] = bytesOf (file);

    return found;
}

juce::File recordOf (const juce::String& jobId)
{
    return childOf (HubPaths::publishDraftsDirectory(), jobId + ".json");
}

/** The files that a draft may name, and the two records. */
struct Scene
{
    Scene()
    {
        constexpr int seconds = 90, bytesPerSecond = 100;
        const auto wav = zorva::test::WavBuilder().format ({ .byteRate = bytesPerSecond }).data (seconds * bytesPerSecond).bytes();
        require (render.replaceWithData (wav.data(), wav.size()));

        juce::FileOutputStream picture (cover);
        require (juce::PNGImageFormat().writeImageToStream (juce::Image (juce::Image::RGB, 8, 8, true), picture));

        HubPaths::publishDraftsDirectory().createDirectory();
        require (recordOf (notARecord).replaceWithText ("plain text"));
        require (recordOf (emptyRecord).create().wasOk());
    }

    const juce::File render = fuzz::home().getChildFile ("song.wav");
    const juce::File cover = fuzz::home().getChildFile ("cover.png");
};

void checkRefused (const PreviewDraftStore::SaveResult& result, const juce::String& text, const Records& before)
{
    static const juce::StringArray unread { "payload_size", "unsupported_schema" };
    static const juce::StringArray read { "invalid_metadata", "invalid_tags", "invalid_source_wav", "preview_out_of_range",
                                          "invalid_cover_art", "job_id_conflict", "draft_recovery_required" };

    require (unread.contains (result.reason) ? result.jobId.isEmpty() : read.contains (result.reason));
    require ((result.reason == "payload_size") == (text.isEmpty() || text.getNumBytesAsUTF8() > 262144));
    require (result.reason != "job_id_conflict" || result.jobId == notARecord);
    require (result.reason != "draft_recovery_required" || result.jobId == emptyRecord);
    require (! result.idempotentReplay && records() == before);
}

/** What became of the request says what it said, and nothing of what must be confirmed afresh. */
void checkRecord (const juce::File& file, const juce::String& text)
{
    const auto request = BoundedJson::parse (text);
    const auto record = BoundedJson::parseFile (file);
    require (BoundedJson::objectIn (record) != nullptr && ! file.loadFileAsString().containsChar ('\n'));

    for (const auto* kept : { "schemaVersion", "jobId", "title", "description", "genre", "origin", "previewStartSeconds", "previewDurationSeconds" })
        require (record[kept] == request[kept]);

    for (const auto* removed : { "rightsConfirmed", "rightsConfirmedAt", "visibility" })
        require (! record.hasProperty (removed));

    require (record["status"] == "Draft" && record["localDraftVisibility"] == "private");
    require (record["renderPreparationRightsAcknowledgedAt"] == request["rightsConfirmedAt"]);
    require (BoundedJson::textIn (record, "payloadHash").length() == 64 && record["savedAt"].isString());
}

/** The same request again is a repetition and any other under its job id a conflict; neither touches the record. */
void checkRetries (PreviewDraftStore& store, const juce::File& file, const juce::String& text)
{
    const auto written = bytesOf (file);
    const auto isReadable = written.size() <= longestRecord;
    const auto again = store.save (text);
    require (again.accepted == isReadable && again.idempotentReplay == isReadable);

    const auto other = BoundedJson::parse (text);
    BoundedJson::objectIn (other)->setProperty ("note", BoundedJson::textIn (other, "note") + "x");
    require (! store.save (juce::JSON::toString (other, true)).accepted);
    require (bytesOf (file) == written);
}
}

/** The bytes as the text that the broker hands on. "@WAV@" and "@COVER@" stand for files that a draft may name. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    static const Scene scene;

    if (! isUtf8 (data, size))
        return 0;

    const auto text = juce::String::fromUTF8 (reinterpret_cast<const char*> (data), (int) size)
                          .replace ("@WAV@", scene.render.getFullPathName())
                          .replace ("@COVER@", scene.cover.getFullPathName());

    PreviewDraftStore store;
    const auto before = records();
    const auto result = store.save (text);
    require (result.accepted == result.reason.isEmpty());

    if (! result.accepted)
    {
        checkRefused (result, text, before);
        return 0;
    }

    const auto file = recordOf (result.jobId);
    require (result.jobId.length() == 32 && result.jobId.containsOnly ("0123456789abcdef") && ! result.idempotentReplay);
    require (store.count() == (int) before.size() + 1);
    checkRecord (file, text);
    checkRetries (store, file, text);

    require (file.deleteFile() && records() == before);
    return 0;
}
