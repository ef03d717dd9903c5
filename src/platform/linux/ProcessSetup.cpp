#include "platform/ProcessSetup.h"

#include "platform/linux/CreationMask.h"
#include "platform/linux/MemoryPrivacy.h"

#include <atomic>
#include <clocale>
#include <malloc.h>
#include <sys/stat.h>

namespace platform
{
namespace
{
constexpr mode_t privateToTheUser = 077;
constexpr int notPrepared = -1;

/** Blocks of this size and above go back to the system as soon as they are freed. The C library begins with this limit, but raises
    it with each large block that is freed, and then keeps the room of decoded pictures for ever: 4 to 7 MiB of the Hub's memory. */
constexpr int largeBlockBytes = 128 * 1024;

/** Builds for debugging leave their memory to debuggers, and to the sanitizers. */
#ifdef NDEBUG
constexpr bool isForPeople = true;
#else
constexpr bool isForPeople = false;
#endif

// Constant initialisation: prepareProcess() may run before the dynamic initialisation of this file.
constinit std::atomic<int> maskBefore { notPrepared };
}

std::optional<mode_t> userCreationMask()
{
    const auto mask = maskBefore.load();
    return mask == notPrepared ? std::optional<mode_t>() : std::optional<mode_t> ((mode_t) mask);
}

void prepareProcess()
{
    const auto mask = (int) ::umask (privateToTheUser);
    auto expected = (int) notPrepared;
    maskBefore.compare_exchange_strong (expected, mask);    // a second call must not take the Hub's mask for the user's

    std::setlocale (LC_CTYPE, "C.UTF-8");
    ::mallopt (M_MMAP_THRESHOLD, largeBlockBytes);

    if constexpr (isForPeople)
        keepMemoryPrivate();
}

bool isProcessPrepared() { return userCreationMask().has_value(); }
}
