#include "support/windows/Reporter.h"

#include "support/GuiHarness.h"

#include <gtest/gtest.h>

namespace zorva::test
{
Reporter::Reporter (const juce::File& at) : program (at)
{
    const auto tests = juce::File::getSpecialLocation (juce::File::currentExecutableFile);
    EXPECT_TRUE (tests.getSiblingFile ("hub_test_reporter.exe").copyFileTo (program)) << program.getFullPathName();
}

juce::StringArray Reporter::lines() const
{
    constexpr int limitMs = 20000;
    EXPECT_TRUE (pumpUntil ([this] { return hasReported(); }, limitMs)) << program.getFullPathName() << " did not report";

    auto found = juce::StringArray::fromLines (reportFile().loadFileAsString());
    found.removeEmptyStrings();
    return found;
}

bool Reporter::hasReported() const           { return reportFile().existsAsFile(); }
juce::File Reporter::reportFile() const      { return program.getSiblingFile (program.getFileName() + ".report"); }
}
