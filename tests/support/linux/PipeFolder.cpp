#include "support/PipeFolder.h"

#include "support/PrivateMounts.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace zorva::test
{
namespace
{
const juce::File pipeFolder ("/tmp");

bool showAlsoAt (const juce::File& folder, const juce::File& place, unsigned long depth)
{
    const auto from = folder.getFullPathName(), to = place.getFullPathName();

    return (::mkdir (to.toRawUTF8(), 0700) == 0 || errno == EEXIST)
        && ::mount (from.toRawUTF8(), to.toRawUTF8(), nullptr, MS_BIND | depth, nullptr) == 0;
}
}

void makePipeFolderPrivate()
{
    // Without a disk of its own the process sees the machine's /tmp as it is.
    if (PrivateMounts::problem().isNotEmpty())
        return;

    const auto disk = juce::File (juce::String (std::getenv ("HOME"))).getParentDirectory();
    const auto own = disk.getChildFile ("pipes");
    bool ok = own.createDirectory().wasOk();

    // The disk first, while nothing is mounted below it.
    ok = ok && showAlsoAt (disk, own.getChildFile (disk.getFileName()), 0);

    for (const auto& folder : pipeFolder.findChildFiles (juce::File::findDirectories, false))
        if (folder != disk)
            showAlsoAt (folder, own.getChildFile (folder.getFileName()), MS_REC);    // one that cannot be shown is not missed

    if (! ok || ! showAlsoAt (own, pipeFolder, MS_REC))
        ADD_FAILURE() << "Could not give the process a /tmp of its own: " << std::strerror (errno);
}
}
