#include "ui/RecoveryNotice.h"

static void addLines (juce::StringArray& lines, const juce::String& prefix, const juce::StringArray& notes)
{
    for (const auto& note : notes)
        if (const auto trimmed = note.trim(); trimmed.isNotEmpty())
            lines.add (prefix + trimmed);
}

std::optional<RecoveryNotice> makeRecoveryNotice (const juce::StringArray& vaultNotes, const juce::StringArray& installNotes)
{
    juce::StringArray lines;
    addLines (lines, "Vault: ", vaultNotes);
    addLines (lines, "Install: ", installNotes);

    if (lines.isEmpty())
        return {};

    return RecoveryNotice { "Recovery attention required", "ZORVA Hub Recovery Notice",
                            "ZORVA Hub protected the last-good product state during startup. The following recovery items need "
                            "your attention:\n\n" + lines.joinIntoString ("\n") };
}
