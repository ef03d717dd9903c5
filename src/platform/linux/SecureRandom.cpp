#include "platform/SecureRandom.h"

#include "platform/SecureMemory.h"

#include <cerrno>
#include <sys/random.h>
#include <sys/types.h>

namespace platform
{
bool fillWithSecureRandom (void* data, size_t size)
{
    auto* const bytes = static_cast<unsigned char*> (data);
    size_t filled = 0;

    while (filled < size)
    {
        const auto count = ::getrandom (bytes + filled, size - filled, 0);

        if (count > 0)
        {
            filled += (size_t) count;
        }
        else if (count == 0 || errno != EINTR)
        {
            wipeMemory (data, filled);
            return false;
        }
    }

    return true;
}
}
