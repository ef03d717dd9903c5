#include "platform/CaseFold.h"
#include "support/Text.h"

#include <clocale>
#include <gtest/gtest.h>

namespace
{
const struct { const char* text; const char* folded; } cases[]
{
    { "", "" }, { "abc XYZ-1.9_", "abc xyz-1.9_" }, { "ÄÖÜßé", "äöüßé" }, { "ΑΣΩ", "ασω" }, { "ЖЮЯ", "жюя" }, { "ŁŠŽ", "łšž" },
    { "ＡＢ", "ａｂ" }, { "音楽🎹", "音楽🎹" }, { "\xf0\x90\x90\x80", "\xf0\x90\x90\xa8" },
};
}

TEST (CaseFold, GivesTheLowerCaseOfEveryScript)
{
    for (const auto& test : cases)
        EXPECT_EQ (platform::foldCase (utf8 (test.text)), utf8 (test.folded)) << test.text;
}

TEST (CaseFold, DoesNotDependOnTheLocale)
{
    std::setlocale (LC_ALL, "C");

    for (const auto& test : cases)
        EXPECT_EQ (platform::foldCase (utf8 (test.text)), utf8 (test.folded)) << test.text;
}

TEST (CaseFold, FoldingTwiceChangesNothingMore)
{
    juce::String everyLetter;

    for (juce::juce_wchar c = 1; c < 0x3000; ++c)
        everyLetter << juce::String::charToString (c);

    const auto once = platform::foldCase (everyLetter);
    EXPECT_NE (once, everyLetter);
    EXPECT_EQ (platform::foldCase (once), once);
    EXPECT_EQ (once.length(), everyLetter.length());
}
