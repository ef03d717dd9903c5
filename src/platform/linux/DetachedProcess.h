#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** Starts a program that outlives the Hub and shares nothing with it: a session of its own, no open files but /dev/null as its
    standard streams, default signal handling, the user's own file-creation mask. The first argument is the program's whole path;
    there is no search and no shell, so no character of any argument has a meaning. Leaves no zombie.

    Waits until the program runs: false when it could not be started, also because the folder to work in or the program is
    missing, lacks the permission or is of no format that the system can run. Any thread. */
bool startDetached (const juce::StringArray& arguments, const juce::File& workingFolder);
}
