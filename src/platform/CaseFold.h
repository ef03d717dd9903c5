#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** The text in lower case by one fixed rule, whatever the user's locale is: for comparing names as a file system that ignores
    case would. Characters that have no single lower-case form stay. Any thread. */
juce::String foldCase (const juce::String& text);
}
