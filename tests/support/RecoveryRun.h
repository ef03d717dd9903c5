#pragma once

#include "support/Files.h"
#include "vault/RecoveryScanner.h"

namespace zorva::test
{
/** What one recovery of a folder answered. Notes of the leftover sweep come in the order of the folder's listing, which no
    system promises, so they are compared sorted. */
struct RecoveryRun
{
    RecoveryRun (bool result, const juce::StringArray& allNotes) : ok (result), notes (allNotes) { notes.sort (false); }

    bool operator== (const RecoveryRun&) const = default;

    bool ok;
    juce::StringArray notes;
};

/** Lets a failed comparison show its sides. */
inline void PrintTo (const RecoveryRun& run, std::ostream* stream)
{
    *stream << (run.ok ? "ok" : "attention") << (run.notes.isEmpty() ? "" : "\n    ") << run.notes.joinIntoString ("\n    ");
}

/** Recovers a folder whose approved record is the second argument. */
inline RecoveryRun recover (const juce::File& root, const juce::File& record = {})
{
    juce::StringArray notes;
    const bool ok = RecoveryScanner::recoverRoot (root, record, notes, true);
    return { ok, notes };
}

/** The answer of a folder in order, perhaps with notes about what is kept for review. */
template <typename... Notes>
RecoveryRun inOrder (const Notes&... notes)      { return { true, juce::StringArray (juce::Array<juce::String> { notes... }) }; }

/** The answer of a folder that needs attention, with these notes. */
template <typename... Notes>
RecoveryRun attention (const Notes&... notes)    { return { false, juce::StringArray (juce::Array<juce::String> { notes... }) }; }

/** A note about a file. */
inline juce::String note (const char* text, const juce::File& file)    { return text + file.getFullPathName(); }

inline constexpr auto refusedRoot = "Refused untrusted recovery root: ";
inline constexpr auto refusedJournal = "Refused untrusted promotion journal: ";
inline constexpr auto invalidJournal = "Invalid promotion journal retained: ";
inline constexpr auto escapedJournal = "Promotion journal escaped its approved roots and was retained: ";
inline constexpr auto stillActionable = "Promotion recovery remains actionable at ";
inline constexpr auto snapshotKept = "Metadata backup without a journal was retained for review: ";
inline constexpr auto snapshotMissing = "Metadata backup missing: ";
inline constexpr auto backupKept = "Last-good backup retained for review: ";
}
