#include "platform/PipeServer.h"

#include "platform/windows/WindowsHeaders.h"

namespace platform
{
void prepareToCreatePipe() { ::SetLastError (ERROR_SUCCESS); }
int pipeLingerMilliseconds() { return 200; }
}
