#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** Where programs keep a user's configuration: the roaming application data on Windows, ~/.config on Linux. Any thread. */
juce::File configurationFolder();

/** Where programs keep a user's data that stays on this machine: the local application data on Windows, ~/.local/share on
    Linux. Any thread. */
juce::File localDataFolder();
}
