#include "install/ProductPrograms.h"

#include "app/HubPaths.h"
#include "app/PathTrust.h"
#include "install/InstallService.h"
#include "support/ChildFile.h"

namespace ProductPrograms
{
namespace
{
juce::File ownProgramIn (const juce::Array<juce::File>& programs, const juce::String& id)
{
    for (const auto& program : programs)
        if (InstallService::matchesProductName (program.getFileNameWithoutExtension(), id)
             && InstallService::isOwnedInstallPath (id, program))
            return program;

    return {};
}
}

juce::File directoryOf (const juce::String& id)
{
    return childOf (HubPaths::productsDirectory(), id);
}

juce::Array<juce::File> programsIn (const juce::File& folder, bool recursively)
{
    juce::Array<juce::File> programs;

    // The framework's own wildcard would tell ".exe" from ".EXE" on some systems.
    for (const auto& item : juce::RangedDirectoryIterator (folder, recursively, "*", juce::File::findFiles, juce::File::FollowSymlinks::no))
        if (const auto file = item.getFile(); file.hasFileExtension ("exe"))
            programs.add (file);

    return programs;
}

juce::Array<juce::File> looseProgramsNow()
{
    return programsIn (HubPaths::productsDirectory().getParentDirectory(), false);
}

juce::File find (const juce::String& id, const juce::String& recordedPath, const juce::Array<juce::File>& loosePrograms)
{
    if (! PathTrust::isSafeIdentity (id))
        return {};

    if (const auto recorded = fileFromRecordedPath (recordedPath);
        recorded.has_value() && InstallService::isOwnedInstallPath (id, *recorded))
        return *recorded;

    // Nothing below a redirected directory could be the product's own, and it might be the whole disk.
    if (const auto directory = directoryOf (id); directory.isDirectory() && PathTrust::hasNoReparseAncestry (directory))
        if (const auto program = ownProgramIn (programsIn (directory, true), id); program != juce::File())
            return program;

    return ownProgramIn (loosePrograms, id);
}
}
