#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** To be called just before a juce::NamedPipe is made that must not exist yet. On Windows that class also asks for the calling
    thread's last error when all went well, and takes one that an earlier call left there for its own. Nothing elsewhere. */
void prepareToCreatePipe();

/** How many milliseconds the server of a juce::NamedPipe must leave it open after its last write, so that the client can read what
    was written: on Windows closing discards it, while a FIFO keeps it for a client that has opened it. */
int pipeLingerMilliseconds();

/** Removes what pipes of this user, whose names begin with the prefix and which nobody has used for a minute, have left in the file
    system: a server that was killed leaves its FIFOs. Nothing to do on Windows. Any thread. */
void removeAbandonedPipes (const juce::String& namePrefix);
}
