#include "creator/DraftRecord.h"

#include "support/FileHash.h"
#include "support/RecordFile.h"

namespace DraftRecord
{
namespace
{
constexpr int maximumDecimalPlaces = 15;
}

bool makeFrom (juce::DynamicObject& request, const DraftFiles& files)
{
    request.setProperty ("sourcePath", files.source.getFullPathName());

    if (files.coverArt != juce::File())
        request.setProperty ("coverArtPath", files.coverArt.getFullPathName());

    const juce::var confirmedAt (request.getProperty ("rightsConfirmedAt"));
    request.setProperty ("renderPreparationRightsAcknowledged", true);
    request.setProperty ("renderPreparationRightsAcknowledgedAt", confirmedAt);
    request.removeProperty ("rightsConfirmed");
    request.removeProperty ("rightsConfirmedAt");
    request.setProperty ("localDraftVisibility", "private");
    request.removeProperty ("visibility");
    request.setProperty ("status", "Draft");
    request.setProperty ("serviceAvailable", false);
    request.setProperty ("hubTransferConsent", false);
    request.setProperty ("requiresFreshRightsAndVisibilityConfirmation", true);

    // Over several lines, unlike the record itself, and before anything that differs from one repetition to the next.
    const auto text = RecordFile::toText (juce::var (&request));
    const auto hash = sha256OfBytes (text.toRawUTF8(), text.getNumBytesAsUTF8());
    request.setProperty ("payloadHash", hash);
    return hash.isNotEmpty();
}

juce::String toText (const juce::var& record)
{
    return juce::JSON::toString (record, true, maximumDecimalPlaces);
}
}
