#include "platform/FileReplacing.h"
#include "platform/windows/WindowsHeaders.h"
#include "support/Files.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
/** Holds a file open as a scanner does, which lets others read it and nothing else. */
class Scanner
{
public:
    explicit Scanner (const juce::File& file)
        : handle (::CreateFileW (file.getFullPathName().toWideCharPointer(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr))
    {
        EXPECT_NE (handle, INVALID_HANDLE_VALUE);
    }

    ~Scanner()    { ::CloseHandle (handle); }

private:
    const HANDLE handle;
};
}

TEST (FileReplacing, AFileThatAScannerHoldsIsRefusedForNowWhicheverOfTheTwoItIs)
{
    const auto folder = freshFolder ("replacing");
    const auto from = write (in (folder, "from"), "new");
    const auto to = write (in (folder, "to"), "old");

    for (const auto& held : { from, to })
    {
        const Scanner scanner (held);
        EXPECT_EQ (platform::renameInOneStep (from, to), platform::Renaming::refusedForNow) << held.getFileName();
    }

    EXPECT_EQ (platform::renameInOneStep (from, to), platform::Renaming::done);
    EXPECT_EQ (treeOf (folder), (Tree { { "to", "file: new" } }));
}

TEST (FileReplacing, WhatIsNotThereIsNotWorthAnotherAttempt)
{
    const auto folder = freshFolder ("replacing");
    EXPECT_EQ (platform::renameInOneStep (in (folder, "absent"), in (folder, "to")), platform::Renaming::failed);
    EXPECT_EQ (platform::renameInOneStep (write (in (folder, "from"), "new"), in (folder, "absent/to")), platform::Renaming::failed);
}
