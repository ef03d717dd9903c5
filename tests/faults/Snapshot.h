#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace faults
{
/** A directory tree as it stands: relative path to content. Directories have the content "directory". The times that records hold
    are left out, so that two runs of one operation compare equal. */
using Snapshot = std::map<std::string, std::string>;

/** Reads a whole tree; an absent one gives an empty snapshot. */
Snapshot snapshotOf (const std::filesystem::path& root);

/** Only the entries at or below one of the given relative paths. */
Snapshot below (const Snapshot& snapshot, const std::vector<std::string>& paths);

/** The paths at which two snapshots differ, one a line. */
std::string difference (const Snapshot& expected, const Snapshot& actual);
}
