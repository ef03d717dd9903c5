#include "platform/KnownFolders.h"

namespace platform
{
juce::File configurationFolder()
{
    return juce::File::getSpecialLocation (juce::File::userApplicationDataDirectory);
}

juce::File localDataFolder()
{
    return juce::File::getSpecialLocation (juce::File::windowsLocalAppData);
}
}
