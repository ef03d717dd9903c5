#include "platform/FileReplacing.h"

#include "platform/windows/WindowsHeaders.h"

namespace platform
{
Renaming renameInOneStep (const juce::File& from, const juce::File& to)
{
    if (::MoveFileExW (from.getFullPathName().toWideCharPointer(), to.getFullPathName().toWideCharPointer(), MOVEFILE_REPLACE_EXISTING))
        return Renaming::done;

    // A scanner or an indexer shows as a refused access when it holds the target, and as a sharing violation when it holds the source.
    const auto error = ::GetLastError();
    return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION ? Renaming::refusedForNow
                                                                                                              : Renaming::failed;
}
}
