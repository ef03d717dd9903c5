#include "platform/Programs.h"

#include "platform/windows/WindowsHeaders.h"

#include <shellapi.h>
#include <shlobj.h>
#include <string>

// All on the message thread, where the framework has made COM ready.

namespace platform
{
namespace
{
/** Asks the system to open something by what is registered for it, with no arguments and no dialog of its own about failures. It
    can also ask the user for the rights that a program wants. */
bool openByRegistration (const juce::String& path)
{
    SHELLEXECUTEINFOW request {};
    request.cbSize = sizeof (request);
    request.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
    request.lpVerb = L"open";
    request.lpFile = path.toWideCharPointer();
    request.nShow = SW_SHOWNORMAL;

    return ::ShellExecuteExW (&request) != FALSE;
}

/** Runs exactly this file, in its own folder: ERROR_SUCCESS, or why not. */
DWORD runInItsFolder (const juce::File& program)
{
    const auto folder = program.getParentDirectory().getFullPathName();
    const std::wstring path (program.getFullPathName().toWideCharPointer());
    auto commandLine = L"\"" + path + L"\"";     // a path holds no quotation mark

    STARTUPINFOW startup {};
    startup.cb = sizeof (startup);
    PROCESS_INFORMATION process {};

    if (! ::CreateProcessW (path.c_str(), commandLine.data(), nullptr, nullptr, FALSE, CREATE_DEFAULT_ERROR_MODE, nullptr,
                            folder.toWideCharPointer(), &startup, &process))
        return ::GetLastError();

    ::CloseHandle (process.hThread);
    ::CloseHandle (process.hProcess);
    return ERROR_SUCCESS;
}

bool isEscape (juce::juce_wchar first, juce::juce_wchar second)
{
    return juce::CharacterFunctions::getHexDigitValue (first) >= 0 && juce::CharacterFunctions::getHexDigitValue (second) >= 0;
}

/** Whether all that could mean something to others than the browser is escaped. Its command line is one text, in which a quotation
    mark or a blank would end the address, and a name between two percent signs could stand for a variable. */
bool isFullyEscaped (const juce::String& address)
{
    for (auto position = address.getCharPointer(); ! position.isEmpty();)
    {
        const auto c = position.getAndAdvance();

        if (c <= ' ' || c >= 127 || c == '"' || (c == '%' && ! isEscape (position[0], position[0] == 0 ? 0 : position[1])))
            return false;
    }

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
    if (! program.existsAsFile() || ! program.hasFileExtension ("exe"))
        return false;

    const auto error = runInItsFolder (program);
    return error == ERROR_SUCCESS || (error == ERROR_ELEVATION_REQUIRED && openByRegistration (program.getFullPathName()));
}

bool openFolder (const juce::File& folder)
{
    // The separator at the end keeps the system from looking for a program of the folder's name.
    return folder.isDirectory() && openByRegistration (juce::File::addTrailingSeparator (folder.getFullPathName()));
}

bool revealInFileManager (const juce::File& file)
{
    LPITEMIDLIST item = nullptr;

    // The empty path would be the desktop.
    if (! file.exists() || FAILED (::SHParseDisplayName (file.getFullPathName().toWideCharPointer(), nullptr, &item, 0, nullptr)))
        return false;

    const bool shown = SUCCEEDED (::SHOpenFolderAndSelectItems (item, 0, nullptr, 0));
    ::CoTaskMemFree (item);
    return shown;
}

bool openAddress (const juce::String& address)
{
    return (address.startsWith ("https://") || address.startsWith ("mailto:")) && isFullyEscaped (address) && openByRegistration (address);
}
}
