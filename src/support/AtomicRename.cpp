#include "support/AtomicRename.h"

#include "support/NativePath.h"

bool renameOver (const juce::File& from, const juce::File& to)
{
    constexpr int attempts = 5;
    constexpr int pauseMs = 100;

    const auto source = nativePath (from);
    const auto target = nativePath (to);

    if (! source.has_value() || ! target.has_value())
        return false;

    for (int attempt = 1;; ++attempt)
    {
        std::error_code error;
        std::filesystem::rename (*source, *target, error);

        if (! error)
            return true;

        // A scanner or an indexer that holds the target for a moment shows as a refused permission.
        if (error != std::errc::permission_denied || attempt == attempts)
            return false;

        juce::Thread::sleep (pauseMs);
    }
}
