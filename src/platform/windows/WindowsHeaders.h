#pragma once

// The one way in which this folder includes the system's headers: without macros that break other code.
#ifndef NOMINMAX
 #define NOMINMAX
#endif

#ifndef WIN32_LEAN_AND_MEAN
 #define WIN32_LEAN_AND_MEAN
#endif

#include <windows.h>
