#include "support/PrivateMounts.h"
#include "support/RecoveryRun.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
RecoveryRun sweep (const juce::File& root, bool sweepAll = true)
{
    juce::StringArray notes;
    const bool ok = RecoveryScanner::sweepLeftovers (root, notes, sweepAll);
    return { ok, notes };
}

/** A folder of these files, each with its own name for content. */
juce::File folderOf (const juce::StringArray& names)
{
    const auto root = freshFolder ("vault");

    for (const auto& name : names)
        write (in (root, name), name);

    return root;
}

Tree filesOf (const juce::StringArray& names)
{
    Tree tree;

    for (const auto& name : names)
        tree[name.toStdString()] = "file: " + name.toStdString();

    return tree;
}
}

TEST (RecoveryScanner, TheSweepActsByTheFirstRuleThatANameMatches)
{
    const struct { const char* name; Tree after; const char* note; } cases[]
    {
        // kept without a word
        { "setup.exe", filesOf ({ "setup.exe" }), nullptr },
        { ".zorva-promotion-1", filesOf ({ ".zorva-promotion-1" }), nullptr },
        { ".zorva-promotion-1.json", filesOf ({ ".zorva-promotion-1.json" }), nullptr },
        { ".zorva-promotion-x.part", filesOf ({ ".zorva-promotion-x.part" }), nullptr },
        { ".zorva-promotion-x.backup-1", filesOf ({ ".zorva-promotion-x.backup-1" }), nullptr },
        { ".backup-1", filesOf ({ ".backup-1" }), nullptr },
        { ".rejected-1", filesOf ({ ".rejected-1" }), nullptr },
        { "x.BACKUP-1", filesOf ({ "x.BACKUP-1" }), nullptr },
        { "x.Rejected-1", filesOf ({ "x.Rejected-1" }), nullptr },
        { "x.INSTALLING-1", filesOf ({ "x.INSTALLING-1" }), nullptr },
        { "x.PART", filesOf ({ "x.PART" }), nullptr },
        { "x.backup", filesOf ({ "x.backup" }), nullptr },
        { "x.part1", filesOf ({ "x.part1" }), nullptr },
        { "xbackup-1", filesOf ({ "xbackup-1" }), nullptr },
        { "installing-1", filesOf ({ "installing-1" }), nullptr },

        // kept for review
        { "vault.json.promotion-backup-1", filesOf ({ "vault.json.promotion-backup-1" }), snapshotKept },
        { ".promotion-backup-1", filesOf ({ ".promotion-backup-1" }), snapshotKept },
        { "x.promotion-backup-1.part", filesOf ({ "x.promotion-backup-1.part" }), snapshotKept },
        { "x.promotion-backup-1.backup-2", filesOf ({ "x.promotion-backup-1.backup-2" }), snapshotKept },

        // put back
        { "setup.exe.backup-1", { { "setup.exe", "file: setup.exe.backup-1" } }, nullptr },
        { "setup.exe.backup-", { { "setup.exe", "file: setup.exe.backup-" } }, nullptr },
        { "x.part.backup-1", { { "x.part", "file: x.part.backup-1" } }, nullptr },
        { "x.installing-1.backup-2", { { "x.installing-1", "file: x.installing-1.backup-2" } }, nullptr },
        { "x.backup-1.part", { { "x", "file: x.backup-1.part" } }, nullptr },
        { "x.backup-1.backup-2", { { "x", "file: x.backup-1.backup-2" } }, nullptr },
        { "x.rejected-1.backup-2", { { "x.rejected-1", "file: x.rejected-1.backup-2" } }, nullptr },
        { "x.rejected-recovery-1", { { "x", "file: x.rejected-recovery-1" } }, nullptr },
        { "x.rejected-1.rejected-2", { { "x", "file: x.rejected-1.rejected-2" } }, nullptr },
        { "x.rejected-1.part", { { "x", "file: x.rejected-1.part" } }, nullptr },
        { "~root.backup-1", { { "~root", "file: ~root.backup-1" } }, nullptr },
        { "~.rejected-1", { { "~", "file: ~.rejected-1" } }, nullptr },

        // removed
        { "x.installing-1", {}, nullptr },
        { ".installing-1", {}, nullptr },
        { "x.installing-1.part", {}, nullptr },
        { "setup.exe.part", {}, nullptr },
        { ".part", {}, nullptr },
        { ".backup-1.part", {}, nullptr },
        { ".rejected-1.installing-2", {}, nullptr },
    };

    for (const auto& test : cases)
    {
        SCOPED_TRACE (test.name);
        const auto root = folderOf (juce::StringArray (test.name));
        EXPECT_EQ (sweep (root), test.note != nullptr ? inOrder (note (test.note, in (root, test.name))) : inOrder());
        EXPECT_EQ (treeOf (root), test.after);
    }
}

TEST (RecoveryScanner, TheSweepActsOnFoldersAsOnFiles)
{
    const auto root = folderOf ({ "zorva.backup-1/bin/app.exe", "other.rejected-recovery-1/file", "x.installing-1/deep/er/file", "y.part/file" });

    EXPECT_EQ (sweep (root), inOrder());
    EXPECT_EQ (treeOf (root), (Tree { { "zorva", "folder" }, { "zorva/bin", "folder" }, { "zorva/bin/app.exe", "file: zorva.backup-1/bin/app.exe" },
                                      { "other", "folder" }, { "other/file", "file: other.rejected-recovery-1/file" } }));
}

TEST (RecoveryScanner, ABackupBesideALivePayloadIsKeptAndReported)
{
    const auto root = folderOf ({ "x.exe", "x.exe.backup-abc" });
    const auto before = treeOf (root);

    for (int start = 0; start < 2; ++start)
    {
        EXPECT_EQ (sweep (root), inOrder (note (backupKept, in (root, "x.exe.backup-abc"))));
        EXPECT_EQ (treeOf (root), before);
    }
}

TEST (RecoveryScanner, AFolderCountsAsALivePayload)
{
    const auto root = folderOf ({ "zorva/app.exe", "zorva.backup-1/app.exe" });
    const auto before = treeOf (root);

    EXPECT_EQ (sweep (root), inOrder (note (backupKept, in (root, "zorva.backup-1"))));
    EXPECT_EQ (treeOf (root), before);
}

TEST (RecoveryScanner, ARejectedPayloadBesideALiveOneIsDeletedWithoutANote)
{
    const auto root = folderOf ({ "x", "x.rejected-recovery-abc", "y/file", "y.rejected-1/file" });

    EXPECT_EQ (sweep (root), inOrder());
    EXPECT_EQ (treeOf (root), (Tree { { "x", "file: x" }, { "y", "folder" }, { "y/file", "file: y/file" } }));
}

TEST (RecoveryScanner, OfTwoBackupsOneComesBackAndOneIsReported)
{
    const auto root = folderOf ({ "x.backup-1", "x.backup-2" });
    const auto run = sweep (root);
    auto tree = treeOf (root);

    EXPECT_TRUE (run.ok);
    ASSERT_EQ (run.notes.size(), 1);
    EXPECT_TRUE (run.notes[0] == note (backupKept, in (root, "x.backup-1")) || run.notes[0] == note (backupKept, in (root, "x.backup-2")));
    EXPECT_EQ (tree.size(), 2u);
    EXPECT_TRUE (isThere (in (root, "x")));
}

TEST (RecoveryScanner, ALeadingNameOfDotsIsTheFolderItselfAndExists)
{
    const auto root = folderOf ({ "..backup-1", "...backup-2", "kept" });
    const auto before = treeOf (root), above = treeOf (root.getParentDirectory());

    EXPECT_EQ (sweep (root), inOrder (note (backupKept, in (root, "..backup-1")), note (backupKept, in (root, "...backup-2"))));
    EXPECT_EQ (treeOf (root), before);
    EXPECT_EQ (treeOf (root.getParentDirectory()), above);
}

//==============================================================================
TEST (RecoveryScanner, WithoutSweepAllOnlyTheHubsOwnNamesAreSwept)
{
    const auto kept = juce::StringArray { "x.backup-1", "y.rejected-1", "z.installing-1", "setup.exe.part", ".zorva-hub-a.part", ".zorva-hub-b",
                                          "x.zorva-hub-c.installing-1", ".ZORVA-HUB-d.installing-1" };
    auto names = kept;
    names.addArray ({ ".zorva-hub-e.installing-1", ".zorva-hub-f.rejected-1", ".zorva-hub-f", ".zorva-hub-g.backup-1", "vault.json.promotion-backup-1" });
    const auto root = folderOf (names);

    EXPECT_EQ (sweep (root, false), inOrder (note (snapshotKept, in (root, "vault.json.promotion-backup-1"))));
    auto expected = filesOf (kept);
    expected[".zorva-hub-f"] = "file: .zorva-hub-f";
    expected[".zorva-hub-g"] = "file: .zorva-hub-g.backup-1";
    expected["vault.json.promotion-backup-1"] = "file: vault.json.promotion-backup-1";
    EXPECT_EQ (treeOf (root), expected);
}

TEST (RecoveryScanner, ALinkLowersTheResultWithoutANoteAndStays)
{
    const auto outside = freshFolder ("outside");
    write (in (outside, "precious"), "x");
    const auto outsideBefore = treeOf (outside);

    for (const char* name : { "junction", "setup.exe", "x.part", "x.installing-1", "x.backup-1", "x.rejected-1", "vault.json.promotion-backup-1",
                              ".zorva-promotion-1.txt" })
        for (const auto& destination : { outside.getFullPathName(), in (outside, "precious").getFullPathName(), juce::String ("nowhere"), juce::String (name) })
        {
            const auto root = folderOf ({ "y.part" });
            link (in (root, name), destination);

            EXPECT_EQ (sweep (root), attention()) << name << " to " << destination;
            EXPECT_EQ (treeOf (root), (Tree { { name, "link: " + destination.toStdString() } })) << "the rest is swept all the same";
            EXPECT_EQ (treeOf (outside), outsideBefore);
        }
}

TEST (RecoveryScanner, LinksInARemovedFolderAreNotFollowed)
{
    const auto outside = freshFolder ("outside");
    write (in (outside, "precious"), "x");
    const auto root = folderOf ({ "x.installing-1/file" });
    link (in (root, "x.installing-1/out"), outside.getFullPathName());
    link (in (root, "x.installing-1/self"), ".");

    EXPECT_EQ (sweep (root), inOrder());
    EXPECT_EQ (treeOf (root), Tree());
    EXPECT_EQ (treeOf (outside), (Tree { { "precious", "file: x" } }));
}

TEST (RecoveryScanner, WhatCannotBeMovedOrRemovedLowersTheResultWithoutANote)
{
    const struct { const char* held; juce::StringArray others; } cases[]
    {
        { "x.backup-1", {} }, { "x.rejected-1", {} }, { "x.rejected-1", { "x" } }, { "x.installing-1", {} }, { "x.part", {} },
    };

    for (const auto& test : cases)
    {
        SCOPED_TRACE (test.held);
        auto names = test.others;
        names.add (test.held);
        const auto root = folderOf (names);
        const auto before = treeOf (root);
        const BusyPath busy (in (root, test.held));

        EXPECT_EQ (sweep (root), attention());
        EXPECT_EQ (treeOf (root), before);
    }
}

TEST (RecoveryScanner, APartialDownloadIsRemovedAtEachScan)
{
    const auto root = folderOf ({ "setup.exe" });

    for (int scan = 0; scan < 2; ++scan)
    {
        write (in (root, "setup.exe.part"), "partial");
        EXPECT_EQ (recover (root, in (root, "vault.json")), inOrder());
        EXPECT_EQ (treeOf (root), filesOf ({ "setup.exe" }));
    }
}

TEST (RecoveryScanner, ASecondSweepChangesNothingMore)
{
    const auto root = folderOf ({ "a.backup-1", "b", "b.backup-1", "c.rejected-1", "d.installing-1/x", "e.part", "vault.json.promotion-backup-1",
                                  ".zorva-promotion-1.txt", utf8 ("Größe 音.backup-1") });
    sweep (root);
    const auto once = treeOf (root);

    EXPECT_EQ (sweep (root), inOrder (note (backupKept, in (root, "b.backup-1")), note (snapshotKept, in (root, "vault.json.promotion-backup-1"))));
    EXPECT_EQ (treeOf (root), once);
    EXPECT_TRUE (isThere (in (root, utf8 ("Größe 音"))));
}
