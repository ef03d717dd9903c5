#pragma once

// Under the name that JUCE uses, on a file system that tells capitals apart.

#include <dbghelp.h>
