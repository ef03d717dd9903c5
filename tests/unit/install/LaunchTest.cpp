#include "app/HubPaths.h"
#include "install/InstallService.h"
#include "platform/ProcessSetup.h"
#include "platform/Programs.h"
#include "support/Files.h"
#include "support/GuiHarness.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

using namespace zorva::test;

namespace
{
constexpr const char* probeEnding = "probe.exe";

std::string lineOf (const char* file, const char* beginning)
{
    char line[4096];
    std::string result;

    if (auto* stream = std::fopen (file, "r"))
    {
        while (std::fgets (line, sizeof (line), stream) != nullptr)
            if (std::string (line).rfind (beginning, 0) == 0)
                result = line;

        std::fclose (stream);
    }

    return result;
}

/** A copy of this very program, started under a name that ends in "probe.exe", is the native program that the tests launch: it
    writes down how it was started and ends before anything else runs. */
[[maybe_unused]] const bool isNoProbe = []
{
    char self[4096] = {}, folder[4096] = {};
    const auto length = ::readlink ("/proc/self/exe", self, sizeof (self) - 1);
    const std::string path (self, length > 0 ? (size_t) length : 0), ending (probeEnding);

    if (path.size() < ending.size() || path.substr (path.size() - ending.size()) != ending)
        return true;

    int arguments = 0;

    if (auto* stream = std::fopen ("/proc/self/cmdline", "r"))
        for (int c = std::fgetc (stream); c != EOF; c = std::fgetc (stream))
            arguments += c == 0 ? 1 : 0;

    const auto place = path.substr (0, path.rfind ('/'));

    if (auto* stream = std::fopen ((place + "/started.new").c_str(), "w"))
    {
        std::fprintf (stream, "in %s\narguments %d\n%s", ::getcwd (folder, sizeof (folder)), arguments, lineOf ("/proc/self/status", "Umask:").c_str());
        std::fclose (stream);
        std::rename ((place + "/started.new").c_str(), (place + "/started").c_str());
    }

    ::_exit (0);
}();

/** Installs the probe by hand under this name. */
juce::File putProbe (const juce::String& id, const juce::String& relativePath)
{
    const auto program = in (HubPaths::productsDirectory(), id + "/" + relativePath);
    program.getParentDirectory().createDirectory();
    EXPECT_TRUE (juce::File ("/proc/self/exe").getLinkedTarget().copyFileTo (program));
    ::chmod (program.getFullPathName().toRawUTF8(), 0700);
    return program;
}

std::string reportOf (const juce::File& program)
{
    const auto report = program.getSiblingFile ("started");
    EXPECT_TRUE (pumpUntil ([&] { return isThere (report); }, 20000)) << "it never ran";
    return read (report);
}
}

//==============================================================================
TEST (InstallService, LaunchingReallyRunsTheProgram)
{
    const auto old = ::umask (022);
    const auto program = putProbe ("app", "bin/app.exe");
    const auto probe = putProbe ("probe", "deep/er/probe.exe");

    EXPECT_TRUE (InstallService::launch ("probe"));
    EXPECT_EQ (reportOf (probe), "in " + probe.getParentDirectory().getFullPathName().toStdString() + "\narguments 1\nUmask:\t0022\n");
    EXPECT_FALSE (isThere (program.getSiblingFile ("started"))) << "and no other";
    ::umask (old);
}

TEST (InstallService, ALaunchedProgramGetsTheUsersOwnMask)
{
    ::umask (027);
    platform::prepareProcess();
    const auto probe = putProbe ("probe", "probe.exe");

    ASSERT_TRUE (InstallService::launch ("probe"));
    EXPECT_NE (reportOf (probe).find ("Umask:\t0027\n"), std::string::npos) << read (probe.getSiblingFile ("started"));
}

TEST (InstallService, NoShellSeesTheNameOfALaunchedProgram)
{
    const auto probe = putProbe ("app", "$(touch shell-was-here) `touch shell-was-here` ; touch shell-was-here & 'probe.exe");
    juce::String error;
    ASSERT_TRUE (InstallService::writeInstallRecord ("app", probe, error)) << error;

    EXPECT_TRUE (InstallService::launch ("app"));
    reportOf (probe);
    pump (300);

    EXPECT_EQ (probe.getParentDirectory().getNumberOfChildFiles (juce::File::findFilesAndDirectories), 2) << "the program and its report";
    EXPECT_FALSE (isThere (juce::File::getCurrentWorkingDirectory().getChildFile ("shell-was-here")));
}

TEST (InstallService, LaunchingFailsForWhatIsNotInstalledOrCannotRun)
{
    EXPECT_FALSE (InstallService::launch ("unheard-of"));
    EXPECT_FALSE (InstallService::launch ("../Products/app"));

    const auto text = write (in (HubPaths::productsDirectory(), "app/app.exe"), "no program at all");
    ASSERT_TRUE (platform::allowExecution (text));
    EXPECT_FALSE (InstallService::launch ("app"));
}
