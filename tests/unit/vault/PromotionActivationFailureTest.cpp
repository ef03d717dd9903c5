#include "support/PrivateMounts.h"
#include "support/PromotionScene.h"
#include "support/Text.h"

using namespace zorva::test;

namespace
{
const char* const notJournalled = "Could not create the durable promotion journal.";
const char* const notJournalledAgain = "Could not journal the preserved payload. Previous payload and metadata were restored.";
const char* const outside = "Promotion paths are outside a trusted canonical parent.";

juce::String errorOf (const juce::File& staged, const juce::File& target, const juce::File& metadata = {})
{
    PromotionTransaction promotion;
    juce::String error;
    EXPECT_FALSE (promotion.activate (staged, target, error, metadata));
    EXPECT_FALSE (promotion.isActive());
    return error;
}

juce::String longName (int length)
{
    return juce::String::repeatedString ("n", length);
}
}

//==============================================================================
TEST (PromotionTransaction, ActivateRefusesAMissingPayload)
{
    const PromotionScene scene;
    const auto before = scene.tree();

    EXPECT_EQ (errorOf (in (scene.folder, "absent"), scene.target, scene.metadata), "The staged payload is missing or already active.");
    EXPECT_EQ (errorOf (juce::File(), scene.target, scene.metadata), "The staged payload is missing or already active.");
    EXPECT_EQ (scene.tree(), before);
}

TEST (PromotionTransaction, ActivateRefusesASecondPayload)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    scene.activate (promotion);
    write (scene.staged, "newer");
    const auto before = scene.tree();
    juce::String error;

    EXPECT_FALSE (promotion.activate (scene.staged, scene.target, error, scene.metadata));
    EXPECT_EQ (error, "The staged payload is missing or already active.");
    EXPECT_EQ (scene.tree(), before);
    EXPECT_TRUE (promotion.isActive());
}

TEST (PromotionTransaction, ActivateRefusesPathsOutsideOneTrustedFolder)
{
    const PromotionScene scene;
    const auto elsewhere = freshFolder ("elsewhere");
    write (in (elsewhere, "staged"), "x");
    write (in (scene.folder, "sub/staged"), "x");
    link (in (scene.folder, "linked"), "setup.exe.part");
    link (in (scene.folder, "linked folder"), elsewhere.getFullPathName());
    link (in (scene.folder, "dangling"), "nowhere");
    const auto alias = link (in (elsewhere, "alias"), scene.folder.getFullPathName());
    const auto before = scene.tree(), beforeElsewhere = treeOf (elsewhere);

    const struct { const char* name; juce::File staged, target; } cases[]
    {
        { "staged elsewhere", in (elsewhere, "staged"), scene.target },
        { "staged deeper", in (scene.folder, "sub/staged"), scene.target },
        { "staged above", scene.staged, in (scene.folder, "sub/target") },
        { "target elsewhere", scene.staged, in (elsewhere, "target") },
        { "staged is a link", in (scene.folder, "linked"), scene.target },
        { "target is a link", scene.staged, in (scene.folder, "linked") },
        { "target is a link to a folder", scene.staged, in (scene.folder, "linked folder") },
        { "target is a dangling link", scene.staged, in (scene.folder, "dangling") },
        { "both through a link", in (alias, "setup.exe.part"), in (alias, "setup.exe") },
        { "target in no folder", scene.staged, in (scene.folder, "absent/target") },
    };

    for (const auto& test : cases)
    {
        EXPECT_EQ (errorOf (test.staged, test.target, scene.metadata), outside) << test.name;
        EXPECT_EQ (scene.tree(), before) << test.name;
        EXPECT_EQ (treeOf (elsewhere), beforeElsewhere) << test.name;
    }
}

TEST (PromotionTransaction, ActivateRefusesARecordBehindALink)
{
    const PromotionScene scene;
    const auto elsewhere = freshFolder ("elsewhere");
    write (in (elsewhere, "record"), "x");
    link (in (scene.folder, "linked.json"), in (elsewhere, "record").getFullPathName());
    link (in (scene.folder, "dangling.json"), "nowhere");
    link (in (scene.folder, "linked folder"), elsewhere.getFullPathName());
    const auto before = scene.tree();

    for (const char* record : { "linked.json", "dangling.json", "linked folder/record", "linked folder/new" })
    {
        EXPECT_EQ (errorOf (scene.staged, scene.target, in (scene.folder, record)), "Promotion metadata path has an untrusted ancestry.") << record;
        EXPECT_EQ (scene.tree(), before) << record;
    }
}

//==============================================================================
TEST (PromotionTransaction, ARecordThatCannotBeSnapshottedStopsBeforeTheJournal)
{
    const PromotionScene scene (PromotionScene::withTarget);
    const auto record = write (in (scene.folder, longName (230)), "record");    // its backup's name would be too long
    const auto before = scene.tree();

    EXPECT_EQ (errorOf (scene.staged, scene.target, record), "Could not snapshot the current metadata record.");
    EXPECT_EQ (scene.tree(), before);
}

TEST (PromotionTransaction, ASnapshotThatAFullDiskCutsShortIsNoSnapshot)
{
    const PromotionScene scene (PromotionScene::withTarget);
    const auto records = freshFolder ("records");
    SmallDisk disk (records, 20);
    const auto content = juce::String::repeatedString ("r", 3 * 1024 * 1024);
    const auto record = write (in (records, "installed.json"), content);
    const auto before = scene.tree();

    EXPECT_EQ (errorOf (scene.staged, scene.target, record), "Could not snapshot the current metadata record.");
    EXPECT_EQ (scene.tree(), before);
    EXPECT_EQ (read (record), content.toStdString());
}

TEST (PromotionTransaction, AFolderThatCannotBeWrittenStopsAtTheJournal)
{
    const PromotionScene scene (PromotionScene::withTarget);
    const auto records = freshFolder ("records");
    const auto record = write (in (records, "installed.json"), "record");
    const auto before = scene.tree();
    const ReadOnlyFolder locked (scene.folder);

    EXPECT_EQ (errorOf (scene.staged, scene.target, record), notJournalled);
    EXPECT_EQ (scene.tree(), before);
    EXPECT_EQ (treeOf (records), (Tree { { "installed.json", "file: record" } })) << "the snapshot is gone again";
}

TEST (PromotionTransaction, ADiskWithoutAByteLeftStopsAtTheJournalWithNothingChanged)
{
    const PromotionScene scene (PromotionScene::nothing);
    SmallDisk disk (scene.folder, 20);
    write (scene.staged, "new");
    write (scene.target, "old");
    disk.fillWithBytes();
    const auto error = errorOf (scene.staged, scene.target);
    disk.clear();

    EXPECT_EQ (error, notJournalled);
    EXPECT_EQ (scene.tree(), (Tree { { "setup.exe", "file: old" }, { "setup.exe.part", "file: new" } }));
}

TEST (PromotionTransaction, ADiskThatFillsUpOnTheWayBringsTheOldWorldBack)
{
    const PromotionScene scene (PromotionScene::nothing);
    const auto records = freshFolder ("records");
    std::set<juce::String> seen;

    // Each round has room for one file more, so each round fails one step later.
    for (int room = 2; room < 12 && seen.count ("") == 0; ++room)
    {
        SCOPED_TRACE (room);
        SmallDisk disk (scene.folder, room);
        write (scene.staged, "new");
        write (scene.target, "old");
        const auto record = write (in (records, "installed.json"), "record");
        PromotionTransaction promotion;
        juce::String error;
        const bool activated = promotion.activate (scene.staged, scene.target, error, record);
        seen.insert (error);

        if (activated)
            continue;

        EXPECT_EQ (read (scene.target), "old");
        EXPECT_EQ (isThere (scene.staged), error == notJournalled) << "a staged payload does not outlive a promotion that had begun";
        EXPECT_EQ (scene.tree().size(), error == notJournalled ? 2u : 1u) << "no artefact is left";
        EXPECT_EQ (treeOf (records), (Tree { { "installed.json", "file: record" } }));
    }

    EXPECT_EQ (seen, (std::set<juce::String> { notJournalled, notJournalledAgain, "" }));
}

//==============================================================================
TEST (PromotionTransaction, APayloadThatCannotBePreservedIsLeftInPlace)
{
    const PromotionScene scene (PromotionScene::everything, longName (220));    // its backup's name would be too long
    const auto before = scene.tree();
    const auto error = errorOf (scene.staged, scene.target, scene.metadata);
    const auto start = "Could not preserve the current payload at " + scene.target.getFullPathName() + ".backup-";

    EXPECT_TRUE (error.startsWith (start)) << error;
    EXPECT_EQ (error.length(), start.length() + 32 + 1) << error;
    EXPECT_TRUE (error.endsWithChar ('.'));
    EXPECT_EQ (scene.tree(), before);
}

TEST (PromotionTransaction, APayloadThatCannotBeActivatedBringsTheOldWorldBack)
{
    const PromotionScene scene (PromotionScene::withRecord, longName (256));    // the target itself cannot be made

    EXPECT_EQ (errorOf (scene.staged, scene.target, scene.metadata),
               "Could not activate the staged payload. Previous payload and metadata were restored.");
    EXPECT_EQ (scene.tree(), (Tree { { "vault.json", "file: record" } }));
}

TEST (PromotionTransaction, AFailedRollbackOfAnActivationKeepsTheJournalInItsLastState)
{
    for (const int parts : { PromotionScene::nothing, PromotionScene::everything })
    {
        const PromotionScene scene (parts);
        const BusyPath busy (scene.staged);
        const auto error = errorOf (scene.staged, scene.target, scene.metadata);

        EXPECT_EQ (error, "Could not activate the staged payload. Durable recovery journal retained at " + scene.journal().getFullPathName());
        EXPECT_EQ (scene.journalState(), "backup_moved") << "written also when there was no target to move";
        EXPECT_EQ (read (scene.staged), "new");
        EXPECT_EQ (read (scene.target), parts == PromotionScene::nothing ? "(absent)" : "old");
        EXPECT_EQ (read (scene.metadata), parts == PromotionScene::nothing ? "(absent)" : "record");
    }
}
