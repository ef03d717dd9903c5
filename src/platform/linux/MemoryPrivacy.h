#pragma once

namespace platform
{
/** Keeps the process's memory, where API keys and tokens pass through, from being dumped to disk when it crashes and from being
    read or traced by other programs of the same user. False when the system refuses. Programs that the process starts are not
    affected. Any thread. */
bool keepMemoryPrivate();
}
