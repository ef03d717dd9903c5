#pragma once

#include <juce_core/juce_core.h>

namespace zorva::test
{
/** A Windows program with a version resource, 13.4.27.9, that writes down how it was started. */
class Reporter
{
public:
    /** A copy of the program at this path, whose folder is there. A failure to copy it fails the test. */
    explicit Reporter (const juce::File& at);

    /** What the program wrote, waited for: its working folder, then its arguments, itself first. Empty when it did not start. */
    juce::StringArray lines() const;

    /** True when it was started, and has written; does not wait. */
    bool hasReported() const;

    const juce::File program;

private:
    juce::File reportFile() const;
};
}
