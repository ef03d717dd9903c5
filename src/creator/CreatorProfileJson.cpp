#include "creator/CreatorProfileJson.h"

#include "creator/CreatorProfileRules.h"
#include "creator/EmptyNames.h"
#include "support/BoundedJson.h"

#include <limits>

namespace CreatorProfileJson
{
namespace
{
constexpr int schemaVersion = 1;
constexpr int maximumDecimalPlaces = 15;

// The framework's parser refuses an object with an empty property name, which a link may have. While parsing such a name is this
// one, which no link can have since it is too long.
constexpr const char* emptyNameStandIn = "an empty name, which the parser would refuse";

juce::String withoutEmptyNames (const juce::String& json)
{
    juce::MemoryOutputStream result;
    const auto* copied = json.toRawUTF8();

    for (const auto* const name : EmptyNames::find (copied))
    {
        result.write (copied, (size_t) (name + 1 - copied));
        result << emptyNameStandIn;
        copied = name + 1;
    }

    result << copied;
    return result.toUTF8();
}

/** The framework's conversion, which keeps the low 32 bits of a longer whole number. For a decimal number or a text beyond the range
    the framework promises nothing: those are clamped, so that none of them reads as a small one. */
int integerIn (const juce::var& value, const char* name)
{
    using Limits = std::numeric_limits<int>;
    const auto wide = BoundedJson::integerIn (value, name);
    return value[name].isInt64() ? (int) wide : (int) juce::jlimit<juce::int64> (Limits::min(), Limits::max(), wide);
}

/** The framework's conversion, with its reading of a number in a string replaced by one that cannot overflow. */
bool booleanIn (const juce::var& value, const char* name)
{
    const auto& property = value[name];

    if (! property.isString())
        return (bool) property;

    const auto text = property.toString().trim();
    return integerIn (value, name) != 0 || text.equalsIgnoreCase ("true") || text.equalsIgnoreCase ("yes");
}

/** Ends with one more than the rules allow: reading on would say nothing more, and compare each with all before it. */
juce::StringArray listIn (const juce::var& value, const char* name)
{
    juce::StringArray items;

    if (const auto* const list = value[name].getArray())
        for (auto item = list->begin(); item != list->end() && items.size() <= CreatorProfileRules::mostItems; ++item)
            items.addIfNotAlreadyThere (item->toString().trim());

    return items;
}

juce::StringPairArray linksIn (const juce::var& value)
{
    juce::StringPairArray links (true);

    if (auto* const object = BoundedJson::objectIn (value["socialLinks"]))
    {
        for (const auto& link : object->getProperties())
        {
            if (links.size() > CreatorProfileRules::mostLinks)
                break;      // as in a list

            const auto name = link.name.toString();
            links.set (name == emptyNameStandIn ? juce::String() : name, link.value.toString());
        }
    }

    return links;
}

juce::var linksObject (const juce::StringPairArray& links)
{
    auto* const object = new juce::DynamicObject();
    const juce::var value (object);

    for (int i = 0; i < links.size(); ++i)
    {
        const auto& name = links.getAllKeys()[i];
        object->setProperty (name.isEmpty() ? juce::Identifier() : juce::Identifier (name), links.getAllValues()[i]);
    }

    return value;
}

CreatorProfile profileIn (const juce::var& value)
{
    CreatorProfile profile;
    profile.currentStep = integerIn (value, "currentStep");
    profile.completed = booleanIn (value, "completed");
    profile.displayName = BoundedJson::textIn (value, "displayName");
    profile.primaryRole = BoundedJson::textIn (value, "primaryRole");
    profile.secondaryRoles = listIn (value, "secondaryRoles");
    profile.genres = listIn (value, "genres");
    profile.styleDescription = BoundedJson::textIn (value, "styleDescription");
    profile.accentColour = BoundedJson::textIn (value, "accentColour");
    profile.backgroundTheme = BoundedJson::textIn (value, "backgroundTheme");
    profile.profileImagePath = BoundedJson::textIn (value, "profileImagePath");
    profile.bannerImagePath = BoundedJson::textIn (value, "bannerImagePath");
    profile.socialLinks = linksIn (value);
    profile.localWebsitePreviewRequested = booleanIn (value, "localWebsitePreviewRequested");
    profile.updatedAt = BoundedJson::textIn (value, "updatedAt");
    return profile;
}
}

juce::String toText (const CreatorProfile& profile)
{
    auto* const object = new juce::DynamicObject();
    const juce::var value (object);

    object->setProperty ("schemaVersion", schemaVersion);
    object->setProperty ("currentStep", profile.currentStep);
    object->setProperty ("completed", profile.completed);
    object->setProperty ("displayName", profile.displayName);
    object->setProperty ("primaryRole", profile.primaryRole);
    object->setProperty ("secondaryRoles", profile.secondaryRoles);
    object->setProperty ("genres", profile.genres);
    object->setProperty ("styleDescription", profile.styleDescription);
    object->setProperty ("accentColour", profile.accentColour);
    object->setProperty ("backgroundTheme", profile.backgroundTheme);
    object->setProperty ("profileImagePath", profile.profileImagePath);
    object->setProperty ("bannerImagePath", profile.bannerImagePath);
    object->setProperty ("socialLinks", linksObject (profile.socialLinks));
    object->setProperty ("localWebsitePreviewRequested", profile.localWebsitePreviewRequested);
    object->setProperty ("updatedAt", profile.updatedAt);

    return juce::JSON::toString (value, true, maximumDecimalPlaces);
}

bool fromText (const juce::String& text, CreatorProfile& outProfile, juce::String& outError)
{
    const auto value = BoundedJson::parse (withoutEmptyNames (text));

    if (BoundedJson::objectIn (value) == nullptr || integerIn (value, "schemaVersion") != schemaVersion)
    {
        outError = "unsupported_creator_schema";
        return false;
    }

    const auto profile = profileIn (value);
    outError = CreatorProfileRules::firstBreach (profile);

    if (outError.isNotEmpty())
        return false;

    outProfile = profile;
    return true;
}
}
