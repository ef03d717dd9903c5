#include "platform/SecureRandom.h"

#include "platform/SecureMemory.h"
#include "platform/windows/WindowsHeaders.h"

#include <algorithm>
#include <bcrypt.h>
#include <limits>

namespace platform
{
bool fillWithSecureRandom (void* data, size_t size)
{
    auto* const bytes = static_cast<UCHAR*> (data);
    constexpr size_t largestPiece = std::numeric_limits<ULONG>::max();

    for (size_t filled = 0; filled < size;)
    {
        const auto piece = std::min (size - filled, largestPiece);

        if (! BCRYPT_SUCCESS (::BCryptGenRandom (nullptr, bytes + filled, (ULONG) piece, BCRYPT_USE_SYSTEM_PREFERRED_RNG)))
        {
            wipeMemory (data, bytes != nullptr ? filled + piece : 0);
            return false;
        }

        filled += piece;
    }

    return true;
}
}
