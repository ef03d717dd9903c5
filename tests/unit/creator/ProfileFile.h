#pragma once

#include "app/HubPaths.h"
#include "creator/CreatorProfileStore.h"

#include <gtest/gtest.h>

/** The file of the creator profile, written and read behind the store's back. */
namespace zorva::test
{
inline juce::File profileFile()    { return HubPaths::creatorDirectory().getChildFile ("profile-v1.json"); }

inline juce::File writeProfile (const juce::String& text)
{
    HubPaths::creatorDirectory().createDirectory();
    EXPECT_TRUE (profileFile().replaceWithText (text, false, false, nullptr));
    return profileFile();
}

/** A profile as a file would hold it, with changes; a void value removes the key. */
inline juce::String fileText (std::initializer_list<std::pair<const char*, juce::var>> changes = {})
{
    const auto value = juce::JSON::parse (R"({"schemaVersion":1,"currentStep":3,"completed":false,"displayName":"Ann","primaryRole":"Artist",
        "secondaryRoles":[],"genres":["Pop"],"styleDescription":"","accentColour":"#00BCEB","backgroundTheme":"zorva-dark","profileImagePath":"",
        "bannerImagePath":"","socialLinks":{},"localWebsitePreviewRequested":false,"updatedAt":""})");

    for (const auto& [key, change] : changes)
        change.isVoid() ? value.getDynamicObject()->removeProperty (key) : value.getDynamicObject()->setProperty (key, change);

    return juce::JSON::toString (value, true);
}

/** The code of loading this text as the profile; "" when it can be used. */
inline std::string errorOnLoading (const juce::String& text)
{
    writeProfile (text);
    CreatorProfileStore store;
    const auto profile = store.load();
    EXPECT_TRUE (store.lastError().isEmpty() || profile.displayName.isEmpty()) << "the default comes with an error";
    return store.lastError().toStdString();
}
}
