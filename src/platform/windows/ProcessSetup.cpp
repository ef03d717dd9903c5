#include "platform/ProcessSetup.h"

#include <clocale>

namespace platform
{
static bool prepared = false;

void prepareProcess()
{
    prepared = true;

    // The user's own folders are private already: new files take their access list.

    // The older of the system's two C libraries has no such locale, but letters of every script in the user's own.
    if (std::setlocale (LC_CTYPE, ".UTF-8") == nullptr)
        std::setlocale (LC_CTYPE, "");
}

bool isProcessPrepared() { return prepared; }
}
