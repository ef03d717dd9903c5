#include "platform/PathRedirection.h"

#include "platform/windows/WindowsHeaders.h"

namespace platform
{
bool isLinkOrRedirection (const juce::File& file)
{
    auto path = file.getFullPathName();

    // The framework calls the root of a drive "C:", which the system takes for the current directory on that drive.
    if (path.length() == 2 && path.endsWithChar (':'))
        path << '\\';

    const auto attributes = ::GetFileAttributesW (path.toWideCharPointer());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}
}
