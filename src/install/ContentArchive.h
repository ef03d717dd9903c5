#pragma once

#include "install/ZipArchive.h"

/** What a sound pack's archive may be, judged by its directory alone, before one byte is unpacked. */
namespace ContentArchive
{
/** The most that one archive may state. */
constexpr int maximumEntries = 50000;
constexpr juce::int64 maximumEntrySize = 2147483648;      ///< bytes: 2 GiB
constexpr juce::int64 maximumTotalSize = 8589934592;      ///< bytes: 8 GiB

/** The sentence that refuses the archive, or empty when it may be unpacked. Pure. */
juce::String refusalOf (const ZipArchive& archive);

/** Every name is a safe relative path, and no two are the same place on a file system that ignores case. Pure. */
bool hasUniquePaths (const juce::StringArray& names);
}
