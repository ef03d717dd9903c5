#include "platform/PathRedirection.h"

#include "platform/windows/WindowsHeaders.h"

namespace platform
{
bool isLinkOrRedirection (const juce::File& file)
{
    const auto attributes = ::GetFileAttributesW (file.getFullPathName().toWideCharPointer());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}
}
