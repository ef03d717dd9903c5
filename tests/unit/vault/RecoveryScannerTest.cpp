#include "support/ManifestBuilder.h"
#include "support/PrivateMounts.h"
#include "support/Text.h"
#include "unit/vault/InterruptedPromotion.h"

using namespace zorva::test;

//==============================================================================
TEST (RecoveryScanner, AFolderInOrderStaysAsItIs)
{
    const PromotionScene scene;
    scene.staged.deleteFile();
    write (in (scene.folder, "sub/.zorva-promotion-1.json"), "not looked at");
    const auto before = scene.tree();

    EXPECT_EQ (recoverScene (scene), inOrder());
    EXPECT_EQ (scene.tree(), before);
}

TEST (RecoveryScanner, RefusesARootThatIsNoPlainFolder)
{
    const PromotionScene scene;
    interrupt (scene, "activated");
    const auto before = scene.tree();
    const auto work = freshFolder ("work");
    const auto alias = link (in (work, "alias"), scene.folder.getParentDirectory().getFullPathName());
    const auto linked = link (in (work, "linked"), scene.folder.getFullPathName());
    const auto dangling = link (in (work, "dangling"), "nowhere");

    for (const auto& root : { in (work, "absent"), write (in (work, "file"), "x"), linked, in (alias, "vault"), dangling })
        EXPECT_EQ (recover (root, in (root, "vault.json")), attention (note (refusedRoot, root)));

    EXPECT_EQ (scene.tree(), before);
}

//==============================================================================
TEST (RecoveryScanner, UndoesAPromotionDroppedAfterItsActivation)
{
    for (const bool recordWritten : { false, true })
    {
        const PromotionScene scene;
        {
            PromotionTransaction promotion;
            scene.activate (promotion);
        }

        if (recordWritten)
            write (scene.metadata, "new record");

        EXPECT_EQ (recoverScene (scene), inOrder());
        EXPECT_EQ (scene.tree(), oldWorld());
        EXPECT_EQ (recoverScene (scene), inOrder());
        EXPECT_EQ (scene.tree(), oldWorld());
    }
}

TEST (RecoveryScanner, UndoesAFirstPromotionDroppedAfterItsActivation)
{
    const PromotionScene scene (PromotionScene::nothing);
    {
        PromotionTransaction promotion;
        scene.activate (promotion);
    }

    write (scene.metadata, "new record");
    EXPECT_EQ (recoverScene (scene), inOrder());
    EXPECT_EQ (scene.tree(), Tree());
}

TEST (RecoveryScanner, UndoesAPromotionOfFoldersWithTheRecordElsewhere)
{
    const auto root = freshFolder ("products"), records = freshFolder ("records");
    const auto record = write (in (records, "installed.json"), "record"), target = in (root, "zorva");
    write (in (root, "zorva.installing-1/bin/app.exe"), "new");
    write (in (target, "bin/app.exe"), "old");
    write (in (target, "data/deep/file"), "old");
    const auto before = treeOf (target);
    {
        PromotionTransaction promotion;
        juce::String error;
        ASSERT_TRUE (promotion.activate (in (root, "zorva.installing-1"), target, error, record)) << error;
    }

    write (record, "new record");
    EXPECT_EQ (recover (root, record), inOrder());
    EXPECT_EQ (treeOf (target), before);
    EXPECT_EQ (root.getNumberOfChildFiles (juce::File::findFilesAndDirectories), 1);
    EXPECT_EQ (treeOf (records), (Tree { { "installed.json", "file: record" } }));
}

TEST (RecoveryScanner, FinishesAPromotionThatWasCommitted)
{
    const PromotionScene scene;
    interrupt (scene, "committed");
    write (scene.staged, "came back");

    EXPECT_EQ (recoverScene (scene), inOrder());
    EXPECT_EQ (scene.tree(), newWorld());
}

TEST (RecoveryScanner, FinishesACommitWhoseCleanupFailedAtTheNextStart)
{
    const PromotionScene scene;
    const auto backup = in (scene.folder, "setup.exe.backup-1");
    interrupt (scene, "committed");
    {
        const BusyPath busy (backup);
        EXPECT_EQ (recoverScene (scene), attention (note (stillActionable, scene.journal()), note (backupKept, backup)));
        EXPECT_EQ (read (scene.target), "new");
        EXPECT_EQ (read (backup), "old");
        EXPECT_EQ (scene.journalState(), "committed");
    }

    EXPECT_EQ (recoverScene (scene), inOrder());
    EXPECT_EQ (scene.tree(), newWorld());
}

TEST (RecoveryScanner, ACrashAtEveryStepEndsInTheOldOrTheNewWorld)
{
    const char* const payloadBackup = "setup.exe.backup-1";
    const char* const recordBackup = "vault.json.promotion-backup-1";
    const std::pair<std::string, std::string> staged { "setup.exe.part", "new" }, oldTarget { "setup.exe", "old" }, newTarget { "setup.exe", "new" },
                                              oldRecord { "vault.json", "record" }, newRecord { "vault.json", "new record" },
                                              kept { payloadBackup, "old" }, snapshot { recordBackup, "record" };

    const struct { const char* lastStep; const char* state; std::vector<std::pair<std::string, std::string>> onDisk; Tree expected; } cases[]
    {
        { "7", "prepared", { staged, oldTarget, oldRecord, snapshot }, oldWorld() },
        { "8", "prepared", { staged, kept, oldRecord, snapshot }, oldWorld() },
        { "9", "backup_moved", { staged, kept, oldRecord, snapshot }, oldWorld() },
        { "10", "backup_moved", { newTarget, kept, oldRecord, snapshot }, oldWorld() },
        { "12", "activated", { newTarget, kept, oldRecord, snapshot }, oldWorld() },
        { "the record's write", "activated", { newTarget, kept, newRecord, snapshot }, oldWorld() },
        { "commit 2", "committed", { newTarget, kept, newRecord, snapshot }, newWorld() },
        { "in commit 4", "committed", { newTarget, newRecord, snapshot }, newWorld() },
        { "commit 4", "committed", { newTarget, newRecord }, newWorld() },
    };

    for (const auto& test : cases)
    {
        SCOPED_TRACE (test.lastStep);
        const PromotionScene scene (PromotionScene::nothing);
        scene.staged.deleteFile();

        for (const auto& [name, content] : test.onDisk)
            write (in (scene.folder, name), content);

        JournalBuilder journal (scene.folder);
        journal.state = test.state;
        journal.save();

        EXPECT_EQ (recoverScene (scene), inOrder());
        EXPECT_EQ (scene.tree(), test.expected);
        EXPECT_EQ (recoverScene (scene), inOrder());
        EXPECT_EQ (scene.tree(), test.expected);
    }
}

TEST (RecoveryScanner, ASnapshotWithoutAJournalIsKeptAndReportedAtEveryStart)
{
    const PromotionScene scene;
    scene.staged.deleteFile();
    const auto snapshot = write (in (scene.folder, "vault.json.promotion-backup-1"), "record");
    const auto before = scene.tree();

    for (int start = 0; start < 2; ++start)
    {
        EXPECT_EQ (recoverScene (scene), inOrder (note (snapshotKept, snapshot)));
        EXPECT_EQ (scene.tree(), before);
    }
}

//==============================================================================
TEST (RecoveryScanner, AnUnknownOrMissingStateRollsBack)
{
    for (const auto& state : { juce::var (""), juce::var ("Committed"), juce::var ("committed "), juce::var ("done"), juce::var(), juce::var (4),
                               juce::var (true), list ({ "committed" }) })
    {
        const PromotionScene scene;
        interrupt (scene, "");
        JournalBuilder journal (scene.folder);
        journal.state = state;
        journal.save();

        EXPECT_EQ (recoverScene (scene), inOrder()) << json (state);
        EXPECT_EQ (scene.tree(), oldWorld()) << json (state);
    }

    const PromotionScene scene;
    interrupt (scene, "");
    write (JournalBuilder (scene.folder).file, json (without (JournalBuilder (scene.folder).toVar(), "state")));
    EXPECT_EQ (recoverScene (scene), inOrder());
    EXPECT_EQ (scene.tree(), oldWorld());
}

TEST (RecoveryScanner, AMissingHadTargetMeansThatThereWasNone)
{
    const PromotionScene scene;
    scene.staged.deleteFile();
    write (in (scene.folder, "vault.json.promotion-backup-1"), "record");
    write (JournalBuilder (scene.folder).file, json (without (JournalBuilder (scene.folder).toVar(), "hadTarget")));

    EXPECT_EQ (recoverScene (scene), inOrder());
    EXPECT_EQ (scene.tree(), (Tree { { "vault.json", "file: record" } }));
}

TEST (RecoveryScanner, AMissingMetadataExistedMeansThatThereWasNoRecord)
{
    const PromotionScene scene;
    write (in (scene.folder, "setup.exe.backup-1"), "old");
    write (JournalBuilder (scene.folder).file, json (without (JournalBuilder (scene.folder).toVar(), "metadataExisted")));

    EXPECT_EQ (recoverScene (scene), inOrder());
    EXPECT_EQ (scene.tree(), (Tree { { "setup.exe", "file: old" } }));
}

TEST (RecoveryScanner, TheVersionOfAJournalIsNotRead)
{
    for (const auto& version : { juce::var (2), juce::var ("x"), juce::var() })
    {
        const PromotionScene scene;
        interrupt (scene, "activated");
        write (JournalBuilder (scene.folder).file, json (with (JournalBuilder (scene.folder).toVar(), "version", version)));

        EXPECT_EQ (recoverScene (scene), inOrder());
        EXPECT_EQ (scene.tree(), oldWorld());
    }
}

TEST (RecoveryScanner, SeveralJournalsAreWorkedOffEachByItself)
{
    const PromotionScene scene;
    interrupt (scene, "activated");
    const auto bad = write (in (scene.folder, ".zorva-promotion-0.json"), "");
    JournalBuilder other (scene.folder);
    other.file = in (scene.folder, ".zorva-promotion-2.json");
    other.target = JournalBuilder::pathIn (scene.folder, "other.exe");
    other.backup = JournalBuilder::pathIn (scene.folder, "other.exe.backup-2");
    other.staged = JournalBuilder::pathIn (scene.folder, "other.exe.part");
    other.metadata = other.metadataBackup = "";
    other.metadataExisted = false;
    write (in (scene.folder, "other.exe.backup-2"), "old other");
    other.save();

    EXPECT_EQ (recoverScene (scene), attention (note (invalidJournal, bad)));
    auto expected = oldWorld();
    expected["other.exe"] = "file: old other";
    expected[".zorva-promotion-0.json"] = "file: ";
    EXPECT_EQ (scene.tree(), expected);
}

TEST (RecoveryScanner, AJournalAndItsUnfinishedReplacementCountAsOne)
{
    const struct { const char* state; const char* replacement; Tree expected; } cases[]
    {
        { "backup_moved", "activated", oldWorld() },
        { "activated", "committed", oldWorld() },    // the commit was never there
        { "committed", "committed", newWorld() },
    };

    for (const auto& test : cases)
    {
        SCOPED_TRACE (test.replacement);
        const PromotionScene scene;
        interrupt (scene, test.state);
        JournalBuilder replacement (scene.folder);
        replacement.state = test.replacement;
        replacement.file = in (scene.folder, ".zorva-promotion-1_temp5af3.json");
        replacement.save();

        EXPECT_EQ (recoverScene (scene), inOrder());
        EXPECT_EQ (scene.tree(), test.expected);
    }
}

TEST (RecoveryScanner, TextOutsideAsciiInPathsIsRead)
{
    const PromotionScene scene (PromotionScene::everything, utf8 ("Größe 音.exe"));
    const auto before = scene.tree();
    {
        PromotionTransaction promotion;
        scene.activate (promotion);
    }

    EXPECT_EQ (recoverScene (scene), inOrder());
    auto expected = before;
    expected.erase ("setup.exe.part");
    EXPECT_EQ (scene.tree(), expected);
}
