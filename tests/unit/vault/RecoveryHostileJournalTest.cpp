#include "support/JournalBuilder.h"
#include "support/ManifestBuilder.h"
#include "support/PrivateMounts.h"
#include "support/RecoveryRun.h"
#include "support/Text.h"

#include <functional>
#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
/** A product folder in a Vault, with neighbours that a forged journal would like to reach. Every file says where it lies, and no
    name in the folder interests the leftover sweep. */
struct HostileScene
{
    HostileScene()
    {
        for (const char* name : { "Vault/product/setup.exe", "Vault/product/kept", "Vault/product/staged", "Vault/product/vault.json",
                                  "Vault/product/snapshot", "Vault/product/sub/deep", "Vault/other/precious", "precious", "records/installed.json",
                                  "records/snapshot" })
            write (in (top, name), name);

        for (auto* path : { &journal.staged, &journal.backup, &journal.metadataBackup })
            *path = juce::var();

        journal.staged = here ("staged");
        journal.backup = here ("kept");
        journal.metadataBackup = here ("snapshot");
    }

    juce::String here (const juce::String& name) const    { return JournalBuilder::pathIn (root, name); }
    juce::String above (const juce::String& name) const   { return JournalBuilder::pathIn (top, name); }

    juce::File top = freshFolder ("work"), root = in (top, "Vault/product"), record = in (root, "vault.json");
    JournalBuilder journal { root };
};

/** Ways to write a path that must not be followed, whichever key holds it. */
std::vector<juce::String> pathsThatEscape (const HostileScene& scene)
{
    return { scene.above ("precious"), scene.above ("Vault/other/precious"), scene.above ("Vault/product2"), scene.here ("sub/deep"),
             scene.here (""), scene.root.getParentDirectory().getFullPathName(), scene.top.getFullPathName(),
             scene.here (".."), scene.here ("."), scene.here ("sub/.."), scene.here ("sub/."), scene.here ("absent/.."), scene.here ("absent/."),
             scene.here ("../other/precious"), scene.here ("sub/../../other/precious"), scene.here ("../.."), scene.here ("setup.exe/.."),
             "setup.exe", "./setup.exe", "../precious", "sub/deep", "..", ".", "~", "~/precious", "~root", "~root/x",
             "C:\\Windows\\x", "\\\\server\\share\\x", "file:///x/y", " ", "5" };
}

/** The journal is kept with the note, and nothing anywhere changes, at two starts in a row. */
void expectRefused (const HostileScene& scene, const juce::String& what, const juce::File& approved)
{
    // These journals name the whole machine; where a mistake could reach it, they are not tried at all.
    ASSERT_EQ (PrivateMounts::problem(), "");

    const auto file = scene.journal.save();
    const auto before = treeOf (scene.top);

    for (int start = 0; start < 2; ++start)
    {
        EXPECT_EQ (recover (scene.root, approved), attention (note (escapedJournal, file))) << what;
        EXPECT_EQ (treeOf (scene.top), before) << what;
    }
}
}

TEST (RecoveryScanner, TheHostileScenesOwnJournalIsFollowed)
{
    const HostileScene scene;
    scene.journal.save();

    EXPECT_EQ (recover (scene.root, scene.record), inOrder());
    EXPECT_EQ (read (in (scene.root, "setup.exe")), "Vault/product/kept");
    EXPECT_EQ (read (scene.record), "Vault/product/snapshot");
    EXPECT_FALSE (isThere (in (scene.root, "staged")));
}

TEST (RecoveryScanner, AJournalWhosePathsEscapeIsKeptAndTouchesNothing)
{
    const std::pair<const char*, juce::var JournalBuilder::*> keys[]
    {
        { "target", &JournalBuilder::target }, { "staged", &JournalBuilder::staged }, { "backup", &JournalBuilder::backup },
        { "metadata", &JournalBuilder::metadata }, { "metadataBackup", &JournalBuilder::metadataBackup },
    };

    for (const auto& [name, key] : keys)
        for (const bool hadTarget : { true, false })
            for (const char* state : { "activated", "committed" })
            {
                HostileScene scene;
                scene.journal.hadTarget = hadTarget;
                scene.journal.state = state;

                for (const auto& path : pathsThatEscape (scene))
                {
                    scene.journal.*key = path;
                    expectRefused (scene, juce::String (name) + " \"" + path + "\" " + state, scene.record);
                }
            }
}

TEST (RecoveryScanner, AJournalWithoutAPathThatItNeedsIsKept)
{
    const std::pair<const char*, juce::var JournalBuilder::*> keys[]
    {
        { "target", &JournalBuilder::target }, { "staged", &JournalBuilder::staged }, { "backup", &JournalBuilder::backup },
        { "metadataBackup", &JournalBuilder::metadataBackup },
    };

    for (const auto& [name, key] : keys)
        for (const auto& value : { juce::var (""), juce::var(), juce::var (5), juce::var (true), list ({ "/x" }) })
        {
            HostileScene scene;
            scene.journal.*key = value;
            expectRefused (scene, juce::String (name) + " " + json (value), scene.record);
        }

    HostileScene scene;
    const auto file = write (scene.journal.file, "{}");
    EXPECT_EQ (recover (scene.root, scene.record), attention (note (escapedJournal, file))) << "an empty object";
}

TEST (RecoveryScanner, AJournalWithAnotherRecordThanTheApprovedOneIsKept)
{
    HostileScene scene;
    scene.journal.metadata = scene.above ("records/installed.json");
    scene.journal.metadataBackup = scene.above ("records/snapshot");
    expectRefused (scene, "another record", scene.record);
    expectRefused (scene, "a record where none is approved", juce::File());

    scene.journal.metadata = scene.here ("other.json");
    scene.journal.metadataBackup = scene.here ("snapshot");
    expectRefused (scene, "a neighbour of the record", scene.record);
}

TEST (RecoveryScanner, TheSnapshotLiesBesideTheRecord)
{
    HostileScene scene;
    scene.journal.metadata = scene.above ("records/installed.json");
    expectRefused (scene, "snapshot in the root, record elsewhere", in (scene.top, "records/installed.json"));

    scene.journal.metadataBackup = scene.above ("records/snapshot");
    scene.journal.save();
    EXPECT_EQ (recover (scene.root, in (scene.top, "records/installed.json")), inOrder());
    EXPECT_EQ (treeOf (in (scene.top, "records")), (Tree { { "installed.json", "file: records/snapshot" } }));
}

TEST (RecoveryScanner, ABadRecordIsNeverTakenForNone)
{
    for (const char* path : { "vault.json", "~", "~/vault.json", " ", ".", "C:vault.json" })
    {
        HostileScene scene;
        scene.journal.metadata = path;
        scene.journal.metadataBackup = "";
        expectRefused (scene, path, scene.record);
        expectRefused (scene, path, juce::File());
    }
}

TEST (RecoveryScanner, AJournalWithoutARecordLeavesTheRecordAlone)
{
    for (const bool existed : { true, false })
    {
        HostileScene scene;
        scene.journal.metadata = scene.journal.metadataBackup = "";
        scene.journal.metadataExisted = existed;
        scene.journal.save();

        EXPECT_EQ (recover (scene.root, scene.record), inOrder());
        EXPECT_EQ (read (scene.record), "Vault/product/vault.json");
        EXPECT_EQ (read (in (scene.root, "setup.exe")), "Vault/product/kept");
    }
}

TEST (RecoveryScanner, ASnapshotOfNoRecordIsKeptWhereverItLies)
{
    for (const char* state : { "activated", "committed" })
        for (const char* snapshot : { "precious", "Vault/other/precious", "Vault/product/sub", "Vault/product/snapshot", "Vault" })
        {
            HostileScene scene;
            scene.journal.state = state;
            scene.journal.metadata = "";
            scene.journal.metadataBackup = scene.above (snapshot);
            expectRefused (scene, juce::String (state) + " " + snapshot, scene.record);
            expectRefused (scene, juce::String (state) + " " + snapshot, juce::File());
        }
}

TEST (RecoveryScanner, TheRecordIsNotItsOwnSnapshot)
{
    for (const char* state : { "activated", "committed" })
    {
        HostileScene scene;
        scene.journal.state = state;
        scene.journal.metadataBackup = scene.journal.metadata;
        expectRefused (scene, state, scene.record);
    }
}

//==============================================================================
TEST (RecoveryScanner, AJournalThatNamesALinkIsKept)
{
    const std::pair<const char*, juce::var JournalBuilder::*> keys[]
    {
        { "target", &JournalBuilder::target }, { "staged", &JournalBuilder::staged }, { "backup", &JournalBuilder::backup },
        { "metadataBackup", &JournalBuilder::metadataBackup },
    };

    for (const auto& [name, key] : keys)
        for (const char* destination : { "../other", "../other/precious", "setup.exe", "sub", "nowhere" })
        {
            HostileScene scene;
            link (in (scene.root, "linked"), destination);
            scene.journal.*key = scene.here ("linked");
            const auto file = scene.journal.save();
            const auto before = treeOf (scene.top);

            EXPECT_EQ (recover (scene.root, scene.record), attention (note (escapedJournal, file))) << name << " to " << destination;
            EXPECT_EQ (treeOf (scene.top), before) << name << " to " << destination;
        }
}

TEST (RecoveryScanner, AJournalWhoseRecordIsALinkIsKept)
{
    for (const char* destination : { "../other/precious", "nowhere" })
    {
        HostileScene scene;
        ASSERT_TRUE (scene.record.deleteFile());
        link (scene.record, destination);
        expectRefused (scene, destination, scene.record);
    }
}

TEST (RecoveryScanner, AJournalThatLeadsThroughALinkIsKept)
{
    HostileScene scene;
    link (in (scene.root, "through"), "../other");
    scene.journal.target = scene.here ("through/precious");
    expectRefused (scene, "target", scene.record);

    HostileScene other;
    link (in (other.root, "back"), ".");
    other.journal.target = other.here ("back/setup.exe");
    expectRefused (other, "target in the root, through a link", other.record);
}

TEST (RecoveryScanner, NamesThatOnlyLookLikeHomesAreOrdinaryNames)
{
    HostileScene scene;
    const juce::String name ("~root");
    write (in (scene.root, name), "new");
    scene.journal.target = scene.here (name);
    scene.journal.save();

    EXPECT_EQ (recover (scene.root, scene.record), inOrder());
    EXPECT_EQ (read (in (scene.root, name)), "Vault/product/kept");
}
