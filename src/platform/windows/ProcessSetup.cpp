#include "platform/ProcessSetup.h"

#include <clocale>

namespace zorva::platform
{
void prepareProcess()
{
    // The user's own folders are private already: new files take their access list.
    std::setlocale (LC_CTYPE, ".UTF-8");
}
}
