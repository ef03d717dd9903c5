#include "support/Environment.h"

#include <cstdlib>

namespace zorva::test
{
void setEnvironment (const char* name, const juce::String& value)    { ::setenv (name, value.toRawUTF8(), 1); }
void removeFromEnvironment (const char* name)                        { ::unsetenv (name); }
}
