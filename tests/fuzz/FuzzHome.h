#pragma once

#include "app/HubPaths.h"

#include <cstdint>
#include <cstdlib>
#include <juce_events/juce_events.h>

/** What the fuzzer calls with each input; every target defines it. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size);

namespace fuzz
{
/** A scratch HOME for the whole run of a fuzz target, in memory: everything else is read-only while the
    targets run under scripts/fuzz.sh. */
inline const juce::File& home()
{
    static const juce::File directory = []
    {
        std::string pattern = "/dev/shm/zorva-hub-fuzz-XXXXXX";

        if (::mkdtemp (pattern.data()) == nullptr || ::setenv ("HOME", pattern.c_str(), 1) != 0)
            std::abort();

        static const juce::String path (pattern);
        std::atexit ([] { juce::File (path).deleteRecursively (false); });
        HubPaths::ensureDirectories();
        return juce::File (path);
    }();

    return directory;
}

/** Replaces a file with the fuzzer's bytes. */
inline void writeBytes (const juce::File& file, const std::uint8_t* data, std::size_t size)
{
    file.getParentDirectory().createDirectory();
    file.replaceWithData (data, size);
}

/** The bytes as the text that a reader of files would see. */
inline juce::String textOf (const std::uint8_t* data, std::size_t size)
{
    return juce::String::createStringFromData (data, (int) size);
}
}
