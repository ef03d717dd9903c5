#include "creator/PreviewDraftStore.h"

#include "app/HubPaths.h"
#include "creator/DraftRecord.h"
#include "support/BoundedJson.h"
#include "support/ChildFile.h"
#include "support/IsoTime.h"
#include "support/RecordFile.h"

namespace
{
constexpr juce::int64 maximumRecordBytes = 0x80000;
}

PreviewDraftStore::PreviewDraftStore() : directory (HubPaths::publishDraftsDirectory())
{
}

PreviewDraftStore::SaveResult PreviewDraftStore::save (const juce::String& inputText)
{
    const juce::ScopedLock scopedLock (lock);
    SaveResult result;
    const auto request = DraftRequest::parse (inputText, result.reason);

    if (result.reason.isNotEmpty())
        return result;

    result.jobId = BoundedJson::textIn (request, "jobId");
    DraftFiles files;
    result.reason = DraftRequest::firstBreach (*BoundedJson::objectIn (request), files);

    if (result.reason.isEmpty())
        keepRecord (request, files, result);

    return result;
}

void PreviewDraftStore::keepRecord (const juce::var& request, const DraftFiles& files, SaveResult& result)
{
    auto& record = *BoundedJson::objectIn (request);

    if (! DraftRecord::makeFrom (record, files))
    {
        result.reason = "draft_save_failed";
        return;
    }

    if (directory.createDirectory().failed())
    {
        result.reason = "storage_unavailable";
        return;
    }

    const auto file = childOf (directory, result.jobId + ".json");

    if (file.existsAsFile())
    {
        compareWithRecord (file, BoundedJson::textIn (request, "payloadHash"), result);
        return;
    }

    record.setProperty ("savedAt", isoTime (juce::Time::getCurrentTime()));
    result.accepted = RecordFile::replace (file, DraftRecord::toText (request)) == RecordFile::Outcome::written;

    if (! result.accepted)
        result.reason = "draft_save_failed";
}

void PreviewDraftStore::compareWithRecord (const juce::File& file, const juce::String& payloadHash, SaveResult& result)
{
    const auto size = file.getSize();

    if (size < 1 || size > maximumRecordBytes)
        result.reason = "draft_recovery_required";
    else if (BoundedJson::textIn (BoundedJson::parseFile (file), "payloadHash") == payloadHash)
        result.accepted = result.idempotentReplay = true;
    else
        result.reason = "job_id_conflict";
}

int PreviewDraftStore::count()
{
    const juce::ScopedLock scopedLock (lock);
    return directory.getNumberOfChildFiles (juce::File::findFiles, "*.json");
}
