#pragma once

namespace platform
{
/** Prepares the process before anything else runs: what the Hub creates from here on is private to the user, letters outside ASCII
    count as letters, and in release builds on Linux no other program of the user may look into its memory. Call once, first thing
    in main. */
void prepareProcess();

/** Whether prepareProcess() has run, which it does in the program but not in its tests. Any thread. */
bool isProcessPrepared();

/** Makes the process end without destroying its static objects, once main returns: a worker may still be hashing or in the network,
    and must not find the framework's or the libraries' objects gone under it. Does nothing in a process that was not prepared.
    Call last thing before main returns; exitCode is what the process ends with. */
void endWithoutStaticDestruction (int exitCode);
}
