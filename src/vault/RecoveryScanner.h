#pragma once

#include <juce_core/juce_core.h>

/** Finishes or undoes what a crash interrupted, one directory at a time. It decides only from what is on disk, believes nothing
    outside its approved paths, and where it cannot finish leaves the evidence in place and says so in a note. Takes no lock. */
namespace RecoveryScanner
{
/** Works off every promotion journal in root, then every other leftover. approvedMetadata is the one record that a journal may
    name, or the empty file. Notes are appended. True when nothing is left that needs attention. */
bool recoverRoot (const juce::File& root, const juce::File& approvedMetadata, juce::StringArray& notes, bool sweepAll);

/** Puts lost payloads back from their siblings, removes staging directories and partial downloads, and reports what is kept.
    Without sweepAll only names that begin with ".zorva-hub-" are looked at. True when nothing failed. */
bool sweepLeftovers (const juce::File& root, juce::StringArray& notes, bool sweepAll);
}
