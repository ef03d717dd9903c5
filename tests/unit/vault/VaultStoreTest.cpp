#include "vault/VaultStore.h"
#include "app/HubPaths.h"
#include "support/Files.h"
#include "support/LogCapture.h"
#include "support/ManifestBuilder.h"
#include "support/PrivateMounts.h"
#include "support/VaultItems.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
const juce::String token ("0123456789abcdef0123456789abcdef");

/** The journal of a promotion of setup.exe in a product's folder, with another record than its vault.json if wanted. */
juce::File putJournal (const juce::String& id, const juce::String& state, const juce::File& metadata)
{
    const auto folder = vaultFile (id).getFullPathName() + "/";
    juce::DynamicObject::Ptr journal = new juce::DynamicObject();
    journal->setProperty ("version", 1);
    journal->setProperty ("state", state);
    journal->setProperty ("staged", folder + "setup.exe.part");
    journal->setProperty ("target", folder + "setup.exe");
    journal->setProperty ("backup", folder + "setup.exe.backup-" + token);
    journal->setProperty ("hadTarget", true);
    journal->setProperty ("metadata", metadata.getFullPathName());
    journal->setProperty ("metadataBackup", metadata.getFullPathName() + ".promotion-backup-" + token);
    journal->setProperty ("metadataExisted", true);
    return write (vaultFile (id + "/.zorva-promotion-" + token + ".json"), json (journal.get()));
}

/** A product whose new installer and record stand while the old ones are kept, as a crash before the end leaves it. */
void putInterruptedUpdate (const juce::String& id)
{
    write (vaultFile (id + "/setup.exe"), "new");
    write (vaultFile (id + "/setup.exe.backup-" + token), "old");
    write (vaultFile (id + "/vault.json"), "new record");
    write (vaultFile (id + "/vault.json.promotion-backup-" + token), "old record");
}

std::string joined (const juce::StringArray& lines)
{
    return lines.joinIntoString ("\n").toStdString();
}
}

//==============================================================================
TEST (VaultStore, MakesItsRoot)
{
    const VaultStore store;
    EXPECT_EQ (treeOf (HubPaths::root()), (Tree { { "Vault", "folder" } }));
    EXPECT_EQ (joined (store.getRecoveryNotes()), "");
}

TEST (VaultStore, ARootBeneathALinkIsNotTrusted)
{
    const auto elsewhere = freshFolder ("elsewhere");
    write (in (elsewhere, "Vault/app/setup.exe.part"), "x");
    write (in (elsewhere, "Vault/app/setup.exe"), "x");
    write (in (elsewhere, "Vault/app/vault.json"), json (vaultRecordOf (applicationOf ("app", "1.0.0", "x"), "setup.exe", 1)));
    const auto before = treeOf (elsewhere);
    link (HubPaths::root(), elsewhere.getFullPathName());

    VaultStore store;
    EXPECT_EQ (store.freeBytes(), 0);
    EXPECT_EQ (store.listVaultedItems().size(), (size_t) 0);
    store.deleteFromVault ("app");
    EXPECT_EQ (treeOf (elsewhere), before);
}

TEST (VaultStore, ARootThatIsAFileIsNotTrusted)
{
    write (HubPaths::vaultDirectory(), "a file");

    const VaultStore store;
    EXPECT_EQ (store.freeBytes(), 0);
    EXPECT_EQ (store.listVaultedItems().size(), (size_t) 0);
    EXPECT_EQ (read (HubPaths::vaultDirectory()), "a file");
}

TEST (VaultStore, ARootThatCannotBeMadeIsNotTrusted)
{
    ASSERT_TRUE (HubPaths::root().createDirectory().wasOk());
    const ReadOnlyFolder shut (HubPaths::root());

    const VaultStore store;
    EXPECT_EQ (store.freeBytes(), 0);
    EXPECT_EQ (store.listVaultedItems().size(), (size_t) 0);
}

TEST (VaultStore, FreeBytesAreThoseOfTheVaultsVolume)
{
    ASSERT_TRUE (HubPaths::vaultDirectory().createDirectory().wasOk());
    const SmallDisk disk (HubPaths::vaultDirectory(), 10);

    EXPECT_EQ (VaultStore().freeBytes(), 4 * 1024 * 1024);
}

//==============================================================================
TEST (VaultStore, ConstructionUndoesAnInterruptedUpdate)
{
    for (const char* state : { "prepared", "backup_moved", "activated", "", "something else" })
    {
        putInterruptedUpdate ("app");
        putJournal ("app", state, vaultFile ("app/vault.json"));

        const VaultStore store;
        EXPECT_EQ (joined (store.getRecoveryNotes()), "") << state;
        EXPECT_EQ (treeOf (vaultFile ("app")), (Tree { { "setup.exe", "file: old" }, { "vault.json", "file: old record" } })) << state;
    }
}

TEST (VaultStore, ConstructionFinishesACommittedUpdate)
{
    putInterruptedUpdate ("app");
    putJournal ("app", "committed", vaultFile ("app/vault.json"));

    const VaultStore store;
    EXPECT_EQ (joined (store.getRecoveryNotes()), "");
    EXPECT_EQ (treeOf (vaultFile ("app")), (Tree { { "setup.exe", "file: new" }, { "vault.json", "file: new record" } }));
}

TEST (VaultStore, ConstructionRefusesAJournalThatNamesAnotherRecord)
{
    const auto other = write (HubPaths::installRecordFile(), "not the Vault's");
    write (in (HubPaths::root(), "installed.json.promotion-backup-" + token), "nor this");
    putInterruptedUpdate ("app");
    const auto journal = putJournal ("app", "activated", other);

    const LogCapture log;
    const VaultStore store;
    const auto kept = vaultFile ("app").getFullPathName();
    const auto notes = "Promotion journal escaped its approved roots and was retained: " + journal.getFullPathName()
                       + "\nLast-good backup retained for review: " + kept + "/setup.exe.backup-" + token
                       + "\nMetadata backup without a journal was retained for review: " + kept + "/vault.json.promotion-backup-" + token;

    auto sorted = store.getRecoveryNotes();
    sorted.sort (false);
    auto expected = juce::StringArray::fromLines (notes);
    expected.sort (false);
    EXPECT_EQ (joined (sorted), joined (expected));
    EXPECT_EQ (read (other), "not the Vault's");
    EXPECT_EQ (read (vaultFile ("app/setup.exe")), "new");
    EXPECT_EQ (read (journal).empty(), false);
}

TEST (VaultStore, WritesEveryNoteToTheLog)
{
    const auto first = write (vaultFile ("app/vault.json.promotion-backup-" + token), "x");
    const auto second = write (vaultFile ("other/.zorva-promotion-" + token + ".json"), "");

    const LogCapture log;
    const VaultStore store;
    auto notes = store.getRecoveryNotes();
    ASSERT_EQ (notes.size(), 2);

    EXPECT_EQ (joined (log.lines()), ("[VAULT RECOVERY] " + notes[0] + "\n[VAULT RECOVERY] " + notes[1]).toStdString());
    notes.sort (false);
    EXPECT_EQ (joined (notes), ("Invalid promotion journal retained: " + second.getFullPathName()
                                + "\nMetadata backup without a journal was retained for review: " + first.getFullPathName()).toStdString());
}

TEST (VaultStore, RecoversProductFoldersOnly)
{
    write (vaultFile ("app/setup.exe.part"), "x");
    write (vaultFile ("app/deeper/setup.exe.part"), "x");
    write (vaultFile ("not safe/setup.exe.part"), "x");
    write (vaultFile ("top.part"), "x");
    const auto elsewhere = freshFolder ("elsewhere");
    write (in (elsewhere, "setup.exe.part"), "x");
    link (vaultFile ("linked"), elsewhere.getFullPathName());

    const VaultStore store;
    EXPECT_EQ (treeOf (HubPaths::vaultDirectory()),
               (Tree { { "app", "folder" }, { "app/deeper", "folder" }, { "app/deeper/setup.exe.part", "file: x" },
                       { "linked", "link: " + elsewhere.getFullPathName().toStdString() },
                       { "not safe", "folder" }, { "not safe/setup.exe.part", "file: x" }, { "top.part", "file: x" } }));
    EXPECT_EQ (read (in (elsewhere, "setup.exe.part")), "x");
    EXPECT_EQ (joined (store.getRecoveryNotes()), "");
}

//==============================================================================
TEST (VaultStore, DeletingRemovesTheProductsFolderWithItsJournal)
{
    putInVault (applicationOf ("app", "1.0.0", "x"), "setup.exe", "x");
    putInVault (applicationOf ("other", "1.0.0", "x"), "setup.exe", "x");
    write (vaultFile ("app/.zorva-promotion-" + token + ".json"), "");
    const auto other = treeOf (vaultFile ("other"));

    VaultStore store;
    store.deleteFromVault ("app");
    EXPECT_FALSE (isThere (vaultFile ("app")));
    EXPECT_EQ (treeOf (vaultFile ("other")), other);
}

TEST (VaultStore, DeletingWhatIsNotThereRemovesNothing)
{
    putInVault (applicationOf ("app", "1.0.0", "x"), "setup.exe", "x");
    putInVault (applicationOf ("Cased", "1.0.0", "x"), "setup.exe", "x");
    write (HubPaths::settingsFile(), "{}");
    const auto outside = write (in (freshFolder ("outside"), "kept"), "x").getParentDirectory();
    VaultStore store;
    const auto before = treeOf (HubPaths::root());

    for (const auto& id : juce::StringArray { "unheard-of", "cased", "", ".", "..", "../Vault", "app/", "app/setup.exe", "~", "*", outside.getFullPathName() })
        store.deleteFromVault (id);

    EXPECT_EQ (treeOf (HubPaths::root()), before);
    EXPECT_EQ (read (in (outside, "kept")), "x");
}

TEST (VaultStore, DeletingFollowsNoLinks)
{
    const auto elsewhere = freshFolder ("elsewhere");
    write (in (elsewhere, "kept"), "x");
    VaultStore store;

    link (vaultFile ("linked"), elsewhere.getFullPathName());
    store.deleteFromVault ("linked");
    EXPECT_TRUE (isThere (vaultFile ("linked")));

    putInVault (applicationOf ("app", "1.0.0", "x"), "setup.exe", "x");
    link (vaultFile ("app/link"), elsewhere.getFullPathName());
    store.deleteFromVault ("app");
    EXPECT_FALSE (isThere (vaultFile ("app")));
    EXPECT_EQ (treeOf (elsewhere), (Tree { { "kept", "file: x" } }));
}

TEST (VaultStore, DeletingRemovesAPlainFileInTheFoldersPlace)
{
    write (vaultFile ("app"), "x");
    VaultStore store;
    store.deleteFromVault ("app");
    EXPECT_FALSE (isThere (vaultFile ("app")));
}

TEST (VaultStore, DeletingIsRefusedOnceTheRootLeadsElsewhere)
{
    putInVault (applicationOf ("app", "1.0.0", "x"), "setup.exe", "x");
    VaultStore store;
    const auto moved = in (freshFolder ("elsewhere"), "Vault");
    ASSERT_TRUE (HubPaths::vaultDirectory().moveFileTo (moved));
    link (HubPaths::vaultDirectory(), moved.getFullPathName());

    store.deleteFromVault ("app");
    EXPECT_TRUE (isThere (in (moved, "app/setup.exe")));
}
