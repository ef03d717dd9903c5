#include "support/Utf8.h"

#include <gtest/gtest.h>
#include <string>

namespace
{
bool isUtf8 (const std::string& bytes) { return ::isUtf8 (bytes.data(), bytes.size()); }
}

TEST (Utf8, TakesEverythingThatIsACharacter)
{
    for (const std::string text : { "", "plain", "\x7f", "\xc2\x80", "\xdf\xbf", "\xe0\xa0\x80", "\xed\x9f\xbf", "\xee\x80\x80",
                                    "\xef\xbf\xbf", "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf", "a\xc3\xa4" "b\xe2\x82\xac" "c\xf0\x9f\x8e\xb5" "d" })
        EXPECT_TRUE (isUtf8 (text)) << testing::PrintToString (text);

    EXPECT_TRUE (isUtf8 (std::string ("a\0b", 3)));
    EXPECT_TRUE (::isUtf8 (nullptr, 0));
}

TEST (Utf8, RefusesWhatIsNone)
{
    struct Row { const char* what; std::string bytes; };

    const Row table[] { { "a lone continuation byte", "\x80" },
                        { "a lone continuation byte inside", "a\xbf" "b" },
                        { "a first byte at the end", "a\xc3" },
                        { "a character that breaks off", "\xe2\x82" },
                        { "a first byte before a plain one", "\xc3(" },
                        { "three bytes with a plain one in the middle", "\xe2(\xa1" },
                        { "three bytes with a plain one at the end", "\xe2\x82(" },
                        { "two bytes for one", "\xc0\x80" },
                        { "two bytes for one, the largest", "\xc1\xbf" },
                        { "three bytes for two", "\xe0\x9f\xbf" },
                        { "four bytes for three", "\xf0\x8f\xbf\xbf" },
                        { "the first surrogate", "\xed\xa0\x80" },
                        { "the last surrogate", "\xed\xbf\xbf" },
                        { "above the last character", "\xf4\x90\x80\x80" },
                        { "five bytes", "\xf8\x88\x80\x80\x80" },
                        { "a byte that never occurs", "\xff" } };

    for (const auto& row : table)
        EXPECT_FALSE (isUtf8 (row.bytes)) << row.what;
}
