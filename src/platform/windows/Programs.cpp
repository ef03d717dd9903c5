#include "platform/Programs.h"

#include "platform/windows/WindowsHeaders.h"

#include <shellapi.h>
#include <shlobj.h>

namespace platform
{
namespace
{
/** Asks the system to open one path, with no arguments and no dialog of its own about failures. Unlike a plain process creation
    this can ask the user for the rights that an installer wants. */
bool openPath (const juce::String& path, const juce::String& workingFolder)
{
    SHELLEXECUTEINFOW request {};
    request.cbSize = sizeof (request);
    request.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
    request.lpVerb = L"open";
    request.lpFile = path.toWideCharPointer();
    request.lpDirectory = workingFolder.isEmpty() ? nullptr : workingFolder.toWideCharPointer();
    request.nShow = SW_SHOWNORMAL;

    return ::ShellExecuteExW (&request) != FALSE;
}

/** Only what an address may consist of when all else in it is escaped. */
bool isPlainAscii (const juce::String& address)
{
    for (auto position = address.getCharPointer(); ! position.isEmpty();)
        if (const auto c = position.getAndAdvance(); c <= ' ' || c >= 127 || c == '"')
            return false;

    return true;
}
}

bool allowExecution (const juce::File& program)
{
    return program.existsAsFile();
}

bool startProgram (const juce::File& program)
{
    // Anything else would be opened by another program, and a script by a shell.
    return program.existsAsFile() && program.hasFileExtension ("exe")
        && openPath (program.getFullPathName(), program.getParentDirectory().getFullPathName());
}

bool openFolder (const juce::File& folder)
{
    // The separator at the end keeps the system from looking for a program of the folder's name.
    const auto path = juce::File::addTrailingSeparator (folder.getFullPathName());
    return folder.isDirectory() && openPath (path, path);
}

bool revealInFileManager (const juce::File& file)
{
    LPITEMIDLIST item = nullptr;

    if (FAILED (::SHParseDisplayName (file.getFullPathName().toWideCharPointer(), nullptr, &item, 0, nullptr)))
        return false;

    const bool shown = SUCCEEDED (::SHOpenFolderAndSelectItems (item, 0, nullptr, 0));
    ::CoTaskMemFree (item);
    return shown;
}

bool openAddress (const juce::String& address)
{
    // The browser's command line is one text, in which a quotation mark or a blank would end the address.
    return (address.startsWith ("https://") || address.startsWith ("mailto:")) && isPlainAscii (address) && openPath (address, {});
}
}
