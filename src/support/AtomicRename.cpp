#include "support/AtomicRename.h"

#include "platform/FileReplacing.h"

bool renameOver (const juce::File& from, const juce::File& to)
{
    constexpr int attempts = 5;
    constexpr int pauseMs = 100;

    if (from == juce::File() || to == juce::File())
        return false;

    for (int attempt = 1;; ++attempt)
    {
        const auto renaming = platform::renameInOneStep (from, to);

        if (renaming == platform::Renaming::done)
            return true;

        if (renaming == platform::Renaming::failed || attempt == attempts)
            return false;

        juce::Thread::sleep (pauseMs);
    }
}
