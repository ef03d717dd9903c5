#pragma once

#include "creator/DraftPath.h"
#include "creator/DraftRequest.h"

/** Keeps local preview drafts of rendered WAV files, one JSON record a job. Nothing is uploaded. A retry of the same request is
    recognised by a hash and does no harm; a different request under a used job id is refused, and no record is ever overwritten.

    A lock covers each operation whole: save() runs on the broker thread, count() on the message thread. */
class PreviewDraftStore
{
public:
    /** What became of a request. */
    struct SaveResult
    {
        bool accepted = false;              ///< a record now stands for this request
        bool idempotentReplay = false;      ///< it stood there already
        juce::String jobId;                 ///< as in the request, set as soon as it has been read
        juce::String reason;                ///< a short code when not accepted
    };

    /** Forms the path; creates nothing. */
    PreviewDraftStore();

    /** Validates the JSON text of a request and writes its record. Never throws. */
    SaveResult save (const juce::String& inputText);

    /** The number of "*.json" files in the directory. */
    int count();

private:
    void keepRecord (const juce::var& request, const DraftFiles& files, SaveResult& result);
    static void compareWithRecord (const juce::File& file, const juce::String& payloadHash, SaveResult& result);

    juce::File directory;
    juce::CriticalSection lock;

    JUCE_DECLARE_NON_COPYABLE (PreviewDraftStore)
};
