#include "platform/ProcessSetup.h"

#include <cstdio>
#include <cstdlib>

namespace platform
{
void endWithoutStaticDestruction (int exitCode)
{
    static int code = 0;
    code = exitCode;

    // What is registered last runs first, before any destructor.
    if (isProcessPrepared())
        std::atexit ([] { std::fflush (nullptr); std::_Exit (code); });
}
}
