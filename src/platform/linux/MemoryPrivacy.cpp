#include "platform/linux/MemoryPrivacy.h"

#include <sys/prctl.h>

namespace platform
{
bool keepMemoryPrivate() { return ::prctl (PR_SET_DUMPABLE, 0, 0, 0, 0) == 0; }
}
