#pragma once

#include <juce_core/juce_core.h>

namespace zorva::test
{
/** Stands in for the desktop's file manager, first in PATH while the process lives. There is no such
    thing on Windows, where its construction fails the test. */
class FakeFileManager
{
public:
    FakeFileManager();

    /** The path that was opened, waited for; empty when nothing was. */
    juce::String openedPath() const;

    bool wasCalled() const    { return report.existsAsFile(); }

private:
    juce::File report;

    JUCE_DECLARE_NON_COPYABLE (FakeFileManager)
};
}
