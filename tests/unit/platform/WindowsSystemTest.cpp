#include "platform/KnownFolders.h"
#include "platform/ProcessId.h"
#include "platform/ProcessSetup.h"
#include "platform/windows/WindowsHeaders.h"
#include "support/Files.h"
#include "support/Text.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cwctype>
#include <gtest/gtest.h>
#include <shlobj.h>
#include <vector>

using namespace zorva::test;

namespace
{
juce::File folderOf (const KNOWNFOLDERID& id)
{
    PWSTR path = nullptr;
    EXPECT_HRESULT_SUCCEEDED (::SHGetKnownFolderPath (id, 0, nullptr, &path));
    const juce::File folder { juce::String (path) };
    ::CoTaskMemFree (path);
    return folder;
}

juce::File programOf (DWORD processId)
{
    std::vector<wchar_t> path (32768);
    auto size = (DWORD) path.size();
    auto* const process = ::OpenProcess (PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId);
    EXPECT_TRUE (::QueryFullProcessImageNameW (process, 0, path.data(), &size)) << ::GetLastError();
    ::CloseHandle (process);
    return juce::File { juce::String (path.data(), size) };
}

/** Says when it is destroyed. */
struct Witness
{
    ~Witness()    { std::fputs ("a static object was destroyed\n", stderr); }
};

[[noreturn]] void endAsMainDoes (int exitCode)
{
    static const Witness witness;
    platform::endWithoutStaticDestruction (exitCode);
    std::exit (0);
}

using Text = ::testing::Matcher<const std::string&>;
}

//==============================================================================
TEST (KnownFolders, AreTheUsersRoamingAndLocalApplicationData)
{
    EXPECT_EQ (platform::configurationFolder(), folderOf (FOLDERID_RoamingAppData));
    EXPECT_EQ (platform::localDataFolder(), folderOf (FOLDERID_LocalAppData));
    EXPECT_NE (platform::configurationFolder(), platform::localDataFolder());
    EXPECT_TRUE (platform::configurationFolder().isDirectory());
    EXPECT_TRUE (platform::localDataFolder().isDirectory());
}

TEST (ProcessId, IsTheNumberUnderWhichOthersKnowTheProcess)
{
    EXPECT_GT (platform::currentProcessId(), 0);
    EXPECT_EQ (programOf ((DWORD) platform::currentProcessId()), juce::File::getSpecialLocation (juce::File::currentExecutableFile));
}

//==============================================================================
TEST (ProcessSetup, LettersOutsideAsciiAreLetters)
{
    std::setlocale (LC_ALL, "C");
    platform::prepareProcess();

    EXPECT_NE (std::iswalpha (L'\u00e4'), 0);
    EXPECT_NE (std::iswalpha (L'\u0436'), 0);
    EXPECT_EQ (std::iswalpha (L'\u00b7'), 0);
}

TEST (ProcessEnd, KnowsAPreparedProcess)
{
    EXPECT_FALSE (platform::isProcessPrepared());
    platform::prepareProcess();
    EXPECT_TRUE (platform::isProcessPrepared());
}

TEST (ProcessEnd, DestroysNoStaticObjectOfAPreparedProcess)
{
    EXPECT_EXIT ({ platform::prepareProcess(); endAsMainDoes (7); }, ::testing::ExitedWithCode (7), Text (std::string()));
}

TEST (ProcessEnd, IsAsEverInAProcessThatWasNotPrepared)
{
    EXPECT_EXIT (endAsMainDoes (7), ::testing::ExitedWithCode (0), "a static object was destroyed");
}
