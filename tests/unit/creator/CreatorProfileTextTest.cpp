#include "creator/CreatorProfileText.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace
{
std::string list (const char* text)    { return CreatorProfileText::listFrom (utf8 (text)).joinIntoString ("|").toStdString(); }

/** What the lines give, as "key=value|key=value", or the error. */
std::string links (const char* lines)
{
    juce::StringPairArray pairs;
    pairs.set ("Old", "https://old.example");
    juce::String error ("untouched");

    if (! CreatorProfileText::readLinks (utf8 (lines), pairs, error))
        return error.toStdString();

    EXPECT_EQ (error, "untouched");
    juce::StringArray read;

    for (int i = 0; i < pairs.size(); ++i)
        read.add (pairs.getAllKeys()[i] + "=" + pairs.getAllValues()[i]);

    return read.joinIntoString ("|").toStdString();
}

const auto linkHint = std::string ("Use Platform: https://…") + " for each link.";
}

TEST (CreatorProfileText, ListsAreCutAtCommasAndLineFeeds)
{
    const struct { const char* text; const char* items; } cases[] {
        { "", "" },
        { "   ", "" },
        { ",,\n,", "" },
        { "rock", "rock" },
        { "rock, jazz", "rock|jazz" },
        { " rock ,\tjazz\nfunk ", "rock|jazz|funk" },
        { "rock\r\njazz", "rock|jazz" },
        { "rock;jazz funk", "rock;jazz funk" },
        { "rock, Rock, jazz", "rock|jazz" },
        { "Jazz, rock, JAZZ, jazz", "Jazz|rock" },
        { "\"a, b\", c", "\"a, b\"|c" },
        { "élan, ÉLAN", "élan" },
    };

    for (const auto& c : cases)
        EXPECT_EQ (list (c.text), c.items) << c.text;
}

TEST (CreatorProfileText, LinesAreCutAtTheirFirstColon)
{
    const struct { const char* lines; const char* links; } cases[] {
        { "", "" },
        { "\n  \n", "" },
        { "Site: https://a.example", "Site=https://a.example" },
        { "  Site  :  https://a.example  \n\nTube:https://b.example", "Site=https://a.example|Tube=https://b.example" },
        { "Site: https://a.example\r\nTube: https://b.example\r\n", "Site=https://a.example|Tube=https://b.example" },
        { "https://a.example", "https=//a.example" },
        { "Site:", "Site=" },
        { " : https://a.example", "=https://a.example" },
        { "Site: https://a.example\nTube: https://b.example\nSITE: https://c.example", "Site=https://c.example|Tube=https://b.example" },
    };

    for (const auto& c : cases)
        EXPECT_EQ (links (c.lines), c.links) << c.lines;
}

TEST (CreatorProfileText, ALineWithoutANameBeforeAColonIsRefused)
{
    for (const auto* lines : { "a.example", ": https://a.example", ":", "Site: https://a.example\nnothing", "x\nSite: https://a.example" })
        EXPECT_EQ (links (lines), linkHint) << lines;
}

TEST (CreatorProfileText, WhatIsRefusedKeepsTheLinksBeforeIt)
{
    juce::StringPairArray pairs;
    pairs.set ("Old", "https://old.example");
    juce::String error;

    EXPECT_FALSE (CreatorProfileText::readLinks ("Site: https://a.example\nnothing\nTube: https://b.example", pairs, error));
    EXPECT_EQ (pairs.getAllKeys().joinIntoString ("|"), "Site");
}

TEST (CreatorProfileText, LinksAreWrittenAsTheyAreRead)
{
    juce::StringPairArray pairs;
    EXPECT_EQ (CreatorProfileText::linesOf (pairs), "");

    pairs.set ("Site", "https://a.example/x");
    pairs.set ("Tube", "https://b.example");
    EXPECT_EQ (CreatorProfileText::linesOf (pairs), "Site: https://a.example/x\nTube: https://b.example");

    juce::StringPairArray again;
    juce::String error;
    EXPECT_TRUE (CreatorProfileText::readLinks (CreatorProfileText::linesOf (pairs), again, error));
    EXPECT_EQ (again, pairs);
}

TEST (CreatorProfileText, ThePreviewOfAnEmptyProfileNamesWhatIsMissing)
{
    EXPECT_EQ (CreatorProfileText::preview ({}),
               "LOCAL PROFILE PREVIEW\n\nUnnamed creator\nRole not selected\nGenres: Not added\nStyle: Not added\n"
               "Theme: zorva-dark  Accent: #00BCEB\nWebsite-layout preference: Not requested\n\n"
               "This is a private local preview. It is not a website or public profile.");
}

TEST (CreatorProfileText, ThePreviewOfAFullProfileShowsIt)
{
    CreatorProfile profile;
    profile.displayName = utf8 ("Zoë Ray");
    profile.primaryRole = "Beatmaker";
    profile.secondaryRoles = { "Composer" };
    profile.genres = { "Ambient", "Dub" };
    profile.styleDescription = "Slow and wide.";
    profile.accentColour = "#aabbcc";
    profile.backgroundTheme = "soft-light";
    profile.localWebsitePreviewRequested = true;
    profile.socialLinks.set ("Site", "https://a.example");

    EXPECT_EQ (CreatorProfileText::preview (profile),
               utf8 ("LOCAL PROFILE PREVIEW\n\nZoë Ray\nBeatmaker\nGenres: Ambient, Dub\nStyle: Slow and wide.\n"
                     "Theme: soft-light  Accent: #aabbcc\nWebsite-layout preference: Saved locally\n\n"
                     "This is a private local preview. It is not a website or public profile."));
}
