#include "vault/PromotionTransaction.h"

#include "app/PathTrust.h"
#include "support/AtomicRename.h"
#include "support/ChildFile.h"
#include "support/RecordFile.h"
#include "support/WholeCopy.h"
#include "vault/DirectoryEntries.h"

namespace
{
juce::String newToken()
{
    return juce::Uuid().toString();
}

juce::File siblingOf (const juce::File& file, const char* mark, const juce::String& token)
{
    return childOf (file.getParentDirectory(), file.getFileName() + mark + token);
}
}

bool PromotionTransaction::activate (const juce::File& stagedPayload, const juce::File& livePath, juce::String& error,
                                     const juce::File& record)
{
    error = refusalOf (stagedPayload, livePath, record);

    if (error.isNotEmpty())
        return false;

    nameParticipants (stagedPayload, livePath, record);

    if (metadataExisted && ! copyWhole (metadata, metadataBackup))
    {
        removePath (metadataBackup);
        error = "Could not snapshot the current metadata record.";
        return false;
    }

    error = prepareAndPreserve();

    if (error.isNotEmpty())
        return false;

    if (! enterState ("backup_moved"))
        return rollbackWithMessage ("Could not journal the preserved payload.", error);

    if (! renameOver (staged, target))
        return rollbackWithMessage ("Could not activate the staged payload.", error);

    active = true;

    if (! enterState ("activated"))
        return rollbackWithMessage ("Could not journal activated payload state.", error);

    return true;
}

juce::String PromotionTransaction::refusalOf (const juce::File& stagedPayload, const juce::File& livePath,
                                              const juce::File& record) const
{
    if (active || ! stagedPayload.exists())
        return "The staged payload is missing or already active.";

    const auto parent = livePath.getParentDirectory();

    if (! PathTrust::isTrustedPathUnder (parent, stagedPayload, true) || ! PathTrust::isTrustedPathUnder (parent, livePath, true))
        return "Promotion paths are outside a trusted canonical parent.";

    if (record != juce::File() && (! PathTrust::hasNoReparseAncestry (record) || PathTrust::isReparseOrSymlink (record)))
        return "Promotion metadata path has an untrusted ancestry.";

    return {};
}

void PromotionTransaction::nameParticipants (const juce::File& stagedPayload, const juce::File& livePath, const juce::File& record)
{
    const auto token = newToken();

    staged = stagedPayload;
    target = livePath;
    metadata = record;
    hadTarget = target.exists();
    metadataExisted = metadata.existsAsFile();
    backup = siblingOf (target, backupMark, token);
    journal = childOf (target.getParentDirectory(), journalPrefix + token + ".json");
    metadataBackup = metadata != juce::File() ? siblingOf (metadata, metadataBackupMark, token) : juce::File();
}

juce::String PromotionTransaction::prepareAndPreserve()
{
    if (! enterState ("prepared"))
    {
        if (! removePath (metadataBackup))
            return "Could not create the promotion journal; metadata backup retained at " + metadataBackup.getFullPathName() + ".";

        return "Could not create the durable promotion journal.";
    }

    if (hadTarget && ! renameOver (target, backup))
    {
        const bool snapshotGone = removePath (metadataBackup);
        const bool journalGone = removePath (journal);

        return "Could not preserve the current payload at " + backup.getFullPathName() + "."
             + (snapshotGone && journalGone ? "" : " Recovery artifacts were retained.");
    }

    return {};
}

//==============================================================================
bool PromotionTransaction::commit (juce::String& note)
{
    if (! active)
        return false;

    if (! enterState ("committed"))
    {
        juce::String detail;
        rollback (detail);
        note = "Metadata committed but durable commit journaling failed; transaction was rolled back. " + detail;
        return false;
    }

    active = false;

    juce::StringArray kept;

    for (const auto& file : { backup, metadataBackup, staged })
        if (! removePath (file))
            kept.add (file.getFullPathName());

    // While anything is left the committed journal stays, so that the next start finishes the cleaning.
    if (kept.isEmpty() && ! journal.deleteFile())
        kept.add (journal.getFullPathName());

    note = kept.isEmpty() ? juce::String()
                          : "Promotion committed; recovery cleanup was retained at: " + kept.joinIntoString (", ");
    return true;
}

bool PromotionTransaction::rollback (juce::String& detail)
{
    juce::StringArray notes;

    const bool payloadOk = restorePayload (target, backup, hadTarget, notes);
    const bool metadataOk = restoreMetadata (metadata, metadataBackup, metadataExisted, notes);
    const bool stagedOk = removePath (staged);
    const bool isUndone = payloadOk && metadataOk && stagedOk && removePath (journal);

    active = false;

    if (! isUndone)
        notes.add ("Durable recovery journal retained at " + journal.getFullPathName());

    detail = notes.joinIntoString (" ");
    return isUndone;
}

bool PromotionTransaction::rollbackWithMessage (const juce::String& message, juce::String& error)
{
    juce::String detail;

    error = rollback (detail) ? message + " Previous payload and metadata were restored."
                              : message + " " + detail;
    return false;
}

//==============================================================================
bool PromotionTransaction::restorePayload (const juce::File& target, const juce::File& backup, bool hadTarget,
                                           juce::StringArray& notes)
{
    if (! hadTarget)
        return removePath (target);

    if (! isPresent (backup))
        return isPresent (target);    // the promotion stopped before the target was moved

    const auto rejected = siblingOf (target, rejectedRecoveryMark, newToken());

    if (! isPresent (target) || renameOver (target, rejected))
    {
        if (renameOver (backup, target))
        {
            if (! removePath (rejected))
                notes.add ("Restored previous payload; rejected payload retained at " + rejected.getFullPathName());

            return true;
        }

        if (isPresent (rejected) && ! renameOver (rejected, target))
            notes.add ("Rejected payload retained at " + rejected.getFullPathName());
    }

    notes.add ("Previous payload remains recoverable at " + backup.getFullPathName());
    return false;
}

bool PromotionTransaction::restoreMetadata (const juce::File& metadata, const juce::File& metadataBackup, bool metadataExisted,
                                            juce::StringArray& notes)
{
    if (metadata == juce::File())
        return true;

    if (! metadataExisted)
        return removePath (metadata);

    if (! isPresent (metadataBackup))
    {
        notes.add ("Metadata backup missing: " + metadataBackup.getFullPathName());
        return false;
    }

    return removePath (metadata) && renameOver (metadataBackup, metadata);
}

bool PromotionTransaction::removePath (const juce::File& file)
{
    if (! isPresent (file))
        return true;

    return file.isDirectory() ? file.deleteRecursively (false) : file.deleteFile();
}

//==============================================================================
bool PromotionTransaction::enterState (const juce::String& newState)
{
    state = newState;
    return writeJournal();
}

bool PromotionTransaction::writeJournal()
{
    auto* const object = new juce::DynamicObject();
    const juce::var record (object);

    object->setProperty ("version", 1);
    object->setProperty ("state", state);
    object->setProperty ("staged", staged.getFullPathName());
    object->setProperty ("target", target.getFullPathName());
    object->setProperty ("backup", backup.getFullPathName());
    object->setProperty ("hadTarget", hadTarget);
    object->setProperty ("metadata", metadata.getFullPathName());
    object->setProperty ("metadataBackup", metadataBackup.getFullPathName());
    object->setProperty ("metadataExisted", metadataExisted);

    return RecordFile::replace (journal, RecordFile::toText (record)) == RecordFile::Outcome::written;
}
