#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** The system's number for this process: GetCurrentProcessId on Windows, getpid on Linux. Any thread. */
juce::int64 currentProcessId();
}
