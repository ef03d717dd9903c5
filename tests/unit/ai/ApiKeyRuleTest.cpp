#include "ai/HubCredentialStore.h"

#include "support/Text.h"

#include <gtest/gtest.h>

TEST (HubCredentialStore, TakesOnlyKeysOfTheAllowedCharactersAndSize)
{
    const auto ofSize = [] (int size) { return juce::String::repeatedString ("k", size); };

    const struct { juce::String text; bool isAcceptable; } cases[] = {
        { "", false },
        { "a", true },
        { ofSize (2048), true },
        { ofSize (2049), false },
        { "abcdefghijklmnopqrstuvwxyz", true },
        { "ABCDEFGHIJKLMNOPQRSTUVWXYZ", true },
        { "0123456789", true },
        { "-._", true },
        { "no-prefix-is-needed", true },
        { "sk-proj-A_b.9", true },
        { "with space", false },
        { " leading", false },
        { "trailing ", false },
        { "plus+", false },
        { "line\n", false },
        { "line\r\n", false },
        { "tab\t", false },
        { juce::String::charToString (0x01), false },
        { juce::String::charToString (0x1f), false },
        { juce::String::charToString (0x7f), false },
        { utf8 ("\xc3\xa9"), false },                                  // a letter, but not an ASCII one
        { utf8 ("key\xc3\xa9"), false },
        { utf8 ("\xd0\x90"), false },                                  // a Cyrillic A
        { utf8 ("\xef\xbc\xa1"), false },                              // a fullwidth A
        { utf8 ("\xd9\xa1"), false },                                  // an Arabic-Indic digit
        { utf8 ("\xf0\x9d\x90\x80"), false },                          // a letter beyond the basic plane
        { ofSize (2046) + utf8 ("\xc3\xa9"), false },
        { ofSize (2047) + utf8 ("\xc3\xa9"), false },
    };

    for (const auto& [text, isAcceptable] : cases)
        EXPECT_EQ (isAcceptableApiKey (text), isAcceptable) << text.quoted() << " of " << text.getNumBytesAsUTF8() << " bytes";
}

TEST (HubCredentialStore, TakesOfAsciiJustTheLettersDigitsAndThreeSigns)
{
    const juce::String allowed ("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._");

    for (juce::juce_wchar c = 1; c < 256; ++c)
        EXPECT_EQ (isAcceptableApiKey ("k" + juce::String::charToString (c)), allowed.containsChar (c)) << (int) c;
}
