#include "platform/Programs.h"

#include "platform/linux/DetachedProcess.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform
{
namespace
{
bool isRunnable (const juce::File& file)
{
    return file.existsAsFile() && ::access (file.getFullPathName().toRawUTF8(), X_OK) == 0;
}

/** The desktop's opener in the user's search path; relative steps of that path are passed over. */
juce::File findOpener()
{
    const auto steps = juce::StringArray::fromTokens (juce::SystemStats::getEnvironmentVariable ("PATH", {}), ":", {});

    for (const auto& step : steps)
    {
        if (! step.startsWithChar ('/'))
            continue;

        const auto opener = juce::File (step).getChildFile ("xdg-open");

        if (isRunnable (opener))
            return opener;
    }

    return {};
}
}

bool allowExecution (const juce::File& program)
{
    const auto descriptor = ::open (program.getFullPathName().toRawUTF8(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);

    if (descriptor < 0)
        return false;

    // Whoever may read it may run it, and the user in any case.
    struct stat info {};
    const bool ok = ::fstat (descriptor, &info) == 0 && S_ISREG (info.st_mode)
                 && ::fchmod (descriptor, (info.st_mode & 07777) | S_IXUSR | ((info.st_mode & (S_IRGRP | S_IROTH)) >> 2)) == 0;

    ::close (descriptor);
    return ok;
}

bool startProgram (const juce::File& program)
{
    return program.existsAsFile() && startDetached ({ program.getFullPathName() }, program.getParentDirectory());
}

bool openFolder (const juce::File& folder)
{
    const auto opener = findOpener();

    // Only a folder: the opener would run or open a file.
    return folder.isDirectory() && opener != juce::File()
        && startDetached ({ opener.getFullPathName(), folder.getFullPathName() }, folder);
}

bool revealInFileManager (const juce::File& file)
{
    return openFolder (file.isDirectory() ? file : file.getParentDirectory());
}

bool openAddress (const juce::String& address)
{
    const auto opener = findOpener();

    return (address.startsWith ("https://") || address.startsWith ("mailto:")) && opener != juce::File()
        && startDetached ({ opener.getFullPathName(), address }, juce::File ("/"));
}
}
