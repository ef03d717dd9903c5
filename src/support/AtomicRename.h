#pragma once

#include <juce_core/juce_core.h>

/** Renames a file, or a folder, over another in one step of the file system: whoever looks at the target sees the old or the new, at
    every instant. Never copies and never removes the target first, as juce::File::moveFileTo does when a rename fails. False when
    the rename failed; both files then stand as they were. Blocks up to half a second while another program holds one of the two.
    Any thread. */
bool renameOver (const juce::File& from, const juce::File& to);
