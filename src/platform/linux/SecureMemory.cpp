#include "platform/SecureMemory.h"

#include <cstring>

namespace platform
{
void wipeMemory (void* data, size_t size)
{
    if (size > 0)
        ::explicit_bzero (data, size);
}
}
