#pragma once

#include "install/ZipArchive.h"

/** Unpacking archives that may lie about themselves. */
namespace ArchiveExtractor
{
/** Unpacks every entry below target, which must be a new or empty directory. The result names what went wrong; what was unpacked so
    far stays for the caller to remove. Worker thread.

    Before anything is written, the archive is refused for a name that is not safe on every system, a link, an encrypted entry, an
    unknown method, and two entries that claim one path on a file system that ignores case. A "\" separates steps as "/" does, as
    some Windows tools write it. While unpacking, a file is refused the moment it holds more or fewer bytes than the directory
    says, or when its CRC-32 differs. At the end the tree on the disk must hold exactly those files with exactly those sizes. */
juce::Result extractAll (ZipArchive& archive, const juce::File& target);
}
