#include "support/Files.h"
#include "ui/OverflowMenu.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
using State = ProductCardState;

/** The menu as text: id, text, and whether the entry can be chosen. */
using Lines = std::vector<std::string>;

Lines linesOf (const juce::PopupMenu& menu)
{
    Lines lines;

    for (juce::PopupMenu::MenuItemIterator entries (menu); entries.next();)
    {
        const auto& item = entries.getItem();
        lines.push_back (item.isSeparator ? "---"
                                          : std::to_string (item.itemID) + " " + item.text.toStdString() + (item.isEnabled ? "" : " (greyed)"));
    }

    return lines;
}

ProductCardModel modelIn (State state, const juce::File& vaultFile)
{
    ProductCardModel model;
    model.state = state;
    model.vaultFile = vaultFile;
    return model;
}

juce::File somethingInTheVault()    { return write (in (freshFolder ("vault"), "setup.exe"), "x"); }
}

TEST (OverflowMenu, OffersTheThreeEntriesInTheirOrder)
{
    const auto installer = somethingInTheVault();

    for (const auto state : { State::notInstalled, State::cached, State::installing, State::installed, State::updateAvailable })
        EXPECT_EQ (linesOf (overflowMenuFor (modelIn (state, installer))),
                   (Lines { "1 Show in Explorer", "2 Uninstall (not available) (greyed)", "---", "3 Delete from Vault" })) << (int) state;
}

TEST (OverflowMenu, WithoutAnInstallerThereIsNothingToDelete)
{
    const auto folder = freshFolder ("vault");

    for (const auto& file : { juce::File(), in (folder, "absent.exe"), folder })
        for (const auto state : { State::notInstalled, State::cached, State::installing, State::installed, State::updateAvailable })
            EXPECT_EQ (linesOf (overflowMenuFor (modelIn (state, file))),
                       (Lines { "1 Show in Explorer", "2 Uninstall (not available) (greyed)", "---", "3 Delete from Vault (greyed)" }));
}

TEST (OverflowMenu, DuringADownloadDeletionIsGreyedAndTheDownloadCanBeCancelled)
{
    for (const auto& file : { juce::File(), somethingInTheVault() })
        EXPECT_EQ (linesOf (overflowMenuFor (modelIn (State::downloading, file))),
                   (Lines { "1 Show in Explorer", "2 Uninstall (not available) (greyed)", "4 Cancel Download", "---",
                                        "3 Delete from Vault (greyed)" }));
}

TEST (OverflowMenu, ThreeResultsSendAWord)
{
    EXPECT_EQ (overflowActionFor (1), "reveal");
    EXPECT_EQ (overflowActionFor (3), "delete-vault");
    EXPECT_EQ (overflowActionFor (4), "cancel");

    for (const int nothing : { 0, 2, 5, -1, 1000 })
        EXPECT_EQ (overflowActionFor (nothing), "") << nothing;
}
