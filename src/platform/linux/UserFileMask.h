#pragma once

#include <sys/types.h>

namespace platform
{
/** The file-creation mask the process was started with, for the programs that it starts. */
mode_t userFileMask();
}
