#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** What came of one attempt to rename. */
enum class Renaming
{
    done,
    refusedForNow,      ///< somebody may be holding one of the two for a moment: worth another attempt
    failed
};

/** Renames a file, or a folder, over another in one step of the file system. Makes one attempt, and never copies. Any thread. */
Renaming renameInOneStep (const juce::File& from, const juce::File& to);
}
