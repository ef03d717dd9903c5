#pragma once

#include "FaultInjector.h"
#include "Scenarios.h"

#include <filesystem>
#include <functional>

namespace faults
{
/** Where the process has a disk of its own, in memory. */
constexpr const char* scratchFolder = "/tmp/zorva-hub-tests";

/** What became of one operation in a process of its own. */
struct ForkedRun
{
    bool finished = false;   ///< false when the process was killed or crashed
    Answer answer;
    int operations = 0;      ///< file operations seen below HOME
};

/** Runs work in a forked process whose HOME is the given directory, under the plan. */
ForkedRun runForked (const std::filesystem::path& home, const Plan& plan, const std::function<Answer()>& work);

/** The one HOME in which everything runs, since records hold absolute paths, and kept copies of it. Removed at the end. */
class World
{
public:
    World();
    ~World();

    const std::filesystem::path& home() const { return homeDirectory; }

    /** Empties the HOME. */
    void clear() const;

    /** Keeps a copy of the HOME under this name, replacing an older one. */
    void keep (const std::string& name) const;

    /** Makes the HOME as it was when it was kept. */
    void load (const std::string& name) const;

private:
    std::filesystem::path root, homeDirectory;
};
}
