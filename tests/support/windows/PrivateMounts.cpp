#include "Host.h"
#include "support/PrivateMounts.h"

#include "platform/windows/WindowsHeaders.h"

#include <gtest/gtest.h>

namespace zorva::test
{
namespace
{
/** Something that only the machine under Wine can do to a folder, until the end. */
class DoneByHost
{
public:
    DoneByHost (const juce::File& f, const juce::StringArray& order) : folder (f)
    {
        const auto answer = askHost (order);

        if (! answer.has_value())
            ADD_FAILURE() << "A real Windows offers the tests no such thing: " << order.joinIntoString (" ");
        else
            EXPECT_EQ (*answer, "") << order.joinIntoString (" ");
    }

    ~DoneByHost()    { askHost ({ "release", folder.getFullPathName() }); }

    const juce::File folder;

private:
    JUCE_DECLARE_NON_COPYABLE (DoneByHost)
};
}

//==============================================================================
void PrivateMounts::enter (char**) {}
bool PrivateMounts::confineTo (const juce::File&)    { return problem().isEmpty(); }

juce::String PrivateMounts::problem()
{
    if (juce::SystemStats::getEnvironmentVariable ("HUB_TEST_CONFINED", {}) == "1")
        return {};

    return "A process cannot be kept here from changing the machine. Use one that nobody misses, and set HUB_TEST_CONFINED=1.";
}

bool PrivateMounts::showInPlaceOf (const juce::File&, const juce::File& where)
{
    ADD_FAILURE() << "Nothing can be shown here in the place of " << where.getFullPathName();
    return false;
}

//==============================================================================
/** An open file can be neither renamed nor removed, as long as whoever opened it does not share that. */
struct BusyPath::Hold
{
    explicit Hold (const juce::File& path)
        : handle (::CreateFileW (path.getFullPathName().toWideCharPointer(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                 OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr))
    {
        if (handle == INVALID_HANDLE_VALUE)
            ADD_FAILURE() << "Could not keep " << path.getFullPathName() << " open: error " << ::GetLastError();
    }

    ~Hold()
    {
        if (handle != INVALID_HANDLE_VALUE)
            ::CloseHandle (handle);
    }

    HANDLE handle;
};

BusyPath::BusyPath (const juce::File& existing) : hold (std::make_unique<Hold> (existing)) {}
BusyPath::~BusyPath() = default;

//==============================================================================
struct ReadOnlyFolder::Hold : DoneByHost
{
    using DoneByHost::DoneByHost;
};

ReadOnlyFolder::ReadOnlyFolder (const juce::File& existing)
    : hold (std::make_unique<Hold> (existing, juce::StringArray { "read-only", existing.getFullPathName() }))
{
}

ReadOnlyFolder::~ReadOnlyFolder() = default;

//==============================================================================
struct SmallDisk::Hold : DoneByHost
{
    using DoneByHost::DoneByHost;

    juce::File nextFiller()
    {
        filler.add (juce::File (folder.getFullPathName() + "\\filler" + juce::String (filler.size())));
        return filler.getLast();
    }

    juce::Array<juce::File> filler;
};

SmallDisk::SmallDisk (const juce::File& existing, int numberOfFiles)
    : hold (std::make_unique<Hold> (existing, juce::StringArray { "disk", existing.getFullPathName(), juce::String (numberOfFiles) }))
{
}

SmallDisk::~SmallDisk() = default;

void SmallDisk::fill()
{
    for (int i = 0; i < 10000; ++i)
        if (hold->nextFiller().create().failed())
            return;

    ADD_FAILURE() << "The small disk does not fill up: " << hold->folder.getFullPathName();
}

void SmallDisk::fillWithBytes()
{
    constexpr int pageSize = 4096;
    const std::vector<char> page (pageSize, 'f');
    juce::FileOutputStream stream (hold->nextFiller(), 0);
    bool full = false;

    for (int i = 0; stream.openedOk() && ! full && i < 10000; ++i)
        full = ! stream.write (page.data(), page.size());

    EXPECT_TRUE (full) << "The small disk does not fill up: " << hold->folder.getFullPathName();
}

void SmallDisk::clear()
{
    for (const auto& file : hold->filler)
        file.deleteFile();

    hold->filler.clear();
}
}
