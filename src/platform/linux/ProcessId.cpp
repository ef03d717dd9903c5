#include "platform/ProcessId.h"

#include <unistd.h>

namespace platform
{
juce::int64 currentProcessId() { return (juce::int64) ::getpid(); }
}
