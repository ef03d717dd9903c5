#include "FuzzHome.h"

#include "creator/CreatorProfileStore.h"
#include "support/Utf8.h"

#include <juce_graphics/juce_graphics.h>

namespace
{
constexpr std::size_t longestFile = 0x80000;
const juce::StringArray breaches { "invalid_creator_profile", "creator_profile_incomplete", "too_many_social_links", "invalid_social_link" };

void require (bool condition)
{
    if (! condition)
        std::abort();
}

juce::File profileFile()
{
    return HubPaths::creatorDirectory().getChildFile ("profile-v1.json");
}

std::string bytesOf (const juce::File& file)
{
    juce::MemoryBlock bytes;
    require (file.loadFileAsData (bytes));
    return { bytes.begin(), bytes.end() };
}

/** A picture that a profile may name. */
const juce::String& picturePath()
{
    static const juce::String path = []
    {
        const auto file = fuzz::home().getChildFile ("picture.png");
        juce::FileOutputStream stream (file);
        require (juce::PNGImageFormat().writeImageToStream (juce::Image (juce::Image::RGB, 8, 8, true), stream));
        return file.getFullPathName();
    }();

    return path;
}

/** Equal in all but the time of the last save. */
bool areSame (const CreatorProfile& a, const CreatorProfile& b)
{
    return a.currentStep == b.currentStep && a.completed == b.completed
        && a.displayName == b.displayName && a.primaryRole == b.primaryRole
        && a.secondaryRoles == b.secondaryRoles && a.genres == b.genres
        && a.styleDescription == b.styleDescription
        && a.accentColour == b.accentColour && a.backgroundTheme == b.backgroundTheme
        && a.profileImagePath == b.profileImagePath && a.bannerImagePath == b.bannerImagePath
        && a.socialLinks.getAllKeys() == b.socialLinks.getAllKeys() && a.socialLinks.getAllValues() == b.socialLinks.getAllValues()
        && a.localWebsitePreviewRequested == b.localWebsitePreviewRequested;
}

juce::StringArray asRead (const juce::StringArray& items)
{
    juce::StringArray read;

    for (const auto& item : items)
        read.addIfNotAlreadyThere (item.trim());

    return read;
}

/** A valid profile can be saved, and what is loaded again is the same but for what reading does to its lists. */
void checkSaving (CreatorProfile profile)
{
    CreatorProfileStore store;
    juce::String error ("not cleared");
    require (store.save (profile, error) && error.isEmpty());

    const auto loaded = store.load();
    profile.secondaryRoles = asRead (profile.secondaryRoles);
    profile.genres = asRead (profile.genres);
    require (store.lastError().isEmpty() && areSame (loaded, profile));
    require (juce::Time::fromISO8601 (loaded.updatedAt).toMilliseconds() > 0);
}

/** A draft that cannot be used stays as it is until it is removed, and can be exported. */
void checkRecovery (CreatorProfileStore& store)
{
    const auto bytes = bytesOf (profileFile());
    const auto copy = fuzz::home().getChildFile ("copy.json");
    juce::String error;
    require (! store.save ({}, error) && error == "creator_draft_recovery_required");
    require (store.exportTo (copy, error) && bytesOf (copy) == bytes && bytesOf (profileFile()) == bytes);
    require (store.remove (error) && store.lastError().isEmpty() && ! profileFile().exists());
}

void checkFile (const std::string& bytes)
{
    fuzz::writeBytes (profileFile(), reinterpret_cast<const std::uint8_t*> (bytes.data()), bytes.size());
    CreatorProfileStore store;
    const auto profile = store.load();

    if (store.lastError().isEmpty())
    {
        juce::String error ("not cleared");
        require (CreatorProfileStore::validate (profile, error) && error.isEmpty());
        return checkSaving (profile);
    }

    require (breaches.contains (store.lastError()) || store.lastError() == "unsupported_creator_schema"
             || (store.lastError() == "creator_draft_recovery_required" && (bytes.empty() || bytes.size() > longestFile)));
    require (areSame (profile, {}) && profile.updatedAt.isEmpty());
    checkRecovery (store);
}

/** A profile whose fields are the lines of the text in their order; "|" separates the items of a list and the halves of its links. */
CreatorProfile profileOf (const juce::StringArray& lines)
{
    CreatorProfile profile;
    profile.currentStep = lines[0].getIntValue();
    profile.completed = lines[1].isNotEmpty();
    profile.displayName = lines[2];
    profile.primaryRole = lines[3];
    profile.secondaryRoles.addTokens (lines[4], "|", {});
    profile.genres.addTokens (lines[5], "|", {});
    profile.styleDescription = lines[6];
    profile.accentColour = lines[7];
    profile.backgroundTheme = lines[8];
    profile.profileImagePath = lines[9];
    profile.bannerImagePath = lines[10];
    profile.localWebsitePreviewRequested = lines[11].isNotEmpty();

    for (int i = 12; i < lines.size(); ++i)
        profile.socialLinks.set (lines[i].upToFirstOccurrenceOf ("|", false, false), lines[i].fromFirstOccurrenceOf ("|", false, false));

    return profile;
}

bool hasBlankItem (const CreatorProfile& profile)
{
    return asRead (profile.secondaryRoles).contains ("") || asRead (profile.genres).contains ("");
}

void checkProfile (const CreatorProfile& profile)
{
    profileFile().deleteFile();
    juce::String breach, error;

    if (! CreatorProfileStore::validate (profile, breach))
    {
        require (breaches.contains (breach));
        require (! CreatorProfileStore().save (profile, error) && error == breach && ! profileFile().exists());
    }
    else if (! hasBlankItem (profile))      // blanks have a length, but reading trims it away: the wizard never lets such an item in
    {
        checkSaving (profile);
    }
}
}

/** The bytes as a profile's file or, behind a "P", as the fields of a profile that is to be saved. "@PICTURE@" stands for a picture's
    path. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    static const std::string pictureMark ("@PICTURE@");
    const auto path = picturePath().toStdString();
    std::string bytes (reinterpret_cast<const char*> (data), size);

    for (auto at = bytes.find (pictureMark); at != std::string::npos; at = bytes.find (pictureMark, at))
        bytes.replace (at, pictureMark.size(), path);

    if (bytes.empty() || bytes.front() != 'P')
        checkFile (bytes);
    else if (isUtf8 (bytes.data(), bytes.size()))
        checkProfile (profileOf (juce::StringArray::fromTokens (juce::String::fromUTF8 (bytes.data() + 1, (int) bytes.size() - 1), "\n", {})));

    return 0;
}
