#include "support/PrivateMounts.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace zorva::test
{
namespace
{
constexpr auto startedAgainMark = "HUB_TEST_HAS_NAMESPACE";

juce::String& storedProblem()
{
    static juce::String text ("PrivateMounts::enter() was not called.");
    return text;
}

bool failWith (const juce::String& what)
{
    storedProblem() = what + ": " + juce::String::fromUTF8 (std::strerror (errno));
    return false;
}

bool writeWhole (const char* path, const juce::String& text)
{
    const auto handle = ::open (path, O_WRONLY | O_CLOEXEC);

    if (handle < 0)
        return false;

    const auto size = text.getNumBytesAsUTF8();
    const bool ok = ::write (handle, text.toRawUTF8(), size) == (ssize_t) size;
    ::close (handle);
    return ok;
}

/** The user stays who they are, inside and outside. */
bool enterUserNamespace()
{
    const juce::String user ((int) ::getuid()), group ((int) ::getgid());

    return ::unshare (CLONE_NEWUSER | CLONE_NEWNS) == 0
        && writeWhole ("/proc/self/setgroups", "deny")
        && writeWhole ("/proc/self/uid_map", user + " " + user + " 1")
        && writeWhole ("/proc/self/gid_map", group + " " + group + " 1");
}

void startAgainInNamespace (char** argv)
{
    std::vector<const char*> command { "unshare", "--user", "--map-current-user", "--keep-caps", "--mount", "/proc/self/exe" };
    char self[4096] = {};

    if (::readlink ("/proc/self/exe", self, sizeof (self) - 1) > 0)
        command.back() = self;

    for (auto** argument = argv + 1; *argument != nullptr; ++argument)
        command.push_back (*argument);

    command.push_back (nullptr);
    ::setenv (startedAgainMark, "1", 1);
    ::execvp ("unshare", const_cast<char**> (command.data()));
}

bool enterNamespace (char** argv)
{
    if (std::getenv (startedAgainMark) != nullptr)
        return true;

    if (::unshare (CLONE_NEWNS) == 0 || enterUserNamespace())
        return true;

    if (errno == EINVAL)
        startAgainInNamespace (argv);

    return false;
}

bool report (bool ok, const juce::String& what, const juce::File& where)
{
    if (! ok)
        ADD_FAILURE() << "Could not mount " << what << " at " << where.getFullPathName() << ": " << std::strerror (errno)
                      << (PrivateMounts::problem().isEmpty() ? "" : " - ") << PrivateMounts::problem();

    return ok;
}

bool bind (const juce::File& what, const juce::File& where)
{
    return ::mount (what.getFullPathName().toRawUTF8(), where.getFullPathName().toRawUTF8(), nullptr, MS_BIND, nullptr) == 0;
}

std::vector<juce::File> foldersThatStayWritable()
{
    std::vector<juce::File> folders;

    if (const auto here = juce::File::getCurrentWorkingDirectory(); here.getChildFile ("CTestTestfile.cmake").existsAsFile())
        folders.push_back (here);

    if (const auto pictures = juce::File (HUB_TEST_SUPPORT_FOLDER).getSiblingFile ("ui/snapshots");
        juce::String (std::getenv ("HUB_UPDATE_SNAPSHOTS")) == "1" && pictures.isDirectory())
        folders.push_back (pictures);

    return folders;
}

bool makeWritable (const juce::File& folder)
{
    mount_attr writable {};
    writable.attr_clr = MOUNT_ATTR_RDONLY;
    return bind (folder, folder) && ::mount_setattr (AT_FDCWD, folder.getFullPathName().toRawUTF8(), 0, &writable, sizeof (writable)) == 0;
}

/** A namespace inside another must keep the outer mount's restrictions when it remounts. */
unsigned long restrictionsOf (const juce::File& path)
{
    struct statvfs info {};

    if (::statvfs (path.getFullPathName().toRawUTF8(), &info) != 0)
        return 0;

    unsigned long result = 0;

    for (const auto& [here, there] : { std::pair<unsigned long, unsigned long> { ST_NOSUID, MS_NOSUID },
                                       { ST_NODEV, MS_NODEV }, { ST_NOEXEC, MS_NOEXEC }, { ST_NOATIME, MS_NOATIME },
                                       { ST_NODIRATIME, MS_NODIRATIME }, { ST_RELATIME, MS_RELATIME } })
        if ((info.f_flag & here) != 0)
            result |= there;

    return result;
}

/** What is mounted at a path, until the end. */
struct Mount
{
    explicit Mount (const juce::File& where) : path (where) {}
    ~Mount()    { ::umount2 (path.getFullPathName().toRawUTF8(), MNT_DETACH); }

    const juce::File path;
};
}

//==============================================================================
void PrivateMounts::enter (char** argv)
{
    if (! enterNamespace (argv))
        failWith ("These tests need a mount namespace of their own, as root or through a user namespace");
    else if (::mount (nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        failWith ("The mount namespace could not be made private");
    else
        storedProblem().clear();
}

bool PrivateMounts::confineTo (const juce::File& existing)
{
    if (problem().isNotEmpty())
        return false;

    mount_attr readOnly {};
    readOnly.attr_set = MOUNT_ATTR_RDONLY;

    if (::mount_setattr (AT_FDCWD, "/", AT_RECURSIVE, &readOnly, sizeof (readOnly)) != 0)
        return failWith ("The machine could not be made read-only");

    for (const auto& folder : foldersThatStayWritable())
        if (! makeWritable (folder))
            return failWith ("Could not keep " + folder.getFullPathName() + " writable");

    juce::File::getCurrentWorkingDirectory().setAsCurrentWorkingDirectory();    // enters what is mounted there now

    if (::mount ("tmpfs", existing.getFullPathName().toRawUTF8(), "tmpfs", 0, "mode=700") != 0)
        return failWith ("Could not put a disk in memory at " + existing.getFullPathName());

    return true;
}

juce::String PrivateMounts::problem()
{
    return storedProblem();
}

bool PrivateMounts::showInPlaceOf (const juce::File& what, const juce::File& where)
{
    return report (problem().isEmpty() && bind (what, where), what.getFullPathName(), where);
}

//==============================================================================
struct BusyPath::Hold : Mount
{
    using Mount::Mount;
};

BusyPath::BusyPath (const juce::File& existing) : hold (std::make_unique<Hold> (existing))
{
    report (PrivateMounts::problem().isEmpty() && bind (existing, existing), "the path itself", existing);
}

BusyPath::~BusyPath() = default;

//==============================================================================
struct ReadOnlyFolder::Hold : Mount
{
    using Mount::Mount;
};

ReadOnlyFolder::ReadOnlyFolder (const juce::File& existing) : hold (std::make_unique<Hold> (existing))
{
    const auto restrictions = restrictionsOf (existing);
    report (PrivateMounts::problem().isEmpty() && bind (existing, existing)
                && ::mount (nullptr, existing.getFullPathName().toRawUTF8(), nullptr,
                            MS_REMOUNT | MS_BIND | MS_RDONLY | restrictions, nullptr) == 0,
            "a read-only view", existing);
}

ReadOnlyFolder::~ReadOnlyFolder() = default;

//==============================================================================
struct SmallDisk::Hold : Mount
{
    using Mount::Mount;

    /** A new file's handle, or below 0 when there is no room for one. */
    int addFiller()
    {
        const juce::File next (path.getFullPathName() + "/filler" + juce::String (filler.size()));
        const auto handle = ::open (next.getFullPathName().toRawUTF8(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);

        if (handle >= 0)
            filler.add (next);

        return handle;
    }

    juce::Array<juce::File> filler;
};

SmallDisk::SmallDisk (const juce::File& existing, int numberOfFiles) : hold (std::make_unique<Hold> (existing))
{
    // The disk's own top folder counts as one.
    const auto options = "size=4m,mode=700,nr_inodes=" + juce::String (numberOfFiles + 1);
    report (PrivateMounts::problem().isEmpty()
                && ::mount ("tmpfs", existing.getFullPathName().toRawUTF8(), "tmpfs", 0, options.toRawUTF8()) == 0,
            "a small disk", existing);
}

SmallDisk::~SmallDisk() = default;

void SmallDisk::fill()
{
    for (int i = 0; i < 10000; ++i)
    {
        const auto handle = hold->addFiller();

        if (handle < 0)
            return;

        ::close (handle);
    }

    ADD_FAILURE() << "The small disk does not fill up: " << hold->path.getFullPathName();
}

void SmallDisk::fillWithBytes()
{
    constexpr int pageSize = 4096;
    const std::vector<char> page (pageSize, 'f');
    const auto handle = hold->addFiller();
    bool full = false;

    for (int i = 0; handle >= 0 && ! full && i < 10000; ++i)
        full = ::write (handle, page.data(), page.size()) != (ssize_t) page.size();

    ::close (handle);
    EXPECT_TRUE (full) << "The small disk does not fill up: " << hold->path.getFullPathName();
}

void SmallDisk::clear()
{
    for (const auto& file : hold->filler)
        ::unlink (file.getFullPathName().toRawUTF8());

    hold->filler.clear();
}
}
