#include "platform/ProcessSetup.h"

#include "platform/linux/CreationMask.h"

#include <atomic>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>

namespace zorva::platform
{
namespace
{
constexpr mode_t privateToTheUser = 077;
constexpr int notPrepared = -1;

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
}

void endWithoutStaticDestruction (int exitCode)
{
    static int code = 0;
    code = exitCode;

    // What is registered last runs first, before any destructor.
    if (userCreationMask().has_value())
        std::atexit ([] { std::fflush (nullptr); std::_Exit (code); });
}
}
