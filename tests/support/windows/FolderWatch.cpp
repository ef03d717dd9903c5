#include "support/FolderWatch.h"

#include "platform/windows/WindowsHeaders.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace zorva::test
{
/** The system collects from the first request on, also between two requests. */
struct FolderWatch::Pimpl
{
    explicit Pimpl (const juce::File& folder)
        : handle (::CreateFileW (folder.getFullPathName().toWideCharPointer(), FILE_LIST_DIRECTORY,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                 FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OVERLAPPED, nullptr))
    {
        operation.hEvent = ::CreateEventW (nullptr, TRUE, FALSE, nullptr);

        if (handle == INVALID_HANDLE_VALUE || ! request())
            ADD_FAILURE() << "Could not watch " << folder.getFullPathName() << ": error " << ::GetLastError();
    }

    ~Pimpl()
    {
        DWORD size = 0;

        if (handle != INVALID_HANDLE_VALUE)
        {
            ::CancelIo (handle);
            ::GetOverlappedResult (handle, &operation, &size, TRUE);
            ::CloseHandle (handle);
        }

        ::CloseHandle (operation.hEvent);
    }

    bool request()
    {
        ::ResetEvent (operation.hEvent);
        return ::ReadDirectoryChangesW (handle, buffer, sizeof (buffer), FALSE, FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME,
                                        nullptr, &operation, nullptr) != FALSE;
    }

    /** Takes what has come; false when there is nothing yet. */
    bool take (std::vector<std::string>& list)
    {
        DWORD size = 0;

        if (! ::GetOverlappedResult (handle, &operation, &size, FALSE))
            return false;

        if (size == 0)
            ADD_FAILURE() << "The watch lost events.";

        for (const auto* at = buffer; size > 0;)
        {
            FILE_NOTIFY_INFORMATION event;
            std::memcpy (&event, at, sizeof (event));
            const auto* const letters = reinterpret_cast<const wchar_t*> (at + offsetof (FILE_NOTIFY_INFORMATION, FileName));
            const auto name = juce::String (letters, event.FileNameLength / sizeof (wchar_t)).toStdString();

            if (event.Action == FILE_ACTION_ADDED || event.Action == FILE_ACTION_RENAMED_NEW_NAME)
                list.push_back ("appeared " + name);
            else if (event.Action == FILE_ACTION_REMOVED || event.Action == FILE_ACTION_RENAMED_OLD_NAME)
                list.push_back ("vanished " + name);

            if (event.NextEntryOffset == 0)
                break;

            at += event.NextEntryOffset;
        }

        return request();
    }

    HANDLE handle;
    OVERLAPPED operation {};
    alignas (DWORD) char buffer[65536];
};

FolderWatch::FolderWatch (const juce::File& folder) : pimpl (std::make_unique<Pimpl> (folder)) {}
FolderWatch::~FolderWatch() = default;

const std::vector<std::string>& FolderWatch::events()
{
    while (pimpl->take (collected)) {}
    return collected;
}

int FolderWatch::count (const std::string& event)
{
    const auto& all = events();
    return (int) std::count (all.begin(), all.end(), event);
}
}
