#pragma once

#include <juce_core/juce_core.h>

namespace zorva::test
{
/** A fresh, empty HOME for one test process: every directory of the Hub follows it. It lies on a disk in memory that this process
    alone sees, and beyond it the process can change nothing on the machine: the tests hand hostile paths to code that deletes, and
    on the day that code is wrong the developer's files must still be there. All of it vanishes with the process. Construct once,
    first thing in main after PrivateMounts::enter(). */
class TestHome
{
public:
    TestHome();
    ~TestHome();

    const juce::File& directory() const { return home; }

private:
    juce::File folder, home;
    bool isConfined = false;

    JUCE_DECLARE_NON_COPYABLE (TestHome)
};
}
