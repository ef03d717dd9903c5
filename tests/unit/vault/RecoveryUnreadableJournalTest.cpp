#include "unit/vault/InterruptedPromotion.h"

using namespace zorva::test;

TEST (RecoveryScanner, AJournalThatCannotBeReadIsKept)
{
    const struct { const char* name; std::string content; } cases[]
    {
        { "empty", "" }, { "null", "null" }, { "array", "[]" }, { "array of an object", "[{}]" }, { "number", "5" }, { "text", "\"text\"" },
        { "no JSON", "not JSON" }, { "cut off", "{ \"state\": \"committed\", \"target\": \"/" }, { "zeros", std::string (300, '\0') },
        { "not UTF-8", "\xff\xfe\x80{" }, { "nested beyond reason", std::string (100000, '[') },
        { "objects nested beyond reason", juce::String::repeatedString ("{\"target\":", 100000).toStdString() },
    };

    for (const auto& test : cases)
    {
        SCOPED_TRACE (test.name);
        const PromotionScene scene;
        scene.staged.deleteFile();
        const auto journal = writeBytes (in (scene.folder, ".zorva-promotion-1.json"), test.content);
        const auto before = scene.tree();

        EXPECT_EQ (recoverScene (scene), attention (note (invalidJournal, journal)));
        EXPECT_EQ (scene.tree(), before);
    }
}

TEST (RecoveryScanner, ALeftoverOfAJournalsOwnWritingIsTakenForAJournal)
{
    const PromotionScene scene;
    interrupt (scene, "activated");
    const auto leftover = write (in (scene.folder, ".zorva-promotion-1_temp5af3.json"), "{ \"version\": 1, \"sta");

    EXPECT_EQ (recoverScene (scene), attention (note (invalidJournal, leftover)));
    EXPECT_EQ (read (scene.target), "old");
    EXPECT_TRUE (isThere (leftover));
}

TEST (RecoveryScanner, AFolderWithAJournalsNameIsLeftAlone)
{
    const PromotionScene scene;
    scene.staged.deleteFile();
    write (in (scene.folder, ".zorva-promotion-1.json/inside"), "x");
    const auto before = scene.tree();

    EXPECT_EQ (recoverScene (scene), inOrder());
    EXPECT_EQ (scene.tree(), before);
}

TEST (RecoveryScanner, AJournalThatIsALinkIsRefused)
{
    const PromotionScene scene;
    interrupt (scene, "activated");
    const auto journal = scene.journal();
    const auto elsewhere = in (freshFolder ("elsewhere"), "journal.json");
    ASSERT_TRUE (journal.moveFileTo (elsewhere));
    link (journal, elsewhere.getFullPathName());
    const auto before = scene.tree();

    EXPECT_EQ (recoverScene (scene), attention (note (refusedJournal, journal), note (snapshotKept, scene.metadataBackup()),
                                                  note (backupKept, in (scene.folder, "setup.exe.backup-1"))));
    EXPECT_EQ (scene.tree(), before);
}

TEST (RecoveryScanner, AJournalThatIsADanglingLinkLowersTheResult)
{
    const PromotionScene scene;
    scene.staged.deleteFile();
    link (in (scene.folder, ".zorva-promotion-1.json"), "nowhere");
    const auto before = scene.tree();

    EXPECT_FALSE (recoverScene (scene).ok);
    EXPECT_EQ (scene.tree(), before);
}
