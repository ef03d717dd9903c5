#include "vault/RecoveryScanner.h"

#include "app/PathTrust.h"
#include "support/AtomicRename.h"
#include "support/BoundedJson.h"
#include "support/ChildFile.h"
#include "vault/DirectoryEntries.h"
#include "vault/PromotionJournal.h"
#include "vault/PromotionTransaction.h"

namespace RecoveryScanner
{
namespace
{
constexpr const char* hubPrefix = ".zorva-hub-";
constexpr const char* stagingMark = ".installing-";
constexpr const char* partialEnding = ".part";

bool rollForward (const PromotionJournal& journal)
{
    bool allGone = true;

    for (const auto& file : { journal.backup, journal.metadataBackup, journal.staged })
        allGone = PromotionTransaction::removePath (file) && allGone;

    return allGone;
}

/** Unlike a running rollback this leaves the record alone when the payload could not be brought back: the two must fit. */
bool rollBack (const PromotionJournal& journal, juce::StringArray& notes)
{
    const bool restored = PromotionTransaction::restorePayload (journal.target, journal.backup, journal.hadTarget, notes)
                       && PromotionTransaction::restoreMetadata (journal.metadata, journal.metadataBackup,
                                                                 journal.metadataExisted, notes);

    return PromotionTransaction::removePath (journal.staged) && restored;
}

//==============================================================================
/** Works off the journals of one root, one after the other. */
class JournalRecovery
{
public:
    JournalRecovery (const juce::File& directory, const juce::File& approved, juce::StringArray& notesToAppendTo)
        : root (directory), approvedMetadata (approved), notes (notesToAppendTo) {}

    /** True when the journal's promotion is finished or undone and the journal is gone; else a note says what it is. */
    bool workOff (const juce::File& file)
    {
        if (! PathTrust::isTrustedPathUnder (root, file, true) || PathTrust::isReparseOrSymlink (file))
            return retain ("Refused untrusted promotion journal: ", file);

        const auto parsed = BoundedJson::parseFile (file);

        if (BoundedJson::objectIn (parsed) == nullptr)
            return retain ("Invalid promotion journal retained: ", file);

        const auto journal = PromotionJournal::read (parsed, root, approvedMetadata);

        if (! journal.has_value())
            return retain ("Promotion journal escaped its approved roots and was retained: ", file);

        if (settle (*journal) && file.deleteFile())
            return true;

        return retain ("Promotion recovery remains actionable at ", file);
    }

    /** A crash while a journal was being replaced leaves it together with its replacement, which never took effect. Only one of the
        two may decide: had the older one failed half-way, the newer could go in the other direction and lose the payload that was
        to come back. So the replacement goes first, while the journal that counts can still be read. */
    bool isSuperseded (const juce::File& file) const
    {
        const auto own = replacedBy (file);
        return own != juce::File() && PathTrust::isTrustedPathUnder (root, own, true) && ! PathTrust::isReparseOrSymlink (own)
            && PathTrust::isTrustedPathUnder (root, file, true) && BoundedJson::objectIn (BoundedJson::parseFile (file)) != nullptr
            && BoundedJson::objectIn (BoundedJson::parseFile (own)) != nullptr;
    }

    /** True when the replacement is gone. */
    bool drop (const juce::File& file)
    {
        return file.deleteFile() || retain ("Promotion recovery remains actionable at ", file);
    }

private:
    bool settle (const PromotionJournal& journal)
    {
        return journal.state == "committed" ? rollForward (journal) : rollBack (journal, notes);
    }

    /** The journal that this one was written to replace, by the name that the framework gives a temporary sibling; the empty file for
        a journal under its own name. */
    juce::File replacedBy (const juce::File& file) const
    {
        const auto name = file.getFileName();
        return name.contains ("_temp") ? childOf (root, name.upToLastOccurrenceOf ("_temp", false, false) + ".json") : juce::File();
    }

    bool retain (const char* what, const juce::File& file)
    {
        notes.add (what + file.getFullPathName());
        return false;
    }

    const juce::File root, approvedMetadata;
    juce::StringArray& notes;
};

//==============================================================================
/** The path that the text before a mark in the child's name stands for; nothing when the mark is absent or nothing is before it. */
std::optional<juce::File> livePathBefore (const juce::File& root, const juce::File& child, const char* mark)
{
    const auto name = child.getFileName();
    const int index = name.indexOf (mark);

    if (index < 1)
        return {};

    return childOf (root, name.substring (0, index));
}

bool sweepChild (const juce::File& root, const juce::File& child, juce::StringArray& notes, bool sweepAll)
{
    const auto name = child.getFileName();

    if (name.startsWith (PromotionTransaction::journalPrefix))
        return true;    // reported while the journals were worked off

    if (name.contains (PromotionTransaction::metadataBackupMark))
    {
        notes.add ("Metadata backup without a journal was retained for review: " + child.getFullPathName());
        return true;
    }

    if (! sweepAll && ! name.startsWith (hubPrefix))
        return true;

    if (const auto live = livePathBefore (root, child, PromotionTransaction::backupMark))
    {
        if (! isPresent (*live))
            return renameOver (child, *live);

        notes.add ("Last-good backup retained for review: " + child.getFullPathName());
        return true;
    }

    if (const auto live = livePathBefore (root, child, PromotionTransaction::rejectedMark))
        return isPresent (*live) ? PromotionTransaction::removePath (child) : renameOver (child, *live);

    if (name.contains (stagingMark) || (sweepAll && name.endsWith (partialEnding)))
        return PromotionTransaction::removePath (child);

    return true;
}
}

bool recoverRoot (const juce::File& root, const juce::File& approvedMetadata, juce::StringArray& notes, bool sweepAll)
{
    if (! root.isDirectory() || ! PathTrust::hasNoReparseAncestry (root))
    {
        notes.add ("Refused untrusted recovery root: " + root.getFullPathName());
        return false;
    }

    const auto pattern = juce::String (PromotionTransaction::journalPrefix) + "*.json";
    JournalRecovery recovery (root, approvedMetadata, notes);
    bool ok = true;

    juce::Array<juce::File> journals;

    for (const auto& journal : entriesOf (root, juce::File::findFiles, pattern))
    {
        if (recovery.isSuperseded (journal))
            ok = recovery.drop (journal) && ok;
        else
            journals.add (journal);
    }

    for (const auto& journal : journals)
        ok = recovery.workOff (journal) && ok;

    return sweepLeftovers (root, notes, sweepAll) && ok;
}

bool sweepLeftovers (const juce::File& root, juce::StringArray& notes, bool sweepAll)
{
    bool ok = true;

    for (const auto& child : entriesOf (root, juce::File::findFilesAndDirectories))
        ok = PathTrust::isTrustedPathUnder (root, child, true) && sweepChild (root, child, notes, sweepAll) && ok;

    return ok;
}
}
