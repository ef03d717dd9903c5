#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** True when the path itself exists and leads somewhere else: a symbolic link (dangling or not), or on Windows anything that
    carries the reparse-point attribute, such as a junction, a mount point or a cloud stand-in. The path is not followed and its
    ancestors are not looked at. False when it cannot be examined. Any thread. */
bool isLinkOrRedirection (const juce::File& file);
}
