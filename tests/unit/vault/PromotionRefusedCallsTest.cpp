#include "support/JudgedCalls.h"
#include "support/PromotionScene.h"

#include <cerrno>

using namespace zorva::test;

namespace
{
using Kind = JudgedCall::Kind;
using Question = std::function<bool (const JudgedCall&)>;

/** Runs the work while the system refuses what the question is true for. */
void runRefused (const Question& isRefused, const std::function<void()>& work)
{
    runJudged (work, [&] (const JudgedCall& call) { return isRefused (call) ? EIO : 0; });
}

/** The error of an activation that must fail. */
juce::String errorOf (const PromotionScene& scene, const Question& isRefused)
{
    juce::String error;

    runRefused (isRefused, [&]
    {
        PromotionTransaction promotion;
        EXPECT_FALSE (promotion.activate (scene.staged, scene.target, error, scene.metadata));
        EXPECT_FALSE (promotion.isActive());
    });

    return error;
}

/** A journal, or what is written to become one, is about to be put in place. */
bool placesJournal (const JudgedCall& call)
{
    return call.kind == Kind::rename && juce::File (call.newPath).getFileName().startsWith (".zorva-promotion-");
}

/** The journal that says that the new payload is live. */
bool placesActivatedJournal (const JudgedCall& call, const PromotionScene& scene)
{
    return placesJournal (call) && read (scene.target) == "new";
}

bool removes (const JudgedCall& call, const char* mark)
{
    return call.kind == Kind::remove && call.path.contains (mark);
}

bool putsInPlace (const JudgedCall& call, const juce::File& file)
{
    return call.kind == Kind::rename && call.newPath == file.getFullPathName();
}

const char* const notActivated = "Could not journal activated payload state. ";
const char* const restored = "Previous payload and metadata were restored.";
}

//==============================================================================
TEST (PromotionTransaction, AJournalThatCannotBeMadeNamesTheSnapshotThatStays)
{
    const PromotionScene scene;
    const auto error = errorOf (scene, [] (const JudgedCall& call) { return placesJournal (call) || removes (call, ".promotion-backup-"); });

    EXPECT_EQ (error, "Could not create the promotion journal; metadata backup retained at " + scene.metadataBackup().getFullPathName() + ".");
    EXPECT_EQ (scene.tree(), (Tree { { "setup.exe", "file: old" }, { "setup.exe.part", "file: new" }, { "vault.json", "file: record" },
                                     { scene.metadataBackup().getFileName().toStdString(), "file: record" } }));
}

TEST (PromotionTransaction, APayloadThatCannotBePreservedSaysThatArtefactsStay)
{
    const struct { bool keepsSnapshot, keepsJournal; } cases[] { { true, false }, { false, true }, { true, true } };

    for (const auto& test : cases)
    {
        SCOPED_TRACE (testing::Message() << test.keepsSnapshot << test.keepsJournal);
        const PromotionScene scene;

        const auto error = errorOf (scene, [&] (const JudgedCall& call)
        {
            return (call.kind == Kind::rename && call.path == scene.target.getFullPathName())
                || (test.keepsSnapshot && removes (call, ".promotion-backup-"))
                || (test.keepsJournal && removes (call, ".zorva-promotion-"));
        });

        const auto token = test.keepsJournal ? scene.journal().getFileNameWithoutExtension().fromLastOccurrenceOf ("-", false, false)
                                             : scene.metadataBackup().getFileName().fromLastOccurrenceOf ("-", false, false);
        EXPECT_EQ (error, "Could not preserve the current payload at " + scene.target.getFullPathName() + ".backup-" + token
                          + ". Recovery artifacts were retained.");

        if (test.keepsJournal)
            EXPECT_EQ (scene.journalState(), "prepared");

        if (test.keepsSnapshot)
            EXPECT_EQ (read (scene.metadataBackup()), "record");

        EXPECT_EQ (read (scene.target), "old");
        EXPECT_EQ (read (scene.staged), "new");
        EXPECT_EQ (read (scene.metadata), "record");
        EXPECT_EQ (scene.tree().size(), 3u + (test.keepsSnapshot ? 1u : 0u) + (test.keepsJournal ? 1u : 0u)) << "what could be removed is gone";
    }
}

//==============================================================================
TEST (PromotionTransaction, AnActivationThatCannotBeJournalledBringsTheOldWorldBack)
{
    for (const int parts : { PromotionScene::nothing, PromotionScene::everything })
    {
        const PromotionScene scene (parts);
        const auto error = errorOf (scene, [&] (const JudgedCall& call) { return placesActivatedJournal (call, scene); });

        EXPECT_EQ (error, juce::String (notActivated) + restored);
        EXPECT_EQ (scene.tree(), parts == PromotionScene::nothing ? Tree() : oldWorld());
    }
}

TEST (PromotionTransaction, AnActivationThatCanNeitherBeJournalledNorUndoneSaysWhatIsWhere)
{
    const PromotionScene scene;

    const auto error = errorOf (scene, [&] (const JudgedCall& call)
    {
        return placesActivatedJournal (call, scene) || (call.kind == Kind::rename && call.newPath.contains (".rejected-recovery-"));
    });

    EXPECT_EQ (error, notActivated + ("Previous payload remains recoverable at " + scene.backup().getFullPathName())
                      + " Durable recovery journal retained at " + scene.journal().getFullPathName());
    EXPECT_EQ (scene.journalState(), "backup_moved");
    EXPECT_EQ (read (scene.target), "new");
    EXPECT_EQ (read (scene.backup()), "old");
    EXPECT_EQ (read (scene.metadata), "record");
}

TEST (PromotionTransaction, ANoteOfAGoodRollbackReachesItsCallerAndNotTheOneOfAnActivation)
{
    const PromotionScene scene;
    const auto keepsRejected = [] (const JudgedCall& call) { return removes (call, ".rejected-recovery-"); };
    const auto error = errorOf (scene, [&] (const JudgedCall& call) { return placesActivatedJournal (call, scene) || keepsRejected (call); });
    const auto firstRejected = scene.found (".rejected-recovery-");

    EXPECT_EQ (error, juce::String (notActivated) + restored);
    EXPECT_EQ (read (firstRejected), "new");
    EXPECT_TRUE (firstRejected.deleteFile());
    EXPECT_EQ (scene.tree(), oldWorld());

    write (scene.staged, "new");
    PromotionTransaction promotion;
    scene.activate (promotion);
    juce::String detail;
    runRefused (keepsRejected, [&] { EXPECT_TRUE (promotion.rollback (detail)); });

    EXPECT_EQ (detail, "Restored previous payload; rejected payload retained at " + scene.found (".rejected-recovery-").getFullPathName());
    EXPECT_EQ (read (scene.target), "old");
}

//==============================================================================
TEST (PromotionTransaction, RollbackThatCanPutNeitherPayloadInPlaceNamesBoth)
{
    const PromotionScene scene;
    PromotionTransaction promotion;
    scene.activate (promotion);
    write (scene.metadata, "new record");
    juce::String detail;
    runRefused ([&] (const JudgedCall& call) { return putsInPlace (call, scene.target); }, [&] { EXPECT_FALSE (promotion.rollback (detail)); });

    EXPECT_EQ (detail, "Rejected payload retained at " + scene.found (".rejected-recovery-").getFullPathName()
                       + " Previous payload remains recoverable at " + scene.backup().getFullPathName()
                       + " Durable recovery journal retained at " + scene.journal().getFullPathName());
    EXPECT_FALSE (isThere (scene.target));
    EXPECT_EQ (read (scene.found (".rejected-recovery-")), "new");
    EXPECT_EQ (read (scene.backup()), "old");
    EXPECT_EQ (read (scene.metadata), "record") << "the record is restored even so";
    EXPECT_EQ (scene.journalState(), "activated");
    EXPECT_FALSE (promotion.isActive());
}
