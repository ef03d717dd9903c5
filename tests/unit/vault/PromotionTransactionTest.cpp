#include "support/PromotionScene.h"

using namespace zorva::test;

TEST (PromotionTransaction, ActivatePutsTheNewPayloadInPlaceAndKeepsTheOldOne)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    EXPECT_FALSE (promotion.isActive());
    EXPECT_EQ (promotion.getState(), "");
    scene.activate (promotion);

    EXPECT_TRUE (promotion.isActive());
    EXPECT_EQ (promotion.getState(), "activated");
    EXPECT_EQ (read (scene.target), "new");
    EXPECT_EQ (read (scene.metadata), "record");
    EXPECT_EQ (read (scene.backup()), "old");
    EXPECT_EQ (read (scene.metadataBackup()), "record");
    EXPECT_EQ (scene.tree().size(), 5u) << "payload, record, their backups and the journal";
}

//==============================================================================
TEST (PromotionTransaction, CommitLeavesTheNewWorldAlone)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    scene.activate (promotion);
    write (scene.metadata, "new record");
    juce::String note ("before");

    EXPECT_TRUE (promotion.commit (note));
    EXPECT_EQ (note, "");
    EXPECT_EQ (scene.tree(), newWorld());
    EXPECT_FALSE (promotion.isActive());
    EXPECT_EQ (promotion.getState(), "committed");
}

TEST (PromotionTransaction, CommitRemovesAStagedPayloadThatCameBack)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    scene.activate (promotion);
    write (scene.metadata, "new record");
    write (in (scene.staged, "left/over"), "x");
    juce::String note;

    EXPECT_TRUE (promotion.commit (note));
    EXPECT_EQ (scene.tree(), newWorld());
}

TEST (PromotionTransaction, CommitOfWhatIsNotActiveIsFalseAndSaysNothing)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    juce::String note ("unchanged"), detail;
    EXPECT_FALSE (promotion.commit (note));

    scene.activate (promotion);
    ASSERT_TRUE (promotion.rollback (detail));
    EXPECT_FALSE (promotion.commit (note)) << "after a rollback";
    EXPECT_EQ (note, "unchanged");
    EXPECT_EQ (scene.tree(), oldWorld());
}

TEST (PromotionTransaction, RollbackBringsPayloadAndRecordBack)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    scene.activate (promotion);
    write (scene.metadata, "new record");
    juce::String detail ("before");

    EXPECT_TRUE (promotion.rollback (detail));
    EXPECT_EQ (detail, "");
    EXPECT_EQ (scene.tree(), oldWorld());
    EXPECT_FALSE (promotion.isActive());
}

TEST (PromotionTransaction, RollbackBringsBackARecordThatWasDeleted)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    scene.activate (promotion);
    ASSERT_TRUE (scene.metadata.deleteFile());
    juce::String detail;

    EXPECT_TRUE (promotion.rollback (detail));
    EXPECT_EQ (scene.tree(), oldWorld());
}

TEST (PromotionTransaction, RollbackOfAFirstPromotionLeavesNothing)
{
    const PromotionScene scene (PromotionScene::nothing);
    PromotionTransaction promotion;
    scene.activate (promotion);
    EXPECT_EQ (scene.tree().size(), 2u) << "the payload and the journal, no backup";
    write (scene.metadata, "new record");
    juce::String detail;

    EXPECT_TRUE (promotion.rollback (detail));
    EXPECT_EQ (detail, "");
    EXPECT_EQ (scene.tree(), Tree());
}

TEST (PromotionTransaction, RollbackWithoutARecordLeavesOtherFilesAlone)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    juce::String error, detail;
    ASSERT_TRUE (promotion.activate (scene.staged, scene.target, error, juce::File())) << error;
    write (scene.metadata, "changed meanwhile");

    EXPECT_TRUE (promotion.rollback (detail));
    EXPECT_EQ (scene.tree(), (Tree { { "setup.exe", "file: old" }, { "vault.json", "file: changed meanwhile" } }));
}

TEST (PromotionTransaction, RollbackOfAnEmptyTransactionChangesNothing)
{
    const PromotionScene scene;
    const auto before = scene.tree();
    PromotionTransaction promotion;
    juce::String detail ("before");

    EXPECT_TRUE (promotion.rollback (detail));
    EXPECT_EQ (detail, "");
    EXPECT_EQ (scene.tree(), before);
}

TEST (PromotionTransaction, DroppingAnActiveTransactionUndoesNothing)
{
    const PromotionScene scene;
    {
        PromotionTransaction promotion;
        scene.activate (promotion);
    }

    EXPECT_EQ (scene.tree().size(), 5u);
    EXPECT_EQ (scene.journalState(), "activated");
    EXPECT_EQ (read (scene.target), "new");
}

TEST (PromotionTransaction, TwoPromotionsInOneFolderDoNotMeet)
{
    const PromotionScene scene;
    const auto otherStaged = write (in (scene.folder, "other.part"), "new other"), other = write (in (scene.folder, "other"), "old other");
    PromotionTransaction first, second;
    juce::String error, note, detail;
    scene.activate (first);
    ASSERT_TRUE (second.activate (otherStaged, other, error, juce::File())) << error;
    write (scene.metadata, "new record");

    EXPECT_TRUE (first.commit (note));
    EXPECT_TRUE (second.rollback (detail));
    auto expected = newWorld();
    expected["other"] = "file: old other";
    EXPECT_EQ (scene.tree(), expected);
}

//==============================================================================
TEST (PromotionTransaction, FoldersAreReplacedWhole)
{
    for (const bool keeps : { true, false })
    {
        const auto root = freshFolder ("products");
        const auto staged = in (root, "zorva.installing-1"), target = in (root, "zorva");
        write (in (staged, "bin/app.exe"), "new");
        write (in (staged, "data/new only"), "x");
        write (in (target, "bin/app.exe"), "old");
        write (in (target, "old only/deep/file"), "y");
        const auto oldTree = treeOf (target), newTree = treeOf (staged);
        PromotionTransaction promotion;
        juce::String error, text;
        ASSERT_TRUE (promotion.activate (staged, target, error, juce::File())) << error;
        EXPECT_EQ (treeOf (target), newTree);

        EXPECT_TRUE (keeps ? promotion.commit (text) : promotion.rollback (text));
        EXPECT_EQ (text, "");
        EXPECT_EQ (treeOf (target), keeps ? newTree : oldTree);
        EXPECT_EQ (root.getNumberOfChildFiles (juce::File::findFilesAndDirectories), 1);
    }
}

TEST (PromotionTransaction, AFileMayReplaceAFolderAndTheReverse)
{
    const PromotionScene scene (PromotionScene::nothing);
    write (in (scene.target, "inside"), "old folder");
    PromotionTransaction promotion;
    juce::String note, detail, error;
    scene.activate (promotion);
    EXPECT_EQ (read (scene.target), "new");
    EXPECT_TRUE (promotion.rollback (detail)) << detail;
    EXPECT_EQ (scene.tree(), (Tree { { "setup.exe", "folder" }, { "setup.exe/inside", "file: old folder" } }));

    const PromotionScene other (PromotionScene::withTarget);
    const auto stagedFolder = in (other.folder, "staged");
    write (in (stagedFolder, "inside"), "new folder");
    PromotionTransaction reverse;
    ASSERT_TRUE (reverse.activate (stagedFolder, other.target, error, juce::File())) << error;
    EXPECT_TRUE (reverse.commit (note)) << note;
    EXPECT_EQ (read (in (other.target, "inside")), "new folder");
}

//==============================================================================
TEST (PromotionTransaction, RemovePathRemovesWithoutFollowingLinks)
{
    const auto root = freshFolder ("work"), outside = freshFolder ("outside");
    write (in (outside, "precious"), "x");
    const auto before = treeOf (outside);
    write (in (root, "file"), "x");
    write (in (root, "folder/deep/file"), "x");
    link (in (root, "folder/out"), outside.getFullPathName());
    link (in (root, "folder/deep/dangling"), "nowhere");
    link (in (root, "link to folder"), outside.getFullPathName());
    link (in (root, "link to file"), in (outside, "precious").getFullPathName());
    link (in (root, "dangling"), "nowhere");

    for (const char* name : { "absent", "file", "folder", "link to folder", "link to file", "dangling" })
    {
        EXPECT_TRUE (PromotionTransaction::removePath (in (root, name))) << name;
        EXPECT_FALSE (isThere (in (root, name))) << name;
    }

    EXPECT_TRUE (PromotionTransaction::removePath (juce::File()));
    EXPECT_EQ (treeOf (outside), before);
}

TEST (PromotionTransaction, RestorePayloadPutsBackWhatThereWas)
{
    const struct { bool hadTarget; const char* target; const char* backup; bool restored; Tree after; } cases[]
    {
        { false, nullptr, nullptr, true, {} },
        { false, "new", nullptr, true, {} },
        { false, nullptr, "old", true, { { "x.backup-1", "file: old" } } },
        { true, "old", nullptr, true, { { "x", "file: old" } } },
        { true, nullptr, nullptr, false, {} },
        { true, nullptr, "old", true, { { "x", "file: old" } } },
        { true, "new", "old", true, { { "x", "file: old" } } },
    };

    for (const auto& test : cases)
    {
        SCOPED_TRACE ((test.hadTarget ? "had target, " : "had none, ") + juce::String (test.target) + ", " + juce::String (test.backup));
        const auto root = freshFolder ("work");

        if (test.target != nullptr)
            write (in (root, "x"), test.target);

        if (test.backup != nullptr)
            write (in (root, "x.backup-1"), test.backup);

        juce::StringArray notes;
        EXPECT_EQ (PromotionTransaction::restorePayload (in (root, "x"), in (root, "x.backup-1"), test.hadTarget, notes), test.restored);
        EXPECT_TRUE (notes.isEmpty()) << notes.joinIntoString ("|");
        EXPECT_EQ (treeOf (root), test.after);
    }
}
