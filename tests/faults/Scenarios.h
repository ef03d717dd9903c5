#pragma once

#include <string>
#include <vector>

namespace faults
{
/** What is there before an operation: the payload it will replace, and the record it will rewrite. */
struct StartState
{
    bool target = false;
    bool record = false;

    std::string name() const { return std::string (target ? "target" : "no target") + ", " + (record ? "record" : "no record"); }
};

/** What an operation answered. */
struct Answer
{
    bool success = false;
    std::string message;
};

/** One operation that must leave the old state or the new one, whatever fails. Paths are relative to HOME. */
struct Scenario
{
    std::string name;
    std::vector<StartState> states;
    std::vector<std::string> livePaths;         ///< payload and record: all old or all new
    std::vector<std::string> keptWhileOld;      ///< what the old record names besides; present whenever the state is old
    void (*prepare) (StartState);               ///< builds the start state in an empty HOME
    Answer (*run)();                            ///< the operation itself, on this thread
    bool recovers = true;                       ///< a crash of it leaves work for the next start's recovery
};

const std::vector<Scenario>& allScenarios();

/** What one start of the Hub does for the disk; the notes, one a line. */
std::string recover();
}
