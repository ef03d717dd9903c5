#include "platform/PipeServer.h"

#include "platform/windows/WindowsHeaders.h"

namespace platform
{
void prepareToCreatePipe() { ::SetLastError (ERROR_SUCCESS); }
void removeAbandonedPipes (const juce::String&) {}

int pipeLingerMilliseconds() { return 200; }
}
