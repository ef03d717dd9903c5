#include "support/Environment.h"

#include <cstdlib>

namespace zorva::test
{
// The C library tells the system as well.
void setEnvironment (const char* name, const juce::String& value)
{
    ::_wputenv_s (juce::String (name).toWideCharPointer(), value.toWideCharPointer());
}

void removeFromEnvironment (const char* name)    { setEnvironment (name, {}); }
}
