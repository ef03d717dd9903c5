#pragma once

#include <optional>
#include <sys/types.h>

namespace platform
{
/** The user's own file-creation mask, as it was before prepareProcess() made the Hub's stricter; nothing before that. Programs that
    the Hub starts get it back. Any thread. */
std::optional<mode_t> userCreationMask();
}
