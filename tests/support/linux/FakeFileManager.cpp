#include "support/FakeFileManager.h"

#include "support/Environment.h"
#include "support/Files.h"
#include "support/GuiHarness.h"

namespace zorva::test
{
FakeFileManager::FakeFileManager()
    : report (in (juce::File (juce::SystemStats::getEnvironmentVariable ("HOME", {})), "opened"))
{
    const auto bin = freshFolder ("bin");
    const auto path = report.getFullPathName();
    const auto opener = write (in (bin, "xdg-open"), "#!/bin/sh\nprintf '%s' \"$1\" > '" + path + ".part'\nmv '" + path + ".part' '" + path + "'\n");

    opener.setExecutePermission (true);
    setEnvironment ("PATH", bin.getFullPathName() + ":" + juce::SystemStats::getEnvironmentVariable ("PATH", {}));
}

juce::String FakeFileManager::openedPath() const
{
    return pumpUntil ([this] { return wasCalled(); }, 10000) ? report.loadFileAsString() : juce::String();
}
}
