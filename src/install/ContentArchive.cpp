#include "install/ContentArchive.h"

#include "app/PathTrust.h"
#include "platform/CaseFold.h"

#include <unordered_set>

namespace ContentArchive
{
namespace
{
bool isSafeEntry (const ZipArchive::Entry& entry)
{
    return ! entry.isSymbolicLink
        && PathTrust::isSafeRelativePath (entry.name)
        && ! PathTrust::hasReservedDeviceStep (entry.name)
        && entry.uncompressedSize <= maximumEntrySize;
}
}

juce::String refusalOf (const ZipArchive& archive)
{
    const auto& entries = archive.getEntries();

    if (entries.empty() || entries.size() > (size_t) maximumEntries)
        return "The content archive is empty, corrupt, or exceeds the safe entry limit.";

    juce::StringArray names;
    names.ensureStorageAllocated ((int) entries.size());
    juce::int64 total = 0;

    for (const auto& entry : entries)
    {
        if (! isSafeEntry (entry) || total > maximumTotalSize - entry.uncompressedSize)
            return "The content archive contains an unsafe path, link, or size.";

        total += entry.uncompressedSize;
        names.add (entry.name);
    }

    return hasUniquePaths (names) ? juce::String() : "The content archive contains duplicate or case-colliding paths.";
}

bool hasUniquePaths (const juce::StringArray& names)
{
    std::unordered_set<juce::String> places;

    for (const auto& name : names)
    {
        if (! PathTrust::isSafeRelativePath (name))
            return false;

        const auto path = name.endsWithChar ('/') ? name.dropLastCharacters (1) : name;

        if (! places.insert (platform::foldCase (path)).second)
            return false;
    }

    return true;
}
}
