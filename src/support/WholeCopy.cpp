#include "support/WholeCopy.h"

#include "support/RegularFile.h"

bool copyWhole (const juce::File& from, const juce::File& to)
{
    return isRegularFile (from) && from.copyFileTo (to) && from.hasIdenticalContentTo (to);
}
