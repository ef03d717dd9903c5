#include "platform/CaseFold.h"
#include "platform/windows/WindowsHeaders.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <string>

namespace
{
juce::String charText (wchar_t c)    { return juce::String::charToString ((juce::juce_wchar) c); }

/** Whether the file system would take the two for one name. */
bool isOneName (const juce::String& a, const juce::String& b)
{
    const std::wstring first (a.toWideCharPointer()), second (b.toWideCharPointer());
    return ::CompareStringOrdinal (first.data(), (int) first.size(), second.data(), (int) second.size(), TRUE) == CSTR_EQUAL;
}

/** The other letter that this rule gives; the same when there is none. */
wchar_t replacedBy (DWORD rule, wchar_t c)
{
    wchar_t replaced = c;
    return ::LCMapStringEx (LOCALE_NAME_INVARIANT, rule, &c, 1, &replaced, 1, nullptr, nullptr, 0) == 1 ? replaced : c;
}

bool isHalfOfAPair (wchar_t c)    { return c >= 0xd800 && c <= 0xdfff; }
}

TEST (CaseFold, NamesThatTheFileSystemTakesForOneFoldToOne)
{
    int pairs = 0;

    for (wchar_t c = 1; c < 0xffff; ++c)
    {
        if (isHalfOfAPair (c))
            continue;

        for (const auto rule : { LCMAP_UPPERCASE, LCMAP_LOWERCASE })
        {
            const auto other = replacedBy ((DWORD) rule, c);

            if (other == c || ! isOneName (charText (c), charText (other)))
                continue;

            ++pairs;
            ASSERT_EQ (platform::foldCase (charText (c)), platform::foldCase (charText (other))) << std::hex << (int) c << " and " << (int) other;
        }
    }

    EXPECT_GT (pairs, 1500) << "the system's table is not that small";
}

TEST (CaseFold, LettersWithOneUpperCaseFoldToOne)
{
    const struct { const char* a; const char* b; } cases[]
    {
        { "name", "NAME" }, { "Größe", "GRÖßE" }, { "ΟΔΟΣ", "οδοσ" }, { "Жук", "ЖУК" }, { "ÿ", "Ÿ" }, { "ｍ", "Ｍ" },
    };

    for (const auto& test : cases)
    {
        EXPECT_TRUE (isOneName (utf8 (test.a), utf8 (test.b))) << test.a << " and " << test.b;
        EXPECT_EQ (platform::foldCase (utf8 (test.a)), platform::foldCase (utf8 (test.b))) << test.a << " and " << test.b;
    }
}

TEST (CaseFold, WhatTheFileSystemKeepsApartByMoreThanCaseStaysApart)
{
    const struct { const char* a; const char* b; } cases[] { { "ß", "ss" }, { "é", "e" }, { "i", "j" }, { "ä", "a\xcc\x88" }, { "1", "１" } };

    for (const auto& test : cases)
    {
        EXPECT_FALSE (isOneName (utf8 (test.a), utf8 (test.b))) << test.a << " and " << test.b;
        EXPECT_NE (platform::foldCase (utf8 (test.a)), platform::foldCase (utf8 (test.b))) << test.a << " and " << test.b;
    }
}

TEST (CaseFold, LeavesTheTextThatItWasGiven)
{
    const auto text = utf8 ("Größe ΟΔΟΣ");
    const auto before = text.toStdString();
    platform::foldCase (text);
    EXPECT_EQ (text.toStdString(), before);
}
