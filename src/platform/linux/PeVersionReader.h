#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** The product version in the fixed version block of a Windows program (Microsoft's PE format, resource type VERSION) as
    "major.minor.build". The empty string for anything that is no such program, has no such block or is not whole.

    Takes every byte for hostile: reads small pieces, each of them inside the stream, walks the resource tree exactly three levels
    deep, looks at a bounded number of entries and never runs anything. The stream must be seekable. */
juce::String readPeProductVersion (juce::InputStream& program);
}
