#include "platform/ProcessSetup.h"

#include <clocale>

namespace platform
{
static bool prepared = false;

void prepareProcess()
{
    prepared = true;

    // The user's own folders are private already: new files take their access list.
    std::setlocale (LC_CTYPE, ".UTF-8");
}

bool isProcessPrepared() { return prepared; }
}
