#include "platform/PipeServer.h"

namespace platform
{
void prepareToCreatePipe() {}
int pipeLingerMilliseconds() { return 0; }
}
