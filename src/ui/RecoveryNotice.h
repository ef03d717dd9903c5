#pragma once

#include <juce_core/juce_core.h>
#include <optional>

/** What the user is told at start-up about promotions that could not be finished or undone. */
struct RecoveryNotice
{
    juce::String statusLine, title, body;
};

/** The notice for what the two recoveries reported, the Vault's first; nothing when every note is empty or blank. Pure. */
std::optional<RecoveryNotice> makeRecoveryNotice (const juce::StringArray& vaultNotes, const juce::StringArray& installNotes);
