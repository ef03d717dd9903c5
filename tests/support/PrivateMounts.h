#pragma once

#include <juce_core/juce_core.h>
#include <memory>

namespace zorva::test
{
/** Mounts that this test process alone sees, where the system has such. They provoke what permissions cannot, since root ignores
    those: paths that can be neither moved nor removed, folders that cannot be written, disks that are full, and the system's list
    of certificate authorities. What is mounted vanishes with the process. A mount that cannot be made fails the test with the
    reason. Windows itself offers a process BusyPath alone; under Wine the machine around it makes the others. */
namespace PrivateMounts
{
/** Gives the process a mount namespace of its own, with a user namespace where the user is not root. Call first thing in main,
    while the process has one thread; where an earlier library has started a thread of its own, the program starts itself again
    through unshare(1). */
void enter (char** argv);

/** Makes the whole machine read-only for this process, so that no test can harm it, however wrong the code under test is, and
    puts an empty disk in memory at this folder. The folder that CTest runs the tests in stays writable, and the stored pictures
    while HUB_UPDATE_SNAPSHOTS is 1. False when that is not possible; problem() then says why. After enter(). */
bool confineTo (const juce::File& existing);

/** Empty when mounts can be made and the process is confined, otherwise why not. */
juce::String problem();

/** Shows one file or folder in the place of another of the same kind. False, with a test failure, when that is not possible. */
bool showInPlaceOf (const juce::File& what, const juce::File& where);
}

/** While it lives, the file or folder can be neither renamed nor removed, but read and written as before. */
class BusyPath
{
public:
    explicit BusyPath (const juce::File& existing);
    ~BusyPath();

private:
    struct Hold;
    std::unique_ptr<Hold> hold;

    JUCE_DECLARE_NON_COPYABLE (BusyPath)
};

/** While it lives, nothing in the folder can be made, changed or removed. */
class ReadOnlyFolder
{
public:
    explicit ReadOnlyFolder (const juce::File& existing);
    ~ReadOnlyFolder();

private:
    struct Hold;
    std::unique_ptr<Hold> hold;

    JUCE_DECLARE_NON_COPYABLE (ReadOnlyFolder)
};

/** While it lives, the folder is an empty disk of its own, of four megabytes and for only so many files and folders. */
class SmallDisk
{
public:
    SmallDisk (const juce::File& existing, int numberOfFiles);
    ~SmallDisk();

    /** Makes empty files until there is no room for one more. */
    void fill();

    /** Writes one file until there is no room for one more byte of content anywhere. */
    void fillWithBytes();

    /** Removes what the two made. */
    void clear();

private:
    struct Hold;
    std::unique_ptr<Hold> hold;

    JUCE_DECLARE_NON_COPYABLE (SmallDisk)
};
}
