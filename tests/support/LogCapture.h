#pragma once

#include <juce_core/juce_core.h>

namespace zorva::test
{
/** Collects what is written to the log while it lives. One at a time; any thread may write. */
class LogCapture final : private juce::Logger
{
public:
    LogCapture()              { setCurrentLogger (this); }
    ~LogCapture() override    { setCurrentLogger (nullptr); }

    /** The lines so far, oldest first. */
    juce::StringArray lines() const
    {
        const juce::ScopedLock lock (mutex);
        return collected;
    }

private:
    void logMessage (const juce::String& message) override
    {
        const juce::ScopedLock lock (mutex);
        collected.add (message);
    }

    juce::CriticalSection mutex;
    juce::StringArray collected;

    JUCE_DECLARE_NON_COPYABLE (LogCapture)
};
}
