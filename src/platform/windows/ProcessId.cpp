#include "platform/ProcessId.h"

#include "platform/windows/WindowsHeaders.h"

namespace platform
{
juce::int64 currentProcessId() { return (juce::int64) ::GetCurrentProcessId(); }
}
