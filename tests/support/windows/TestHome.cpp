#include "support/TestHome.h"

#include "platform/KnownFolders.h"
#include "platform/windows/WindowsHeaders.h"
#include "support/Environment.h"
#include "support/PrivateMounts.h"

#include <cstdio>
#include <cstdlib>

namespace zorva::test
{
namespace
{
constexpr auto foldersKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

[[noreturn]] void giveUp (const juce::String& reason)
{
    std::fputs (reason.toRawUTF8(), stderr);
    std::fflush (stderr);
    std::_Exit (3);
}

juce::File makeFolder (const juce::File& path)
{
    if (path.createDirectory().failed())
        giveUp ("The test's folder could not be made: " + path.getFullPathName());

    return path;
}

juce::String ownKeyName()    { return "Software\\ZORVA Hub tests\\" + juce::String ((juce::int64) ::GetCurrentProcessId()); }

void setText (HKEY key, const wchar_t* name, const juce::String& text)
{
    const std::wstring value (text.toWideCharPointer());
    ::RegSetValueExW (key, name, 0, REG_SZ, reinterpret_cast<const BYTE*> (value.c_str()), (DWORD) ((value.size() + 1) * sizeof (wchar_t)));
}

/** The user's part of the registry, for this process alone: the known folders lead into the home, and what a test stores there, such
    as a certificate authority, nobody else sees. */
void takeRegistryOfItsOwn (const juce::File& home)
{
    HKEY own = nullptr, folders = nullptr;
    const auto name = ownKeyName();
    ::RegDeleteTreeW (HKEY_CURRENT_USER, name.toWideCharPointer());

    if (::RegCreateKeyExW (HKEY_CURRENT_USER, name.toWideCharPointer(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, &own, nullptr) != 0
        || ::RegOverridePredefKey (HKEY_CURRENT_USER, own) != 0
        || ::RegCreateKeyExW (HKEY_CURRENT_USER, foldersKey, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, &folders, nullptr) != 0)
        giveUp ("The test could not get a registry of its own.");

    for (const auto& [value, path] : { std::pair<const wchar_t*, const char*> { L"AppData", "AppData/Roaming" }, { L"Local AppData", "AppData/Local" },
                                       { L"Personal", "Documents" }, { L"Desktop", "Desktop" }, { L"My Music", "Music" },
                                       { L"My Pictures", "Pictures" }, { L"My Video", "Videos" } })
        setText (folders, value, makeFolder (home.getChildFile (path)).getFullPathName());

    ::RegCloseKey (folders);
    ::RegCloseKey (own);
}

void giveRegistryBack()
{
    ::RegOverridePredefKey (HKEY_CURRENT_USER, nullptr);
    ::RegDeleteTreeW (HKEY_CURRENT_USER, ownKeyName().toWideCharPointer());
}
}

TestHome::TestHome()
{
    const auto temporary = juce::File::getSpecialLocation (juce::File::tempDirectory).getFullPathName();
    const juce::File root (juce::SystemStats::getEnvironmentVariable ("HUB_TEST_ROOT", temporary));
    const auto number = juce::String ((juce::int64) ::GetCurrentProcessId()) + "-" + juce::String (juce::Time::currentTimeMillis());
    folder = makeFolder (root.getChildFile ("zorva-hub-test-" + number));    // the system uses the numbers of processes again
    home = makeFolder (folder.getChildFile ("home"));
    isConfined = PrivateMounts::confineTo (folder);
    takeRegistryOfItsOwn (home);

    for (const char* name : { "HOME", "USERPROFILE" })
        setEnvironment (name, home.getFullPathName());

    for (const char* name : { "TEMP", "TMP" })
        setEnvironment (name, makeFolder (folder.getChildFile ("tmp")).getFullPathName());

    setEnvironment ("APPDATA", home.getChildFile ("AppData/Roaming").getFullPathName());
    setEnvironment ("LOCALAPPDATA", home.getChildFile ("AppData/Local").getFullPathName());

    for (const auto& known : { platform::configurationFolder(), platform::localDataFolder() })
        if (! known.isAChildOf (home) && juce::SystemStats::getEnvironmentVariable ("HUB_TEST_ACCOUNT", {}) != "1")
            giveUp ("The tests would use " + known.getFullPathName() + ". Where that is the folder of an account that exists for them alone, set HUB_TEST_ACCOUNT=1.");
}

TestHome::~TestHome()
{
    giveRegistryBack();
    folder.deleteRecursively (false);
}
}
