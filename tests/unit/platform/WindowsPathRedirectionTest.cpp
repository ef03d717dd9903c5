#include "platform/PathRedirection.h"
#include "platform/windows/WindowsHeaders.h"
#include "support/Files.h"

#include <cstring>
#include <gtest/gtest.h>
#include <vector>
#include <winioctl.h>

using namespace zorva::test;

namespace
{
/** Makes an empty folder a junction that leads to another; the error of it, or 0. */
DWORD makeJunction (const juce::File& at, const juce::File& destination)
{
    struct Header { DWORD tag; WORD size, reserved, nameOffset, nameSize, printOffset, printSize; };

    const std::wstring name (("\\??\\" + destination.getFullPathName()).toWideCharPointer());
    const auto nameBytes = name.size() * sizeof (wchar_t);

    // Both names end in a zero, and the one to print is empty.
    std::vector<char> data (sizeof (Header) + nameBytes + 2 * sizeof (wchar_t), 0);
    const Header header { IO_REPARSE_TAG_MOUNT_POINT, (WORD) (data.size() - 8), 0, 0, (WORD) nameBytes, (WORD) (nameBytes + sizeof (wchar_t)), 0 };
    std::memcpy (data.data(), &header, sizeof (header));
    std::memcpy (data.data() + sizeof (header), name.data(), nameBytes);

    auto* const folder = ::CreateFileW (at.getFullPathName().toWideCharPointer(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    DWORD count = 0;
    const bool made = ::DeviceIoControl (folder, FSCTL_SET_REPARSE_POINT, data.data(), (DWORD) data.size(), nullptr, 0, &count, nullptr) != FALSE;
    const auto error = made ? (DWORD) ERROR_SUCCESS : ::GetLastError();
    ::CloseHandle (folder);
    return error;
}
}

TEST (PathRedirection, AJunctionRedirects)
{
    const auto folder = freshFolder ("junctions");
    ASSERT_TRUE (in (folder, "folder/inner").createDirectory().wasOk());
    const auto junction = in (folder, "junction");
    ASSERT_TRUE (junction.createDirectory().wasOk());
    ASSERT_FALSE (platform::isLinkOrRedirection (junction));
    ASSERT_EQ (makeJunction (junction, in (folder, "folder")), (DWORD) ERROR_SUCCESS);

    EXPECT_TRUE (platform::isLinkOrRedirection (junction));
    EXPECT_FALSE (platform::isLinkOrRedirection (in (junction, "inner"))) << "ancestors are not looked at";
    EXPECT_TRUE (::RemoveDirectoryW (junction.getFullPathName().toWideCharPointer()));
}

TEST (PathRedirection, ALinkToAFolderHasTheAttributeAndALinksOwnName)
{
    const auto folder = freshFolder ("links");
    ASSERT_TRUE (in (folder, "folder").createDirectory().wasOk());
    const auto made = link (in (folder, "link"), "folder");
    const auto attributes = ::GetFileAttributesW (made.getFullPathName().toWideCharPointer());

    ASSERT_NE (attributes, INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ (attributes & FILE_ATTRIBUTE_REPARSE_POINT, (DWORD) FILE_ATTRIBUTE_REPARSE_POINT);
    EXPECT_TRUE (platform::isLinkOrRedirection (made));
    EXPECT_TRUE (platform::isLinkOrRedirection (in (folder, "LINK"))) << "names have no case here";
}

TEST (PathRedirection, TheRootOfADriveIsNotTakenForItsCurrentDirectory)
{
    const auto folder = freshFolder ("current");
    ASSERT_TRUE (in (folder, "folder").createDirectory().wasOk());
    const auto current = link (in (folder, "link"), "folder");
    ASSERT_TRUE (::SetCurrentDirectoryW (current.getFullPathName().toWideCharPointer()));

    EXPECT_TRUE (platform::isLinkOrRedirection (current));
    EXPECT_FALSE (platform::isLinkOrRedirection (juce::File (current.getFullPathName().substring (0, 2))));
}

TEST (PathRedirection, NoOtherAttributeMeansARedirection)
{
    const auto folder = freshFolder ("attributes");

    for (const auto attribute : { FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM, FILE_ATTRIBUTE_ARCHIVE })
    {
        const auto file = write (in (folder, juce::String (attribute)), "x");
        ASSERT_TRUE (::SetFileAttributesW (file.getFullPathName().toWideCharPointer(), (DWORD) attribute));
        EXPECT_FALSE (platform::isLinkOrRedirection (file)) << attribute;
        ASSERT_TRUE (::SetFileAttributesW (file.getFullPathName().toWideCharPointer(), FILE_ATTRIBUTE_NORMAL));
    }
}
