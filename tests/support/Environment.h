#pragma once

#include <juce_core/juce_core.h>

namespace zorva::test
{
/** Sets a variable of this process's environment, for the framework, the C library and programs that are started from here. */
void setEnvironment (const char* name, const juce::String& value);

/** Takes a variable out of this process's environment. */
void removeFromEnvironment (const char* name);
}
