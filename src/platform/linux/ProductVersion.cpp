#include "platform/ProductVersion.h"

#include "platform/linux/PeVersionReader.h"

namespace platform
{
juce::String productVersionOf (const juce::File& program)
{
    if (! program.existsAsFile())
        return {};

    juce::FileInputStream stream (program);
    return stream.openedOk() ? readPeProductVersion (stream) : juce::String();
}
}
