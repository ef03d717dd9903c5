#pragma once

#include <juce_core/juce_core.h>

namespace zorva::test
{
/** While it lives, what this process tells a debugger goes to the stream for errors as well: the framework's assertions and leaks are
    told there alone, and must fail the test. One at a time. */
class DebugOutput
{
public:
    DebugOutput();
    ~DebugOutput();

private:
    void* handler = nullptr;

    JUCE_DECLARE_NON_COPYABLE (DebugOutput)
};
}
