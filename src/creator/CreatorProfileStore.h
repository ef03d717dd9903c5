#pragma once

#include "creator/CreatorProfile.h"
#include "creator/ImageRules.h"

/** Keeps the one creator profile draft of this user in profile-v1.json. A file that it cannot read is never overwritten: a damaged
    draft stays for the person to recover, and every save is refused until it has been dealt with.

    Failures are short codes in outError. No lock; message thread only. */
class CreatorProfileStore
{
public:
    /** Forms the path; reads and creates nothing. */
    CreatorProfileStore();

    /** The draft, or a default profile when there is none or it cannot be used; lastError() tells the two apart. Never fails. */
    CreatorProfile load();

    /** The code of the last load(): empty when the draft is absent or readable. */
    juce::String lastError() const;

    /** Stamps, validates and replaces the draft in one step. False with a code when the file on disk cannot be used, the profile
        breaks a rule, or it could not be written; the file then stays as it was. */
    bool save (CreatorProfile profile, juce::String& outError);

    /** Deletes the draft, readable or not; true when there is none. */
    bool remove (juce::String& outError);

    /** Copies the draft byte for byte, readable or not, in one step. False with a code. */
    bool exportTo (const juce::File& destinationFile, juce::String& outError);

    /** Judges every rule of a profile; the first failure's code goes to outError, which is empty on success. */
    static bool validate (const CreatorProfile& profile, juce::String& outError);

private:
    juce::File profileFile;
    juce::String lastErrorCode;

    JUCE_DECLARE_NON_COPYABLE (CreatorProfileStore)
};
