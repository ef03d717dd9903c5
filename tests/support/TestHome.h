#pragma once

#include <juce_core/juce_core.h>

namespace zorva::test
{
/** A fresh, empty HOME for one test process: every directory of the Hub follows it. Removed at the end of the process. */
class TestHome
{
public:
    TestHome();
    ~TestHome();

    const juce::File& directory() const { return home; }

private:
    juce::File home;

    JUCE_DECLARE_NON_COPYABLE (TestHome)
};
}
