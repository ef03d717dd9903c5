#pragma once

namespace zorva::platform
{
/** Prepares the process before anything else runs: what the Hub creates from here on is private to the user, and letters
    outside ASCII count as letters. Call once, first thing in main. */
void prepareProcess();
}
