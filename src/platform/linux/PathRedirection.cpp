#include "platform/PathRedirection.h"

#include <sys/stat.h>

namespace platform
{
bool isLinkOrRedirection (const juce::File& file)
{
    struct stat info {};
    return ::lstat (file.getFullPathName().toRawUTF8(), &info) == 0 && S_ISLNK (info.st_mode);
}
}
