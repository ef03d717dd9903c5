#include "support/RecordPipe.h"
#include "support/VaultItems.h"
#include "unit/vault/InterruptedPromotion.h"
#include "vault/VaultIndex.h"
#include "vault/VaultStore.h"

using namespace zorva::test;

namespace
{
const std::string installer = "installer";

juce::File putApplication (const juce::String& id)
{
    return putInVault (applicationOf (id, "1.0.0", installer), "setup.exe", installer);
}
}

//==============================================================================
TEST (VaultStore, APipeInARecordsPlaceIsNoRecord)
{
    putApplication ("app");
    const auto other = putApplication ("other");
    const RecordPipe pipe (vaultFile ("app/vault.json"));
    const VaultStore store;

    EXPECT_TRUE (store.getRecoveryNotes().isEmpty()) << store.getRecoveryNotes().joinIntoString ("\n");
    ASSERT_EQ (store.listVaultedItems().size(), 1u);
    EXPECT_EQ (store.listVaultedItems()[0].product.id, "other");
    EXPECT_EQ (VaultStore::trustedInstallerFor ("app").getFullPathName(), "");
    EXPECT_EQ (VaultIndex().trustedInstallerFor ("app").getFullPathName(), "");
    EXPECT_EQ (VaultIndex().trustedInstallerFor ("other").getFullPathName(), other.getFullPathName());
    EXPECT_TRUE (pipe.isStillThere());
}

TEST (VaultStore, APipeInAnInstallersPlaceIsNoInstaller)
{
    const RecordPipe pipe (putApplication ("app"));

    EXPECT_EQ (VaultStore::trustedInstallerFor ("app").getFullPathName(), "");
    EXPECT_TRUE (VaultStore().listVaultedItems().empty());
}

TEST (VaultStore, APipeWithAJournalsNameIsNotedAtTheStart)
{
    putApplication ("app");
    const RecordPipe pipe (vaultFile ("app/.zorva-promotion-1.json"));
    const VaultStore store;

    EXPECT_EQ (store.getRecoveryNotes().joinIntoString ("\n"), note (invalidJournal, pipe.place));
    EXPECT_EQ (store.listVaultedItems().size(), 1u);
    EXPECT_TRUE (pipe.isStillThere());
}

//==============================================================================
TEST (RecoveryScanner, APipeWithTheNameOfAJournalsReplacementIsKeptAndTheJournalCounts)
{
    const PromotionScene scene;
    interrupt (scene, "activated");
    const RecordPipe pipe (in (scene.folder, ".zorva-promotion-1_temp5af3.json"));

    EXPECT_EQ (recoverScene (scene), attention (note (invalidJournal, pipe.place)));
    EXPECT_EQ (read (scene.target), "old");
    EXPECT_EQ (read (scene.metadata), "record");
    EXPECT_TRUE (pipe.isStillThere());
}

TEST (PromotionTransaction, ARecordThatIsAPipeIsNotSnapshotted)
{
    const PromotionScene scene (PromotionScene::withTarget);
    const auto records = freshFolder ("records");
    const RecordPipe pipe (in (records, "installed.json"));
    const auto before = scene.tree();
    PromotionTransaction promotion;
    juce::String error;

    EXPECT_FALSE (promotion.activate (scene.staged, scene.target, error, pipe.place));
    EXPECT_EQ (error, "Could not snapshot the current metadata record.");
    EXPECT_EQ (scene.tree(), before);
    EXPECT_TRUE (pipe.isStillThere());
    EXPECT_EQ (records.getNumberOfChildFiles (juce::File::findFilesAndDirectories), 1);
}
