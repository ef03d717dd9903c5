#include "creator/CreatorProfileStore.h"
#include "support/Text.h"

#include <functional>
#include <gtest/gtest.h>

namespace
{
std::string codeOf (const std::function<void (CreatorProfile&)>& change)
{
    CreatorProfile profile;
    change (profile);
    juce::String error ("not cleared");
    const bool valid = CreatorProfileStore::validate (profile, error);
    EXPECT_EQ (valid, error.isEmpty());
    return error.toStdString();
}

juce::StringArray items (int count, const juce::String& prefix = "item")
{
    juce::StringArray result;

    for (int i = 0; i < count; ++i)
        result.add (prefix + juce::String (i));

    return result;
}

juce::String times (const char* text, int count) { return juce::String::repeatedString (utf8 (text), count); }

const char* const invalid = "invalid_creator_profile";
}

TEST (CreatorProfileRules, TheDefaultProfileIsValid)
{
    EXPECT_EQ (codeOf ([] (auto&) {}), "");
}

TEST (CreatorProfileRules, TheStepIsFromZeroToNine)
{
    const std::pair<int, const char*> cases[] { { 0, "" }, { 9, "" }, { 10, invalid }, { -1, invalid }, { std::numeric_limits<int>::min(), invalid } };

    for (const auto& [step, code] : cases)
        EXPECT_EQ (codeOf ([value = step] (auto& profile) { profile.currentStep = value; }), code) << step;
}

TEST (CreatorProfileRules, TextsHaveTheirLengthsInCharacters)
{
    EXPECT_EQ (codeOf ([] (auto& p) { p.displayName = times ("é", 80); }), "");
    EXPECT_EQ (codeOf ([] (auto& p) { p.displayName = times ("é", 81); }), invalid);
    EXPECT_EQ (codeOf ([] (auto& p) { p.primaryRole = times ("x", 48); }), "");
    EXPECT_EQ (codeOf ([] (auto& p) { p.primaryRole = times ("x", 49); }), invalid);
    EXPECT_EQ (codeOf ([] (auto& p) { p.styleDescription = times ("é", 500); }), "");
    EXPECT_EQ (codeOf ([] (auto& p) { p.styleDescription = times ("é", 501); }), invalid);
}

TEST (CreatorProfileRules, TextsAreOneLine)
{
    for (const auto* bad : { "a\nb", "a\rb", "a\x01", "a\x1f", "a\x0b" })
    {
        const juce::String text (bad);
        EXPECT_EQ (codeOf ([&] (auto& p) { p.displayName = text; }), invalid);
        EXPECT_EQ (codeOf ([&] (auto& p) { p.primaryRole = text; }), invalid);
        EXPECT_EQ (codeOf ([&] (auto& p) { p.styleDescription = text; }), invalid);
        EXPECT_EQ (codeOf ([&] (auto& p) { p.genres.add (text); }), invalid);
        EXPECT_EQ (codeOf ([&] (auto& p) { p.secondaryRoles.add (text); }), invalid);
    }

    EXPECT_EQ (codeOf ([] (auto& p) { p.styleDescription = "tab\tis fine\x7f"; }), "");
}

TEST (CreatorProfileRules, ListsHoldSixteenItemsOf1To48Characters)
{
    EXPECT_EQ (codeOf ([] (auto& p) { p.genres = items (16); p.secondaryRoles = items (16); }), "");
    EXPECT_EQ (codeOf ([] (auto& p) { p.genres = items (17); }), invalid);
    EXPECT_EQ (codeOf ([] (auto& p) { p.secondaryRoles = items (17); }), invalid);
    EXPECT_EQ (codeOf ([] (auto& p) { p.genres.add ({}); }), invalid);
    EXPECT_EQ (codeOf ([] (auto& p) { p.genres.add (times ("é", 48)); }), "");
    EXPECT_EQ (codeOf ([] (auto& p) { p.genres.add (times ("é", 49)); }), invalid);
}

TEST (CreatorProfileRules, AnAccentIsANumberSignAndSixHexadecimalDigits)
{
    for (const auto* good : { "#00BCEB", "#00bceb", "#AbCdEf", "#123456" })
        EXPECT_EQ (codeOf ([&] (auto& p) { p.accentColour = good; }), "") << good;

    for (const auto* bad : { "", "00BCEB", "#00BCE", "#00BCEB1", "00BCEB#", "#00BCEG", "# 0BCEB", "##0BCEB", " #00BCEB" })
        EXPECT_EQ (codeOf ([&] (auto& p) { p.accentColour = bad; }), invalid) << bad;
}

TEST (CreatorProfileRules, AThemeIsOneOfThree)
{
    for (const auto* good : { "zorva-dark", "midnight", "soft-light" })
        EXPECT_EQ (codeOf ([&] (auto& p) { p.backgroundTheme = good; }), "") << good;

    for (const auto* bad : { "", "Midnight", "ZORVA Dark", "dark", "midnight " })
        EXPECT_EQ (codeOf ([&] (auto& p) { p.backgroundTheme = bad; }), invalid) << bad;
}

TEST (CreatorProfileRules, ACompletedProfileHasANameAndARole)
{
    const char* const incomplete = "creator_profile_incomplete";
    const auto completed = [] (const char* name, const char* role) { return codeOf ([=] (auto& p) { p.completed = true; p.displayName = name; p.primaryRole = role; }); };
    EXPECT_EQ (completed ("Ann", "Artist"), "");
    EXPECT_EQ (completed ("", "Artist"), incomplete);
    EXPECT_EQ (completed ("   ", "Artist"), incomplete);
    EXPECT_EQ (completed ("Ann", ""), incomplete);
    EXPECT_EQ (completed ("Ann", "\t"), incomplete);
}

TEST (CreatorProfileRules, TwelveLinksAreTheMost)
{
    const auto links = [] (int count) { return codeOf ([=] (auto& p) { for (int i = 0; i < count; ++i) p.socialLinks.set ("n" + juce::String (i), "https://a.example/"); }); };
    EXPECT_EQ (links (12), "");
    EXPECT_EQ (links (13), "too_many_social_links");
}

TEST (CreatorProfileRules, ALinkIsAnHttpsAddress)
{
    const auto link = [] (const juce::String& name, const juce::String& address) { return codeOf ([&] (auto& p) { p.socialLinks.set (name, address); }); };
    const char* const bad = "invalid_social_link";
    EXPECT_EQ (link ("Site", "https://a.example"), "");
    EXPECT_EQ (link ("", "https://a.example"), "") << "the name may be empty";
    EXPECT_EQ (link (times ("é", 32), "https://a.example"), "");
    EXPECT_EQ (link (times ("é", 33), "https://a.example"), bad);
    EXPECT_EQ (link ("a\nb", "https://a.example"), bad);
    EXPECT_EQ (link ("Site", ""), bad);
    EXPECT_EQ (link ("Site", "http://a.example"), bad);
    EXPECT_EQ (link ("Site", "HTTPS://a.example"), bad) << "the scheme in capitals";
    EXPECT_EQ (link ("Site", "a.example"), bad);
    EXPECT_EQ (link ("Site", "https://a.example/" + times ("x", 2048 - 18)), "");
    EXPECT_EQ (link ("Site", "https://a.example/" + times ("x", 2048 - 17)), bad);
}

TEST (CreatorProfileRules, TheFirstFailureWins)
{
    const auto break_ = [] (auto& p, int from)
    {
        if (from <= 0) p.currentStep = 10;
        if (from <= 1) p.completed = true;
        for (int i = 0; from <= 2 && i < 13; ++i) p.socialLinks.set ("n" + juce::String (i), "http://a.example/");
        if (from <= 3) p.socialLinks.set ("n0", "http://a.example/");
    };
    EXPECT_EQ (codeOf ([&] (auto& p) { break_ (p, 0); }), invalid);
    EXPECT_EQ (codeOf ([&] (auto& p) { break_ (p, 1); }), "creator_profile_incomplete");
    EXPECT_EQ (codeOf ([&] (auto& p) { break_ (p, 2); }), "too_many_social_links");
    EXPECT_EQ (codeOf ([&] (auto& p) { break_ (p, 3); }), "invalid_social_link");
}
