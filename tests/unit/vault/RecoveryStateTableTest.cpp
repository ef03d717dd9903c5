#include "support/JournalBuilder.h"
#include "support/RecoveryRun.h"

#include <gtest/gtest.h>
#include <optional>

using namespace zorva::test;

namespace
{
/** What lies in a folder when the Hub starts: each file by its content, or nothing. */
struct World
{
    using Content = std::optional<std::string>;
    Content target, backup, staged, record, snapshot;
    bool journal = true;
};

/** What the journal says. */
struct Story
{
    std::string state;
    bool hadTarget = false, recordExisted = false, recordNamed = false;
};

/** The rules of recovery on a world without a disk, written down a second time so that each tests the other. */
struct Expectation
{
    Expectation (World before, const Story& story, const JournalBuilder& names) : world (std::move (before))
    {
        if (world.journal)
            story.state == "committed" ? rollForward (story) : rollBack (story, names);

        sweep (names);
    }

    void rollForward (const Story& story)
    {
        world.backup = world.staged = {};

        if (story.recordNamed)
            world.snapshot = {};

        world.journal = false;
    }

    void rollBack (const Story& story, const JournalBuilder& names)
    {
        const bool payloadBack = restorePayload (story.hadTarget);
        const bool recordBack = payloadBack && (! story.recordNamed || restoreRecord (story.recordExisted, names));
        world.staged = {};
        world.journal = ! recordBack;

        if (! recordBack)
        {
            ok = false;
            notes.add (stillActionable + names.file.getFullPathName());
        }
    }

    bool restorePayload (bool hadTarget)
    {
        if (! hadTarget)
            world.target = {};
        else if (world.backup.has_value())
            world.target = std::exchange (world.backup, {});

        return ! hadTarget || world.target.has_value();
    }

    bool restoreRecord (bool existed, const JournalBuilder& names)
    {
        if (existed && ! world.snapshot.has_value())
        {
            notes.add (snapshotMissing + names.metadataBackup.toString());
            return false;
        }

        world.record = existed ? std::exchange (world.snapshot, {}) : World::Content();
        return true;
    }

    void sweep (const JournalBuilder& names)
    {
        world.staged = {};

        if (world.snapshot.has_value())
            notes.add (snapshotKept + names.metadataBackup.toString());

        if (world.backup.has_value() && world.target.has_value())
            notes.add (backupKept + names.backup.toString());
        else if (world.backup.has_value())
            world.target = std::exchange (world.backup, {});
    }

    RecoveryRun run() const    { return { ok, notes }; }

    World world;
    bool ok = true;
    juce::StringArray notes;
};

Tree treeFor (const World& world, const std::string& journal)
{
    Tree tree;

    for (const auto& [name, content] : { std::pair ("setup.exe", world.target), std::pair ("setup.exe.backup-1", world.backup),
                                         std::pair ("setup.exe.part", world.staged), std::pair ("vault.json", world.record),
                                         std::pair ("vault.json.promotion-backup-1", world.snapshot) })
        if (content.has_value())
            tree[name] = "file: " + *content;

    if (world.journal)
        tree[".zorva-promotion-1.json"] = "file: " + journal;

    return tree;
}

/** Lays the world out, recovers twice, and compares both answers and both folders with the rules. */
void tryOut (const Story& story, const World& before)
{
    const auto root = freshFolder ("vault");
    JournalBuilder journal (root);
    journal.state = juce::String (story.state);
    journal.hadTarget = story.hadTarget;
    journal.metadataExisted = story.recordExisted;

    for (const auto& [name, content] : treeFor (before, {}))
        write (in (root, name), content.substr (6));

    const auto snapshotPath = journal.metadataBackup;

    if (! story.recordNamed)
        journal.metadata = journal.metadataBackup = "";

    const auto journalText = read (journal.save());
    journal.metadataBackup = snapshotPath;

    const Expectation first (before, story, journal);
    EXPECT_EQ (recover (root, in (root, "vault.json")), first.run());
    EXPECT_EQ (treeOf (root), treeFor (first.world, journalText));

    const Expectation second (first.world, story, journal);
    EXPECT_EQ (recover (root, in (root, "vault.json")), second.run());
    EXPECT_EQ (treeOf (root), treeFor (second.world, journalText));

    // No crash leaves a backup of a target that was not there.
    if (story.hadTarget || ! before.backup.has_value())
        EXPECT_EQ (treeFor (second.world, journalText), treeFor (first.world, journalText)) << "the second recovery changes nothing";
}

World::Content onlyIf (bool there, const char* content)
{
    return there ? World::Content (content) : World::Content();
}
}

class RecoveryOfEveryState : public testing::TestWithParam<const char*>
{
};

TEST_P (RecoveryOfEveryState, EndsAsTheRulesSay)
{
    for (int bits = 0; bits < 256 && ! HasFailure(); ++bits)
    {
        const auto bit = [bits] (int index) { return (bits >> index & 1) != 0; };
        const Story story { GetParam(), bit (0), bit (1), bit (2) };
        World world;
        world.target = onlyIf (bit (3), "at the target");
        world.backup = onlyIf (bit (4), "kept");
        world.staged = onlyIf (bit (5), "staged");
        world.record = onlyIf (bit (6), "record now");
        world.snapshot = onlyIf (bit (7), "record before");

        SCOPED_TRACE (testing::Message() << "had target " << bit (0) << ", record existed " << bit (1) << ", record named " << bit (2)
                      << "; there: target " << bit (3) << ", backup " << bit (4) << ", staged " << bit (5)
                      << ", record " << bit (6) << ", snapshot " << bit (7));
        tryOut (story, world);
    }
}

INSTANTIATE_TEST_SUITE_P (InJournals, RecoveryOfEveryState,
                          testing::Values ("prepared", "backup_moved", "activated", "committed", "unknown", ""),
                          [] (const auto& suite) { return *suite.param == '\0' ? "without" : suite.param; });
