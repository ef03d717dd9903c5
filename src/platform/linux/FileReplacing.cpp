#include "platform/FileReplacing.h"

#include <cerrno>
#include <cstdio>

namespace platform
{
Renaming renameInOneStep (const juce::File& from, const juce::File& to)
{
    if (std::rename (from.getFullPathName().toRawUTF8(), to.getFullPathName().toRawUTF8()) == 0)
        return Renaming::done;

    return errno == EACCES ? Renaming::refusedForNow : Renaming::failed;
}
}
