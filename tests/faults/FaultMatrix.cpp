#include "ForkedRun.h"
#include "Scenarios.h"
#include "Snapshot.h"
#include "support/PrivateMounts.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <regex>
#include <set>

// Tries every file operation of every scenario with every fault, and judges what is left: after the fault, after the next start,
// and after the start after that.

namespace faults
{
namespace
{
struct Fault
{
    const char* name;
    Kind kind;
    int error;
};

constexpr Fault faultKinds[] = { { "EIO", Kind::failOnce, EIO },       { "ENOSPC", Kind::failOnce, ENOSPC },
                                 { "EACCES", Kind::failOnce, EACCES }, { "full from there", Kind::failFromThere, ENOSPC },
                                 { "kill", Kind::kill, 0 } };

int points = 0, losses = 0;

void report (const std::string& where, const std::string& what)
{
    ++losses;
    std::cout << "LOSS " << where << "\n" << what << std::endl;
}

/** Old, new, or neither. */
struct Judge
{
    const Scenario& scenario;
    Snapshot before, after;

    bool isOld (const Snapshot& now) const
    {
        return below (now, scenario.livePaths) == below (before, scenario.livePaths)
            && below (now, scenario.keptWhileOld) == below (before, scenario.keptWhileOld);
    }

    bool isNew (const Snapshot& now) const { return below (now, scenario.livePaths) == below (after, scenario.livePaths); }

    std::string neither (const Snapshot& now) const
    {
        return " against old:\n" + difference (below (before, scenario.livePaths), below (now, scenario.livePaths))
             + " against new:\n" + difference (below (after, scenario.livePaths), below (now, scenario.livePaths));
    }

    /** Entries that neither state has, that no note names, and that are neither a half-written sibling of a record nor the snapshot
        of one: both are copies that nothing depends on. */
    std::string unreported (const Snapshot& now, const std::string& notes, const std::filesystem::path& home) const
    {
        static const std::regex sibling (R"(.*(_temp[0-9a-f]+(\.[A-Za-z0-9]+)?|\.promotion-backup-[0-9a-f]{32}))");
        std::string text;

        for (const auto& [path, content] : now)
        {
            const bool expected = before.contains (path) || after.contains (path) || std::regex_match (path, sibling);
            bool named = false;

            for (auto p = home / path; p != home && ! named; p = p.parent_path())
                named = notes.find (p.string()) != std::string::npos;

            if (! expected && ! named && content != "directory")
                text += "  unreported: " + path + "\n";
        }

        return text;
    }
};

/** Two more starts: after the first the state is old or new and nothing lies about unnamed, and the second changes nothing. */
void judgeRecovery (const Judge& judge, const std::filesystem::path& home, const std::string& where)
{
    const auto first = runForked (home, {}, [] { return Answer { true, recover() }; });
    const auto now = snapshotOf (home);

    if (! first.finished)
        report (where, " the next start did not finish");
    else if (! judge.isOld (now) && ! judge.isNew (now))
        report (where, judge.neither (now) + " notes: " + first.answer.message);
    else if (const auto text = judge.unreported (now, first.answer.message, home); ! text.empty())
        report (where, text + " notes: " + first.answer.message);

    const auto second = runForked (home, {}, [] { return Answer { true, recover() }; });
    const auto later = snapshotOf (home);

    if (! second.finished || later != now)
        report (where, " the second start changed something:\n" + difference (now, later));
}

/** A failure that was answered: the answer fits what is there, without any recovery. */
void judgeAnswer (const Judge& judge, const ForkedRun& run, const std::filesystem::path& home, const std::string& where)
{
    const auto now = snapshotOf (home);

    if (run.answer.success ? judge.isNew (now) : judge.isOld (now))
        return;

    const bool names = run.answer.message.find (home.string()) != std::string::npos;

    if (run.answer.success || ! names)
        report (where, " answered " + std::string (run.answer.success ? "success" : "failure") + ": " + run.answer.message + "\n"
                           + judge.neither (now));
}

/** Builds the start state, keeps it as "start", and runs the operation once without a fault. */
Judge prepareScenario (const Scenario& scenario, StartState state, const World& world, int& operations)
{
    world.clear();
    runForked (world.home(), {}, [&] { scenario.prepare (state); return Answer { true, {} }; });
    world.keep ("start");
    const auto before = snapshotOf (world.home());

    const auto clean = runForked (world.home(), {}, scenario.run);
    Judge judge { scenario, before, snapshotOf (world.home()) };
    operations = clean.operations;

    if (! clean.finished || ! clean.answer.success || judge.isOld (judge.after))
        report (scenario.name + " (" + state.name() + ")", " does not work even without a fault: " + clean.answer.message);

    return judge;
}

void tryScenario (const Scenario& scenario, StartState state, const World& world)
{
    int operations = 0;
    const auto judge = prepareScenario (scenario, state, world, operations);

    for (int n = 1; n <= operations; ++n)
        for (const auto& fault : faultKinds)
        {
            ++points;
            world.load ("start");
            const auto run = runForked (world.home(), { fault.kind, fault.error, n }, scenario.run);
            const auto where = scenario.name + " (" + state.name() + "), operation " + std::to_string (n) + " of "
                             + std::to_string (operations) + ", " + fault.name;

            if (run.finished == (fault.kind == Kind::kill))
                report (where, run.finished ? " was not killed" : " did not finish");
            else if (run.finished)
                judgeAnswer (judge, run, world.home(), where);

            judgeRecovery (judge, world.home(), where);
        }
}

/** The tree without the tokens in its names and texts, to tell crashed states apart. */
std::string shapeOf (const Snapshot& snapshot)
{
    static const std::regex token ("[0-9a-f]{32}|_temp[0-9a-f]+");
    std::string text;

    for (const auto& [path, content] : snapshot)
        text += path + "\n" + content + "\n";

    return std::regex_replace (text, token, "T");
}

/** Every fault in the recovery of every state that a crash of the scenario leaves. */
void tryRecoveryOf (const Scenario& scenario, StartState state, const World& world)
{
    int operations = 0;
    const auto judge = prepareScenario (scenario, state, world, operations);
    const auto recovery = [] { return Answer { true, recover() }; };
    std::set<std::string> seenShapes;

    for (int crash = 1; crash <= operations; ++crash)
    {
        world.load ("start");
        runForked (world.home(), { Kind::kill, 0, crash }, scenario.run);
        world.keep ("crashed");

        if (! seenShapes.insert (shapeOf (snapshotOf (world.home()))).second)
            continue;

        const int steps = runForked (world.home(), {}, recovery).operations;

        for (int n = 1; n <= steps; ++n)
            for (const auto& fault : faultKinds)
            {
                ++points;
                world.load ("crashed");
                runForked (world.home(), { fault.kind, fault.error, n }, recovery);
                judgeRecovery (judge, world.home(), "recovery of " + scenario.name + " (" + state.name() + ") crashed at "
                                                        + std::to_string (crash) + ", operation " + std::to_string (n) + ", " + fault.name);
            }
    }
}
}
}

/** Arguments: the shard's number and how many shards there are. Prints "shard: N points, M losses". */
int main (int argc, char** argv)
{
    using namespace faults;

    // Whatever goes wrong in here must not reach the machine.
    zorva::test::PrivateMounts::enter (argv);
    std::filesystem::create_directories (scratchFolder);

    if (! zorva::test::PrivateMounts::confineTo (juce::File (scratchFolder)))
    {
        std::cout << zorva::test::PrivateMounts::problem() << std::endl;
        return 1;
    }

    const int shard = argc > 2 ? std::atoi (argv[1]) : 0;
    const int shards = argc > 2 ? std::atoi (argv[2]) : 1;
    const World world;
    int index = 0;

    for (const auto& scenario : allScenarios())
        for (const auto state : scenario.states)
        {
            if (index++ % shards != shard)
                continue;

            const int before = points;
            tryScenario (scenario, state, world);

            if (scenario.recovers)
                tryRecoveryOf (scenario, state, world);

            std::cout << scenario.name << " (" << state.name() << "): " << points - before << " points" << std::endl;
        }

    std::cout << "shard: " << points << " points, " << losses << " losses" << std::endl;
    return losses == 0 && points > 0 ? 0 : 1;
}
