#include "creator/DraftRecord.h"

#include "platform/Sha256Digest.h"
#include "support/RecordFile.h"

namespace DraftRecord
{
namespace
{
constexpr int maximumDecimalPlaces = 15;

juce::String sha256OfText (const juce::String& text)
{
    platform::Sha256Digest digest;
    digest.update (text.toRawUTF8(), text.getNumBytesAsUTF8());
    return digest.finish();
}
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
    const auto hash = sha256OfText (RecordFile::toText (juce::var (&request)));
    request.setProperty ("payloadHash", hash);
    return hash.isNotEmpty();
}

juce::String toText (const juce::var& record)
{
    return juce::JSON::toString (record, true, maximumDecimalPlaces);
}
}
