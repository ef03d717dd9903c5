#include "support/PrivateMounts.h"
#include "support/PromotionScene.h"

using namespace zorva::test;

//==============================================================================
TEST (PromotionTransaction, CommitNamesTheFilesItCouldNotRemoveAndKeepsTheJournal)
{
    const struct { bool backup, metadataBackup, staged; } cases[]
    {
        { true, false, false }, { false, true, false }, { false, false, true }, { true, true, false }, { true, true, true },
    };

    for (const auto& test : cases)
    {
        const PromotionScene scene;
        PromotionTransaction promotion;
        scene.activate (promotion);
        write (scene.metadata, "new record");
        write (scene.staged, "came back");
        juce::OwnedArray<BusyPath> busy;
        juce::StringArray expected;

        for (const auto& [isBusy, file] : { std::pair (test.backup, scene.backup()), std::pair (test.metadataBackup, scene.metadataBackup()),
                                            std::pair (test.staged, scene.staged) })
            if (isBusy)
            {
                busy.add (new BusyPath (file));
                expected.add (file.getFullPathName());
            }

        juce::String note;
        EXPECT_TRUE (promotion.commit (note));
        EXPECT_EQ (note, "Promotion committed; recovery cleanup was retained at: " + expected.joinIntoString (", "));
        EXPECT_FALSE (promotion.isActive());
        EXPECT_EQ (scene.journalState(), "committed");
        EXPECT_EQ (read (scene.target), "new");
        EXPECT_EQ (read (scene.metadata), "new record");
        EXPECT_EQ (scene.tree().size(), 3u + (size_t) expected.size()) << "what could be removed is gone";
    }
}

TEST (PromotionTransaction, ACommitThatCannotBeJournalledRollsBackWithTheRecord)
{
    for (const auto fillUp : { &SmallDisk::fill, &SmallDisk::fillWithBytes })
    {
        const auto root = freshFolder ("vault");
        SmallDisk disk (root, 20);
        write (in (root, "setup.exe.part"), "new");
        write (in (root, "setup.exe"), "old");
        write (in (root, "vault.json"), "record");
        PromotionTransaction promotion;
        juce::String error, note;
        ASSERT_TRUE (promotion.activate (in (root, "setup.exe.part"), in (root, "setup.exe"), error, in (root, "vault.json"))) << error;
        write (in (root, "vault.json"), "new record");
        (disk.*fillUp)();

        EXPECT_FALSE (promotion.commit (note));
        disk.clear();
        EXPECT_EQ (note, "Metadata committed but durable commit journaling failed; transaction was rolled back. ");
        EXPECT_EQ (treeOf (root), oldWorld());
        EXPECT_FALSE (promotion.isActive());
    }
}

TEST (PromotionTransaction, ACommitThatCanNeitherBeJournalledNorRolledBackSaysWhatIsWhere)
{
    const PromotionScene scene (PromotionScene::withTarget);
    const auto records = freshFolder ("records");
    const auto record = write (in (records, "installed.json"), "record");
    PromotionTransaction promotion;
    juce::String error, note;
    ASSERT_TRUE (promotion.activate (scene.staged, scene.target, error, record)) << error;
    write (record, "new record");
    const ReadOnlyFolder locked (scene.folder);

    EXPECT_FALSE (promotion.commit (note));
    EXPECT_EQ (note, "Metadata committed but durable commit journaling failed; transaction was rolled back. "
                     "Previous payload remains recoverable at " + scene.backup().getFullPathName()
                     + " Durable recovery journal retained at " + scene.journal().getFullPathName());
    EXPECT_EQ (scene.journalState(), "activated");
    EXPECT_EQ (treeOf (records), (Tree { { "installed.json", "file: record" } })) << "the record is restored even so";
}

//==============================================================================
TEST (PromotionTransaction, RollbackWithoutTheRecordsSnapshotSaysSo)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    scene.activate (promotion);
    write (scene.metadata, "new record");
    const auto snapshot = scene.metadataBackup();
    ASSERT_TRUE (snapshot.deleteFile());
    juce::String detail;

    EXPECT_FALSE (promotion.rollback (detail));
    EXPECT_EQ (detail, "Metadata backup missing: " + snapshot.getFullPathName()
                       + " Durable recovery journal retained at " + scene.journal().getFullPathName());
    EXPECT_EQ (read (scene.target), "old");
    EXPECT_EQ (read (scene.metadata), "new record");
    EXPECT_FALSE (promotion.isActive());
}

TEST (PromotionTransaction, RollbackWithoutABackupKeepsTheTargetThatIsThere)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    scene.activate (promotion);
    ASSERT_TRUE (scene.backup().deleteFile());
    juce::String detail;

    EXPECT_TRUE (promotion.rollback (detail));
    EXPECT_EQ (detail, "");
    EXPECT_EQ (scene.tree(), (Tree { { "setup.exe", "file: new" }, { "vault.json", "file: record" } }));
}

TEST (PromotionTransaction, RollbackThatCannotMoveThePayloadRestoresTheRecordAllTheSame)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    scene.activate (promotion);
    write (scene.metadata, "new record");
    const BusyPath busy (scene.target);
    juce::String detail;

    EXPECT_FALSE (promotion.rollback (detail));
    EXPECT_EQ (detail, "Previous payload remains recoverable at " + scene.backup().getFullPathName()
                       + " Durable recovery journal retained at " + scene.journal().getFullPathName());
    EXPECT_EQ (read (scene.target), "new");
    EXPECT_EQ (read (scene.metadata), "record");
    EXPECT_FALSE (promotion.isActive());
}

TEST (PromotionTransaction, RollbackThatCannotMoveTheBackupPutsTheNewPayloadBack)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    scene.activate (promotion);
    const BusyPath busy (scene.backup());
    juce::String detail;

    EXPECT_FALSE (promotion.rollback (detail));
    EXPECT_EQ (detail, "Previous payload remains recoverable at " + scene.backup().getFullPathName()
                       + " Durable recovery journal retained at " + scene.journal().getFullPathName());
    EXPECT_EQ (read (scene.target), "new");
    EXPECT_EQ (read (scene.backup()), "old");
}

TEST (PromotionTransaction, RollbackOfANameTooLongToSetAsideKeepsBothPayloads)
{
    const PromotionScene scene (PromotionScene::everything, juce::String::repeatedString ("n", 210));
    PromotionTransaction promotion;
    scene.activate (promotion);
    juce::String detail;

    EXPECT_FALSE (promotion.rollback (detail));
    EXPECT_EQ (detail, "Previous payload remains recoverable at " + scene.backup().getFullPathName()
                       + " Durable recovery journal retained at " + scene.journal().getFullPathName());
    EXPECT_EQ (read (scene.target), "new");
    EXPECT_EQ (read (scene.backup()), "old");
}

TEST (PromotionTransaction, RollbackThatCannotRemoveTheNewPayloadSucceedsAndSaysWhereItIs)
{
    const auto root = freshFolder ("products");
    const auto staged = in (root, "staged"), target = in (root, "zorva");
    write (in (staged, "held/file"), "new");
    write (in (target, "file"), "old");
    PromotionTransaction promotion;
    juce::String error, detail;
    ASSERT_TRUE (promotion.activate (staged, target, error, juce::File())) << error;
    const BusyPath busy (in (target, "held"));

    EXPECT_TRUE (promotion.rollback (detail));
    const auto start = "Restored previous payload; rejected payload retained at " + target.getFullPathName() + ".rejected-recovery-";
    EXPECT_TRUE (detail.startsWith (start)) << detail;
    EXPECT_EQ (detail.length(), start.length() + 32) << detail;
    EXPECT_EQ (read (in (target, "file")), "old");
    EXPECT_TRUE (isThere (juce::File (detail.fromFirstOccurrenceOf (" at ", false, false))));
}

TEST (PromotionTransaction, RollbackThatCannotFinishKeepsTheJournal)
{
    for (const char* held : { "record", "staged", "journal" })
    {
        SCOPED_TRACE (held);
        const PromotionScene scene;
        PromotionTransaction promotion;
        scene.activate (promotion);
        write (scene.staged, "came back");
        const juce::String what (held);
        const BusyPath busy (what == "record" ? scene.metadata : what == "staged" ? scene.staged : scene.journal());
        juce::String detail;

        EXPECT_FALSE (promotion.rollback (detail));
        EXPECT_EQ (detail, "Durable recovery journal retained at " + scene.journal().getFullPathName());
        EXPECT_EQ (scene.journalState(), "activated");
        EXPECT_EQ (read (scene.target), "old");
        EXPECT_EQ (read (scene.metadata), "record");
    }
}
