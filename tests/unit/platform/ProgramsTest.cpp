#include "platform/ProcessSetup.h"
#include "platform/Programs.h"
#include "support/Files.h"
#include "support/GuiHarness.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zorva::test;

namespace
{
constexpr auto hostileName = "run $(touch hacked) `touch hacked`; touch hacked & \"x\" 'y' >hacked.exe";

int permissionsOf (const juce::File& file)
{
    struct stat info {};
    EXPECT_EQ (::stat (file.getFullPathName().toRawUTF8(), &info), 0);
    return (int) (info.st_mode & 07777);
}

void setPermissions (const juce::File& file, mode_t mode)
{
    ASSERT_EQ (::chmod (file.getFullPathName().toRawUTF8(), mode), 0);
}

juce::File executable (const juce::File& file, const juce::String& content)
{
    write (file, content);
    setPermissions (file, 0755);
    return file;
}

/** A program that writes what the command prints into a file, which appears when it is whole. */
juce::File reporter (const juce::File& file, const juce::File& report, const juce::String& command)
{
    const auto path = report.getFullPathName();
    return executable (file, "#!/bin/sh\n{ " + command + " ; } > '" + path + ".part'\nmv '" + path + ".part' '" + path + "'\n");
}

using Lines = std::vector<std::string>;

Lines linesOf (const juce::File& report)
{
    EXPECT_TRUE (pumpUntil ([&] { return report.existsAsFile(); }, 20000)) << "the program did not report";
    Lines lines;

    for (const auto& line : juce::StringArray::fromLines (report.loadFileAsString()))
        if (line.isNotEmpty())
            lines.push_back (line.toStdString());

    return lines;
}

/** Files of this name anywhere the test may write, or where it runs. */
int filesNamed (const juce::String& name)
{
    const auto home = juce::File::getSpecialLocation (juce::File::userHomeDirectory);
    const auto here = juce::File::getCurrentWorkingDirectory();
    return home.getNumberOfChildFiles (juce::File::findFiles, name) + here.getNumberOfChildFiles (juce::File::findFiles, name)
         + home.findChildFiles (juce::File::findFiles, true, name, juce::File::FollowSymlinks::no).size();
}

bool hasDeadChild()
{
    siginfo_t info {};
    return ::waitid (P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid != 0;
}
}

//==============================================================================
TEST (Programs, NoCharacterOfANameHasAMeaning)
{
    const auto folder = in (freshFolder ("programs"), "a b $(touch hacked)");
    ASSERT_TRUE (folder.createDirectory().wasOk());
    const auto report = in (freshFolder ("reports"), "report");
    const auto program = reporter (in (folder, hostileName), report, "echo \"$0\"; pwd; echo \"$#\"");

    ASSERT_TRUE (platform::startProgram (program));
    EXPECT_EQ (linesOf (report), (Lines { program.getFullPathName().toStdString(), folder.getFullPathName().toStdString(), "0" }));
    EXPECT_EQ (filesNamed ("hacked*"), 0);
}

TEST (Programs, AStartedProgramSharesNothingWithTheHub)
{
    const auto report = in (freshFolder ("reports"), "report");
    const auto open = write (in (freshFolder ("open"), "held open by the test"), "x");
    const auto descriptor = ::open (open.getFullPathName().toRawUTF8(), O_RDONLY);
    ASSERT_GE (descriptor, 0);
    ASSERT_EQ (::fcntl (descriptor, F_GETFD), 0) << "would be inherited";
    std::signal (SIGPIPE, SIG_IGN);

    // The signals are read by the shell itself, which blocks them all while it starts another program.
    const auto program = reporter (in (freshFolder ("programs"), "program"), report,
                                   "ls -l /proc/$$/fd | grep -c 'held open' ; readlink /proc/$$/fd/0 /proc/$$/fd/2; "
                                   "[ $PPID = " + juce::String (::getpid()) + " ] || echo 'not a child'; "
                                   "grep -q \"^NSsid:.*[^0-9]$$\\$\" /proc/$$/status && echo 'own session'; "
                                   "while read name value; do case $name in SigBlk:|SigIgn:) echo $value;; esac; done < /proc/$$/status");

    ASSERT_TRUE (platform::startProgram (program));
    EXPECT_EQ (linesOf (report), (Lines { "0", "/dev/null", "/dev/null", "not a child", "own session",
                                          "0000000000000000", "0000000000000000" }));
    EXPECT_FALSE (hasDeadChild());
    ::close (descriptor);
}

TEST (Programs, AStartedProgramGetsTheUsersOwnMask)
{
    const auto report = in (freshFolder ("reports"), "report");
    const auto program = reporter (in (freshFolder ("programs"), "program"), report, "umask");
    ::umask (027);
    platform::prepareProcess();

    ASSERT_TRUE (platform::startProgram (program));
    EXPECT_EQ (linesOf (report), Lines { "0027" });
    EXPECT_EQ (::umask (0), (mode_t) 077) << "the Hub's own mask stays";
}

TEST (Programs, StartsWithoutStandardInput)
{
    const auto report = in (freshFolder ("reports"), "report");
    const auto program = reporter (in (freshFolder ("programs"), "program"), report, "readlink /proc/$$/fd/0");
    ASSERT_EQ (::close (STDIN_FILENO), 0);

    const bool started = platform::startProgram (program);
    ASSERT_EQ (::open ("/dev/null", O_RDONLY), STDIN_FILENO);

    ASSERT_TRUE (started);
    EXPECT_EQ (linesOf (report), Lines { "/dev/null" });
}

TEST (Programs, WhatCannotRunIsReported)
{
    const auto folder = freshFolder ("programs");
    const auto noPermission = write (in (folder, "no permission"), "#!/bin/sh\ntouch hacked\n");

    EXPECT_FALSE (platform::startProgram (in (folder, "absent")));
    EXPECT_FALSE (platform::startProgram (folder));
    EXPECT_FALSE (platform::startProgram (noPermission));
    EXPECT_FALSE (platform::startProgram (executable (in (folder, "no interpreter"), "#!/nowhere/sh\n")));
    EXPECT_FALSE (platform::startProgram (executable (in (folder, "no format"), "touch hacked\n"))) << "a shell would run it";
    EXPECT_FALSE (platform::startProgram (executable (in (folder, "empty"), {})));
    EXPECT_FALSE (platform::startProgram (juce::File()));
    EXPECT_EQ (filesNamed ("hacked*"), 0);
    EXPECT_FALSE (hasDeadChild());
}

//==============================================================================
TEST (Programs, WhoeverMayReadAProgramMayRunIt)
{
    const auto file = write (in (freshFolder ("programs"), "program"), "x");

    const struct { mode_t before; int after; } cases[]
    {
        { 0600, 0700 }, { 0400, 0500 }, { 0640, 0750 }, { 0644, 0755 }, { 0666, 0777 }, { 0755, 0755 }, { 0620, 0720 },
    };

    for (const auto& test : cases)
    {
        setPermissions (file, test.before);
        EXPECT_TRUE (platform::allowExecution (file));
        EXPECT_EQ (permissionsOf (file), test.after);
    }
}

TEST (Programs, OnlyAPlainFileGetsThePermission)
{
    const auto folder = freshFolder ("programs");
    const auto file = write (in (folder, "file"), "x");
    setPermissions (file, 0600);

    EXPECT_FALSE (platform::allowExecution (in (folder, "absent")));
    EXPECT_FALSE (platform::allowExecution (folder));
    EXPECT_FALSE (platform::allowExecution (link (in (folder, "link"), "file")));
    EXPECT_EQ (permissionsOf (file), 0600);
}

//==============================================================================
namespace
{
/** The search path holds only a folder with an opener that reports its arguments, one a line. */
struct Desktop
{
    Desktop()
    {
        reporter (in (bin, "xdg-open"), report, "echo \"$#\"; echo \"$1\"");
        ::setenv ("PATH", ("relative:" + bin.getFullPathName() + ":/usr/bin:/bin").toRawUTF8(), 1);
    }

    const juce::File bin = freshFolder ("bin"), report = in (freshFolder ("reports"), "report");
};
}

TEST (Programs, OpensAFolderWithTheDesktopsOpener)
{
    const Desktop desktop;
    const auto folder = in (freshFolder ("shown"), "a b $(touch hacked)");
    ASSERT_TRUE (folder.createDirectory().wasOk());

    ASSERT_TRUE (platform::openFolder (folder));
    EXPECT_EQ (linesOf (desktop.report), (Lines { "1", folder.getFullPathName().toStdString() }));
    EXPECT_EQ (filesNamed ("hacked*"), 0);
}

TEST (Programs, OpensNothingButAFolder)
{
    const Desktop desktop;
    const auto folder = freshFolder ("shown");

    EXPECT_FALSE (platform::openFolder (write (in (folder, "file"), "x")));
    EXPECT_FALSE (platform::openFolder (in (folder, "absent")));
    EXPECT_FALSE (isThere (desktop.report));
}

TEST (Programs, ShowsAFileInItsFolder)
{
    const Desktop desktop;
    const auto folder = freshFolder ("shown");

    ASSERT_TRUE (platform::revealInFileManager (write (in (folder, "file"), "x")));
    EXPECT_EQ (linesOf (desktop.report), (Lines { "1", folder.getFullPathName().toStdString() }));
}

TEST (Programs, ShowsAFolderItself)
{
    const Desktop desktop;
    const auto folder = freshFolder ("shown");

    ASSERT_TRUE (platform::revealInFileManager (folder));
    EXPECT_EQ (linesOf (desktop.report), (Lines { "1", folder.getFullPathName().toStdString() }));
}

TEST (Programs, WithoutAnOpenerNothingIsOpened)
{
    const auto folder = freshFolder ("shown");
    const auto bin = freshFolder ("bin");
    write (in (bin, "xdg-open"), "not executable");

    for (const auto& path : { juce::String(), juce::String ("relative"), bin.getFullPathName() })
    {
        ::setenv ("PATH", path.toRawUTF8(), 1);
        EXPECT_FALSE (platform::openFolder (folder)) << path;
        EXPECT_FALSE (platform::revealInFileManager (folder)) << path;
    }
}
