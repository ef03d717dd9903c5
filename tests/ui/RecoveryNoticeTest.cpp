#include "ui/RecoveryNotice.h"

#include <gtest/gtest.h>

namespace
{
const char* const opening = "ZORVA Hub protected the last-good product state during startup. The following recovery items need your attention:\n\n";
}

TEST (RecoveryNotice, ListsTheVaultsNotesBeforeThoseOfTheInstalls)
{
    const auto notice = makeRecoveryNotice ({ "one", "two" }, { "three" });

    ASSERT_TRUE (notice.has_value());
    EXPECT_EQ (notice->statusLine, "Recovery attention required");
    EXPECT_EQ (notice->title, "ZORVA Hub Recovery Notice");
    EXPECT_EQ (notice->body, juce::String (opening) + "Vault: one\nVault: two\nInstall: three");
}

TEST (RecoveryNotice, EitherListAloneIsEnough)
{
    EXPECT_EQ (makeRecoveryNotice ({ "one" }, {})->body, juce::String (opening) + "Vault: one");
    EXPECT_EQ (makeRecoveryNotice ({}, { "one" })->body, juce::String (opening) + "Install: one");
}

TEST (RecoveryNotice, NotesAreTrimmedAndBlankOnesDropped)
{
    EXPECT_EQ (makeRecoveryNotice ({ "  one \n", " ", "" }, { "\t", " two" })->body, juce::String (opening) + "Vault: one\nInstall: two");
}

TEST (RecoveryNotice, BlankNotesGiveNoNotice)
{
    EXPECT_FALSE (makeRecoveryNotice ({}, {}).has_value());
    EXPECT_FALSE (makeRecoveryNotice ({ "   " }, {}).has_value());
    EXPECT_FALSE (makeRecoveryNotice ({ "", " \t\n" }, { " ", "\r\n" }).has_value());
}
