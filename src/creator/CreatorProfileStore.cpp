#include "creator/CreatorProfileStore.h"

#include "app/HubPaths.h"
#include "creator/CreatorProfileJson.h"
#include "creator/CreatorProfileRules.h"
#include "support/AtomicRename.h"
#include "support/IsoTime.h"
#include "support/RecordFile.h"
#include "support/WholeCopy.h"

namespace
{
constexpr const char* fileName = "profile-v1.json";
constexpr juce::int64 maximumFileBytes = 0x80000;
constexpr const char* recoveryRequired = "creator_draft_recovery_required";

bool fail (juce::String& outError, const char* code)
{
    outError = code;
    return false;
}

bool succeed (juce::String& outError)
{
    outError.clear();
    return true;
}
}

CreatorProfileStore::CreatorProfileStore() : profileFile (HubPaths::creatorDirectory().getChildFile (fileName))
{
}

CreatorProfile CreatorProfileStore::load()
{
    lastErrorCode.clear();

    if (! profileFile.existsAsFile())
        return {};

    const auto size = profileFile.getSize();

    if (size < 1 || size > maximumFileBytes)
    {
        lastErrorCode = recoveryRequired;
        return {};
    }

    CreatorProfile profile;
    CreatorProfileJson::fromText (profileFile.loadFileAsString(), profile, lastErrorCode);
    return profile;
}

juce::String CreatorProfileStore::lastError() const
{
    return lastErrorCode;
}

bool CreatorProfileStore::save (CreatorProfile profile, juce::String& outError)
{
    if (profileFile.exists())
    {
        load();

        if (lastErrorCode.isNotEmpty())
            return fail (outError, recoveryRequired);
    }

    profile.updatedAt = isoTime (juce::Time::getCurrentTime());

    if (! validate (profile, outError))
        return false;

    if (profileFile.getParentDirectory().createDirectory().failed())
        return fail (outError, "creator_storage_unavailable");

    if (RecordFile::replace (profileFile, CreatorProfileJson::toText (profile)) != RecordFile::Outcome::written)
        return fail (outError, "creator_save_failed");

    return succeed (outError);
}

bool CreatorProfileStore::remove (juce::String& outError)
{
    if (profileFile.exists() && ! profileFile.deleteFile())
        return fail (outError, "creator_delete_failed");

    lastErrorCode.clear();
    return succeed (outError);
}

bool CreatorProfileStore::exportTo (const juce::File& destinationFile, juce::String& outError)
{
    if (! profileFile.existsAsFile())
        return fail (outError, "creator_draft_missing");

    if (destinationFile == profileFile)
        return fail (outError, "creator_export_destination_invalid");

    if (destinationFile.getParentDirectory().createDirectory().failed())
        return fail (outError, "creator_export_failed");

    // Only the name comes from the framework. Its own object would report a sibling that cannot be deleted as a programming error.
    const auto sibling = juce::TemporaryFile (destinationFile).getFile();

    if (! copyWhole (profileFile, sibling) || ! renameOver (sibling, destinationFile))
    {
        sibling.deleteFile();
        return fail (outError, "creator_export_failed");
    }

    return succeed (outError);
}

bool CreatorProfileStore::validate (const CreatorProfile& profile, juce::String& outError)
{
    outError = CreatorProfileRules::firstBreach (profile);
    return outError.isEmpty();
}
