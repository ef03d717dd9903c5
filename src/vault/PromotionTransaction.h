#pragma once

#include <juce_core/juce_core.h>

/** Replaces a live payload and the record that describes it as one step that a crash cannot split.

    activate() puts the staged payload in place and keeps the old one; the caller then writes its record and calls commit(), or
    rollback() to have both back. Each step is written to a journal beside the target before the next one begins, so that the next
    start can finish or undo what a crash interrupted. One object serves one promotion, on one thread; it has no undoing
    destructor. */
class PromotionTransaction
{
public:
    PromotionTransaction() = default;

    /** Puts staged, a file or directory beside target, in target's place. metadata is the record that the caller will rewrite, or
        the empty file; it is only snapshotted here. False with a whole sentence in error when it could not be done. */
    bool activate (const juce::File& staged, const juce::File& target, juce::String& error, const juce::File& metadata);

    /** Makes the promotion final and removes what it kept. True when it stands; note is then empty or names files that stayed.
        False when it was rolled back, with the reason in note, or when nothing was active, with note unchanged. */
    bool commit (juce::String& note);

    /** Brings payload and record back. True when everything is back and the journal is gone; detail gets the notes either way. */
    bool rollback (juce::String& detail);

    /** The staged payload stands at the target and neither commit() nor rollback() was called. */
    bool isActive() const { return active; }

    /** The state last written to the journal: "prepared", "backup_moved", "activated", "committed", or empty. */
    const juce::String& getState() const { return state; }

    /** Puts backup back in target's place, or removes target when there was none before. False when it could not; notes gets what
        stayed where. */
    static bool restorePayload (const juce::File& target, const juce::File& backup, bool hadTarget, juce::StringArray& notes);

    /** Brings the record back from its snapshot, or removes it when there was none before. The empty file is no record and needs
        nothing. False when it could not; notes gets what is missing. */
    static bool restoreMetadata (const juce::File& metadata, const juce::File& metadataBackup, bool metadataExisted,
                                 juce::StringArray& notes);

    /** Removes a file or a whole directory without following links. True when nothing is there any more. */
    static bool removePath (const juce::File& file);

    /** The file names that recovery knows. */
    static constexpr const char* journalPrefix = ".zorva-promotion-";
    static constexpr const char* backupMark = ".backup-";
    static constexpr const char* rejectedMark = ".rejected-";
    static constexpr const char* rejectedRecoveryMark = ".rejected-recovery-";
    static constexpr const char* metadataBackupMark = ".promotion-backup-";

private:
    juce::String refusalOf (const juce::File& stagedPayload, const juce::File& livePath, const juce::File& record) const;
    void nameParticipants (const juce::File& stagedPayload, const juce::File& livePath, const juce::File& record);
    juce::String prepareAndPreserve();
    bool rollbackWithMessage (const juce::String& message, juce::String& error);
    bool enterState (const juce::String& newState);
    bool writeJournal();

    juce::File staged, target, backup, journal, metadata, metadataBackup;
    juce::String state;
    bool hadTarget = false, metadataExisted = false, active = false;

    JUCE_DECLARE_NON_COPYABLE (PromotionTransaction)
};
