#include "creator/CreatorProfileRules.h"

#include "creator/ImageRules.h"
#include "creator/TextRules.h"

namespace CreatorProfileRules
{
namespace
{
constexpr juce::uint32 lastStep = 9;
constexpr int longestName = 80, longestRole = 48, longestStyle = 500;
constexpr int longestItem = 48, longestLinkName = 32;

bool isShortLine (const juce::String& text, int longest)
{
    return text.length() <= longest && TextRules::isLine (text);
}

bool isShortList (const juce::StringArray& items)
{
    return items.size() <= mostItems
        && std::all_of (items.begin(), items.end(), [] (const auto& item) { return item.isNotEmpty() && isShortLine (item, longestItem); });
}

bool isColour (const juce::String& text)
{
    return text.length() == 7 && text.startsWithChar ('#') && text.substring (1).containsOnly ("0123456789abcdefABCDEF");
}

bool isTheme (const juce::String& text)
{
    return text == "zorva-dark" || text == "midnight" || text == "soft-light";
}

bool keepsItsLimits (const CreatorProfile& profile)
{
    return (juce::uint32) profile.currentStep <= lastStep
        && isShortLine (profile.displayName, longestName)
        && isShortLine (profile.primaryRole, longestRole)
        && isShortList (profile.secondaryRoles)
        && isShortList (profile.genres)
        && isShortLine (profile.styleDescription, longestStyle)
        && isColour (profile.accentColour)
        && isTheme (profile.backgroundTheme)
        && isAcceptableProfileImage (profile.profileImagePath)
        && isAcceptableProfileImage (profile.bannerImagePath);
}

bool isComplete (const CreatorProfile& profile)
{
    return profile.displayName.trim().isNotEmpty() && profile.primaryRole.trim().isNotEmpty();
}

bool areLinks (const juce::StringPairArray& links)
{
    for (int i = 0; i < links.size(); ++i)
        if (! isShortLine (links.getAllKeys()[i], longestLinkName) || ! TextRules::isSecureAddress (links.getAllValues()[i]))
            return false;

    return true;
}
}

juce::String firstBreach (const CreatorProfile& profile)
{
    if (! keepsItsLimits (profile))
        return "invalid_creator_profile";

    if (profile.completed && ! isComplete (profile))
        return "creator_profile_incomplete";

    if (profile.socialLinks.size() > mostLinks)
        return "too_many_social_links";

    return areLinks (profile.socialLinks) ? "" : "invalid_social_link";
}
}
