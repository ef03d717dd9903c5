#include "Snapshot.h"

#include <fstream>
#include <iterator>
#include <regex>

namespace faults
{
static std::string contentOf (const std::filesystem::path& file)
{
    std::ifstream in (file, std::ios::binary);
    std::string text { std::istreambuf_iterator<char> (in), std::istreambuf_iterator<char>() };

    if (file.extension() == ".json")
    {
        static const std::regex times (R"re("(downloadedAt|installedAt)": "[^"]*")re");
        text = std::regex_replace (text, times, "\"$1\"");
    }

    return text;
}

Snapshot snapshotOf (const std::filesystem::path& root)
{
    Snapshot snapshot;

    if (! std::filesystem::is_directory (root))
        return snapshot;

    for (const auto& entry : std::filesystem::recursive_directory_iterator (root))
    {
        const auto path = std::filesystem::relative (entry.path(), root).string();
        snapshot[path] = entry.is_directory() ? "directory" : contentOf (entry.path());
    }

    return snapshot;
}

Snapshot below (const Snapshot& snapshot, const std::vector<std::string>& paths)
{
    Snapshot result;

    for (const auto& [path, content] : snapshot)
        for (const auto& wanted : paths)
            if (path == wanted || path.starts_with (wanted + "/"))
                result[path] = content;

    return result;
}

std::string difference (const Snapshot& expected, const Snapshot& actual)
{
    std::string text;

    for (const auto& [path, content] : expected)
    {
        const auto found = actual.find (path);

        if (found == actual.end())
            text += "  missing: " + path + "\n";
        else if (found->second != content)
            text += "  changed: " + path + "\n";
    }

    for (const auto& [path, content] : actual)
        if (! expected.contains (path))
            text += "  extra: " + path + "\n";

    return text;
}
}
