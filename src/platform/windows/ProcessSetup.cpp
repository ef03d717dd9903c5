#include "platform/ProcessSetup.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>

namespace zorva::platform
{
static bool prepared = false;

void prepareProcess()
{
    prepared = true;

    // The user's own folders are private already: new files take their access list.
    std::setlocale (LC_CTYPE, ".UTF-8");
}

void endWithoutStaticDestruction (int exitCode)
{
    static int code = 0;
    code = exitCode;

    // What is registered last runs first, before any destructor.
    if (prepared)
        std::atexit ([] { std::fflush (nullptr); std::_Exit (code); });
}
}
