#pragma once

#include <filesystem>
#include <juce_core/juce_core.h>
#include <optional>

/** The path of a file for std::filesystem, the same characters on every platform. Nothing for the empty path and for text that the
    system's own encoding cannot hold. Does not look at the disk and never throws. Any thread. */
std::optional<std::filesystem::path> nativePath (const juce::File& file);
