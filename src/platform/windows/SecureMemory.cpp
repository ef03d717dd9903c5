#include "platform/SecureMemory.h"

#include "platform/windows/WindowsHeaders.h"

namespace platform
{
void wipeMemory (void* data, size_t size)
{
    if (size > 0)
        ::SecureZeroMemory (data, size);
}
}
