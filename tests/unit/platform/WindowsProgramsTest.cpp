#include "platform/Programs.h"
#include "platform/windows/WindowsHeaders.h"
#include "support/Files.h"
#include "support/GuiHarness.h"
#include "support/Text.h"
#include "support/windows/Reporter.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
/** Every character that a name may have here and that some shell gives a meaning. */
constexpr auto hostileName = "run %TEMP% ^& (1) 'x' ; , = + ! ` ~ {} [] @ # $x & echo hacked.exe";

/** What is opened how, for this process alone: addresses of these kinds go to a program of the test's. */
class Associations
{
public:
    explicit Associations (const Reporter& reporter)
    {
        EXPECT_EQ (::RegCreateKeyExW (HKEY_CURRENT_USER, L"Own classes", 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &classes, nullptr), 0);

        for (const auto* kind : { "https", "http", "mailto", "file" })
        {
            setText (kind, "URL Protocol", {});
            setText (juce::String (kind) + "\\shell\\open\\command", {}, reporter.program.getFullPathName().quoted() + " \"%1\"");
        }

        EXPECT_EQ (::RegOverridePredefKey (HKEY_CLASSES_ROOT, classes), 0);
    }

    ~Associations()
    {
        ::RegOverridePredefKey (HKEY_CLASSES_ROOT, nullptr);
        ::RegCloseKey (classes);
    }

private:
    void setText (const juce::String& path, const juce::String& name, const juce::String& text)
    {
        HKEY key = nullptr;
        const std::wstring value (text.toWideCharPointer());
        EXPECT_EQ (::RegCreateKeyExW (classes, path.toWideCharPointer(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
        EXPECT_EQ (::RegSetValueExW (key, name.toWideCharPointer(), 0, REG_SZ, reinterpret_cast<const BYTE*> (value.c_str()),
                                     (DWORD) ((value.size() + 1) * sizeof (wchar_t))), 0);
        ::RegCloseKey (key);
    }

    HKEY classes = nullptr;

    JUCE_DECLARE_NON_COPYABLE (Associations)
};

/** Looks for a window with this word in its title, and closes it. */
bool closeWindowNamed (const juce::String& word)
{
    struct Search { juce::String word; HWND found = nullptr; } search { word };

    ::EnumWindows ([] (HWND window, LPARAM context)
    {
        auto& wanted = *reinterpret_cast<Search*> (context);
        wchar_t title[512] {};
        ::GetWindowTextW (window, title, 512);

        if (juce::String (title).contains (wanted.word))
            wanted.found = window;

        return wanted.found == nullptr ? TRUE : FALSE;
    }, reinterpret_cast<LPARAM> (&search));

    return search.found != nullptr && ::PostMessageW (search.found, WM_CLOSE, 0, 0);
}

bool appears (const juce::String& title)
{
    return pumpUntil ([&title] { return closeWindowNamed (title); }, 20000);
}
}

//==============================================================================
TEST (Programs, NoCharacterOfANameHasAMeaning)
{
    const auto folder = in (freshFolder ("programs"), "a b %TEMP% & ^(x)");
    ASSERT_TRUE (folder.createDirectory().wasOk());
    const Reporter reporter (in (folder, hostileName));

    ASSERT_TRUE (platform::startProgram (reporter.program));
    EXPECT_EQ (reporter.lines(), juce::StringArray (folder.getFullPathName(), reporter.program.getFullPathName()));
}

TEST (Programs, AProgramIsStartedWhateverLettersItsPathHas)
{
    const auto folder = in (freshFolder ("programs"), utf8 ("Größe 音楽"));
    ASSERT_TRUE (folder.createDirectory().wasOk());
    const Reporter reporter (in (folder, utf8 ("Ж и é.exe")));

    ASSERT_TRUE (platform::startProgram (reporter.program));
    EXPECT_EQ (reporter.lines(), juce::StringArray (folder.getFullPathName(), reporter.program.getFullPathName()));
}

TEST (Programs, AProgramNamedLikeTheBeginningOfThePathIsNotStartedInstead)
{
    const auto folder = freshFolder ("programs");
    const Reporter other (in (folder, "My.exe")), wanted (in (folder, "My Product.exe"));

    ASSERT_TRUE (platform::startProgram (wanted.program));
    EXPECT_EQ (wanted.lines().size(), 2);
    EXPECT_FALSE (other.hasReported());
}

TEST (Programs, WhatCannotRunIsReported)
{
    const auto folder = freshFolder ("programs");
    ASSERT_TRUE (in (folder, "folder.exe").createDirectory().wasOk());

    EXPECT_FALSE (platform::startProgram (in (folder, "absent.exe")));
    EXPECT_FALSE (platform::startProgram (in (folder, "folder.exe")));
    EXPECT_FALSE (platform::startProgram (write (in (folder, "text.exe"), "echo hacked> hacked\r\n")));
    EXPECT_FALSE (platform::startProgram (write (in (folder, "cut off.exe"), "MZ")));
    EXPECT_FALSE (platform::startProgram (write (in (folder, "empty.exe"), {})));
    EXPECT_FALSE (platform::startProgram (juce::File()));
    EXPECT_FALSE (isThere (in (folder, "hacked")));
}

TEST (Programs, NothingButAProgramIsStarted)
{
    const auto folder = freshFolder ("programs");

    for (const auto* name : { "script.bat", "script.cmd", "script.js", "text.txt", "shortcut.lnk", "none" })
        EXPECT_FALSE (platform::startProgram (write (in (folder, name), "echo hacked> hacked\r\n"))) << name;

    pump (300);
    EXPECT_FALSE (isThere (in (folder, "hacked")));
}

TEST (Programs, EveryFileMayBeRun)
{
    const auto folder = freshFolder ("programs");

    EXPECT_TRUE (platform::allowExecution (write (in (folder, "file.exe"), "x")));
    EXPECT_FALSE (platform::allowExecution (in (folder, "absent.exe")));
    EXPECT_FALSE (platform::allowExecution (folder));
}

//==============================================================================
TEST (Programs, OpensAnAddressAsOneArgument)
{
    const juce::StringArray addresses
    {
        "https://example.org/path?a=b&c=d",
        "https://example.org/%22%20%5E%25PATH%25;$(x)'y'`z`|w",
        "https://example.org/^&|(a)",
        "mailto:team@example.org?subject=Hello%20there&body=Line%0D%0AMore",
    };

    for (int i = 0; i < addresses.size(); ++i)
    {
        const Reporter reporter (in (freshFolder ("browser " + juce::String (i)), "browser.exe"));
        const Associations associations (reporter);

        ASSERT_TRUE (platform::openAddress (addresses[i])) << addresses[i];
        const auto lines = reporter.lines();
        ASSERT_EQ (lines.size(), 3) << lines.joinIntoString ("\n");
        EXPECT_EQ (lines[2], addresses[i]);
    }
}

TEST (Programs, OpensNoOtherAddress)
{
    const Reporter reporter (in (freshFolder ("browser"), "browser.exe"));
    const Associations associations (reporter);

    for (const auto& address : { juce::String ("http://example.org"), juce::String ("file:///C:/windows"), juce::String ("HTTPS://example.org"),
                                 juce::String ("https:example.org"), juce::String(), reporter.program.getFullPathName(),
                                 juce::String ("https://example.org/\" --evil \""), juce::String ("https://example.org/a b"),
                                 juce::String ("https://example.org/\r\n"),
                                 juce::String ("https://example.org/%PATH%"), juce::String ("https://example.org/%"), juce::String ("https://example.org/%4"), juce::String ("mailto:a@example.org?body=a\tb"),
                                 utf8 ("https://example.org/ä") })
        EXPECT_FALSE (platform::openAddress (address)) << address;

    pump (300);
    EXPECT_FALSE (reporter.hasReported());
}

//==============================================================================
TEST (Programs, OpensAFolderInTheFileManager)
{
    const auto folder = in (freshFolder ("shown"), "a b & (opened)");
    ASSERT_TRUE (folder.createDirectory().wasOk());
    const Reporter namesake (in (folder.getParentDirectory(), "a b & (opened).exe"));

    ASSERT_TRUE (platform::openFolder (folder));
    EXPECT_TRUE (appears (folder.getFileName()));
    EXPECT_FALSE (namesake.hasReported()) << "a program of the folder's name";
}

TEST (Programs, OpensNothingButAFolder)
{
    const auto folder = freshFolder ("shown");
    const Reporter reporter (in (folder, "program.exe"));

    EXPECT_FALSE (platform::openFolder (reporter.program));
    EXPECT_FALSE (platform::openFolder (in (folder, "absent")));
    EXPECT_FALSE (platform::openFolder (juce::File()));
    pump (300);
    EXPECT_FALSE (reporter.hasReported());
}

TEST (Programs, ShowsAFileInItsFolder)
{
    const auto folder = in (freshFolder ("shown"), "a b & (revealed)");
    ASSERT_TRUE (folder.createDirectory().wasOk());
    const Reporter reporter (in (folder, "program.exe"));

    ASSERT_TRUE (platform::revealInFileManager (reporter.program));
    EXPECT_TRUE (appears (folder.getFileName()));
    EXPECT_FALSE (reporter.hasReported()) << "shown, not started";
}

TEST (Programs, WhatIsNotThereIsNotShown)
{
    EXPECT_FALSE (platform::revealInFileManager (in (freshFolder ("shown"), "absent.exe")));
    EXPECT_FALSE (platform::revealInFileManager (juce::File()));
}
