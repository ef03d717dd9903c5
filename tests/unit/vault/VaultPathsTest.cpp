#include "app/HubPaths.h"
#include "support/Files.h"
#include "support/PrivateMounts.h"
#include "support/VaultItems.h"
#include "vault/VaultStore.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
const char* const unsafeIdentities[] { "", ".", "..", "../other", "a/b", "a\\b", "-a", "a-", "a..b", "a b", " a", "a ", "a:b", "con", "LPT1.pack", "~root" };

std::string pathOf (const juce::File& file)
{
    return file.getFullPathName().toStdString();
}
}

//==============================================================================
TEST (VaultStore, TheFolderOfAProductIsTheRootsChildOfExactlyThatName)
{
    for (const char* id : { "zorva-daw", "Zorva-DAW", "pack_1.2", "x.part", "7" })
        EXPECT_EQ (pathOf (VaultStore::vaultFolderFor (id)), pathOf (vaultFile (id)));
}

TEST (VaultStore, AskingForAFolderMakesTheRootAndNothingElse)
{
    ASSERT_FALSE (isThere (HubPaths::vaultDirectory()));
    VaultStore::vaultFolderFor ("app");

    EXPECT_EQ (treeOf (HubPaths::root()), (Tree { { "Vault", "folder" } }));
}

TEST (VaultStore, AnUnsafeIdentityHasNoFolderAndMakesNothing)
{
    for (const char* id : unsafeIdentities)
    {
        EXPECT_EQ (pathOf (VaultStore::vaultFolderFor (id)), "") << id;
        EXPECT_EQ (pathOf (VaultStore::vaultRecordFileFor (id)), "") << id;
        EXPECT_EQ (pathOf (VaultStore::trustedInstallerFor (id)), "") << id;
    }

    EXPECT_FALSE (isThere (HubPaths::root()));
}

TEST (VaultStore, ARootBeneathALinkGivesNoFolderAndMakesNothing)
{
    const auto elsewhere = freshFolder ("elsewhere");
    link (HubPaths::root(), elsewhere.getFullPathName());

    EXPECT_EQ (pathOf (VaultStore::vaultFolderFor ("app")), "");
    EXPECT_EQ (treeOf (elsewhere), Tree());
}

TEST (VaultStore, ARootThatIsALinkGivesNoFolder)
{
    const auto elsewhere = freshFolder ("elsewhere");
    link (HubPaths::vaultDirectory(), elsewhere.getFullPathName());

    EXPECT_EQ (pathOf (VaultStore::vaultFolderFor ("app")), "");
    EXPECT_EQ (treeOf (elsewhere), Tree());
}

TEST (VaultStore, ARootThatIsAFileGivesNoFolder)
{
    write (HubPaths::vaultDirectory(), "a file");

    EXPECT_EQ (pathOf (VaultStore::vaultFolderFor ("app")), "");
    EXPECT_EQ (read (HubPaths::vaultDirectory()), "a file");
}

TEST (VaultStore, ARootThatCannotBeMadeGivesNoFolder)
{
    ASSERT_TRUE (HubPaths::root().createDirectory().wasOk());
    const ReadOnlyFolder shut (HubPaths::root());

    EXPECT_EQ (pathOf (VaultStore::vaultFolderFor ("app")), "");
}

TEST (VaultStore, AFolderThatDiffersInCaseOnlyTakesTheNameAway)
{
    ASSERT_TRUE (vaultFile ("Foo").createDirectory().wasOk());

    EXPECT_EQ (pathOf (VaultStore::vaultFolderFor ("foo")), "");
    EXPECT_EQ (pathOf (VaultStore::vaultFolderFor ("FOO")), "");
    EXPECT_EQ (pathOf (VaultStore::vaultFolderFor ("Foo")), pathOf (vaultFile ("Foo")));
    EXPECT_EQ (pathOf (VaultStore::vaultFolderFor ("fo")), pathOf (vaultFile ("fo")));
}

TEST (VaultStore, RefusesALinkAsAProductFolder)
{
    const auto elsewhere = freshFolder ("elsewhere");
    link (vaultFile ("app"), elsewhere.getFullPathName());
    link (vaultFile ("dangling"), "/nowhere/at/all");

    for (const char* id : { "app", "dangling" })
    {
        EXPECT_EQ (pathOf (VaultStore::vaultFolderFor (id)), "") << id;
        EXPECT_EQ (pathOf (VaultStore::vaultRecordFileFor (id)), "") << id;
    }
}

TEST (VaultStore, TheRecordOfAProductIsVaultJsonInItsFolder)
{
    EXPECT_EQ (pathOf (VaultStore::vaultRecordFileFor ("app")), pathOf (vaultFile ("app/vault.json")));
    EXPECT_FALSE (isThere (vaultFile ("app")));
}

//==============================================================================
TEST (VaultStore, ACaseCollisionIsADifferentSpellingOfTheSameName)
{
    const auto parent = freshFolder ("parent");
    ASSERT_TRUE (in (parent, "Folder").createDirectory().wasOk());
    write (in (parent, "File.txt"), "x");
    write (in (parent, "nested/Inner"), "x");
    write (in (parent, "both"), "x");
    write (in (parent, "BOTH"), "x");
    write (in (parent, "~Odd"), "x");

    const struct { const char* name; bool collides; } rows[]
    {
        { "Folder", false }, { "folder", true }, { "FOLDER", true },
        { "File.txt", false }, { "file.TXT", true }, { "file", false },
        { "inner", false }, { "Inner", false },             // only the parent's own entries count
        { "both", true }, { "BOTH", true },                 // the other spelling is there as well
        { "unheard-of", false },
        { "~odd", false }, { "", false }, { "..", false },  // no identities
    };

    for (const auto& row : rows)
        EXPECT_EQ (VaultStore::hasCaseCollision (parent, row.name), row.collides) << row.name;
}

TEST (VaultStore, NothingCollidesWhereThereIsNoDirectory)
{
    const auto parent = freshFolder ("parent");

    EXPECT_FALSE (VaultStore::hasCaseCollision (in (parent, "missing"), "a"));
    EXPECT_FALSE (VaultStore::hasCaseCollision (write (in (parent, "A"), "x"), "a"));
}
