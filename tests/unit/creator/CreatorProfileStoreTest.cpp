#include "ProfileFile.h"
#include "support/BoundedJson.h"
#include "support/Files.h"
#include "support/PrivateMounts.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace
{
using namespace zorva::test;

CreatorProfile complete()
{
    CreatorProfile profile;
    profile.currentStep = 9;
    profile.completed = true;
    profile.displayName = utf8 ("Zoë \"Z\" Ray");
    profile.primaryRole = "Producer";
    profile.secondaryRoles = { "Composer", "Podcaster" };
    profile.genres = { "Ambient" };
    profile.styleDescription = "Slow\tand wide";
    profile.accentColour = "#aabbcc";
    profile.backgroundTheme = "midnight";
    profile.socialLinks.set ("Site", "https://zoe.example/music");
    profile.localWebsitePreviewRequested = true;
    return profile;
}
}

//==============================================================================
TEST (CreatorProfileStore, AMissingFileLoadsAsTheDefaultProfile)
{
    CreatorProfileStore store;
    const auto profile = store.load();
    EXPECT_EQ (store.lastError(), "");
    EXPECT_EQ (profile.currentStep, 0);
    EXPECT_FALSE (profile.completed);
    EXPECT_EQ (profile.displayName, "");
    EXPECT_EQ (profile.accentColour, "#00BCEB");
    EXPECT_EQ (profile.backgroundTheme, "zorva-dark");
    EXPECT_EQ (profile.socialLinks.size(), 0);
    EXPECT_FALSE (profileFile().exists());
}

TEST (CreatorProfileStore, ASavedProfileIsOneLineWithItsKeysInOrder)
{
    CreatorProfileStore store;
    juce::String error ("not cleared");
    ASSERT_TRUE (store.save (complete(), error)) << error;
    EXPECT_EQ (error, "");

    const auto text = profileFile().loadFileAsString();
    const auto stamp = juce::JSON::parse (text)["updatedAt"].toString();
    EXPECT_LT (std::abs ((juce::Time::getCurrentTime() - juce::Time::fromISO8601 (stamp)).inSeconds()), 60.0);
    EXPECT_EQ (text.replace (stamp, "@").toStdString(),
               R"({"schemaVersion": 1, "currentStep": 9, "completed": true, "displayName": "Zoë \"Z\" Ray", "primaryRole": "Producer", )"
               R"("secondaryRoles": ["Composer", "Podcaster"], "genres": ["Ambient"], "styleDescription": "Slow\tand wide", )"
               R"("accentColour": "#aabbcc", "backgroundTheme": "midnight", "profileImagePath": "", "bannerImagePath": "", )"
               R"("socialLinks": {"Site": "https://zoe.example/music"}, "localWebsitePreviewRequested": true, "updatedAt": "@"})");
}

TEST (CreatorProfileStore, WhatIsSavedIsLoadedAgain)
{
    CreatorProfileStore store;
    juce::String error;
    ASSERT_TRUE (store.save (complete(), error));
    const auto loaded = CreatorProfileStore().load();
    EXPECT_EQ (loaded.currentStep, 9);
    EXPECT_TRUE (loaded.completed);
    EXPECT_EQ (loaded.displayName, complete().displayName);
    EXPECT_EQ (loaded.secondaryRoles, complete().secondaryRoles);
    EXPECT_EQ (loaded.genres, complete().genres);
    EXPECT_EQ (loaded.styleDescription, complete().styleDescription);
    EXPECT_EQ (loaded.accentColour, "#aabbcc");
    EXPECT_EQ (loaded.backgroundTheme, "midnight");
    EXPECT_EQ (loaded.socialLinks["site"], "https://zoe.example/music") << "names ignore case";
    EXPECT_TRUE (loaded.localWebsitePreviewRequested);
    EXPECT_NE (loaded.updatedAt, "");
}

//==============================================================================
TEST (CreatorProfileStore, AnEmptyFileNeedsRecoveryAndIsNotOverwritten)
{
    EXPECT_EQ (errorOnLoading (""), "creator_draft_recovery_required");
    CreatorProfileStore store;
    juce::String error;
    EXPECT_FALSE (store.save (complete(), error));
    EXPECT_EQ (error, "creator_draft_recovery_required");
    EXPECT_EQ (profileFile().getSize(), 0);
}

TEST (CreatorProfileStore, AFileOverTheLimitIsNotRead)
{
    EXPECT_EQ (errorOnLoading (fileText().paddedRight (' ', 524288)), "");
    EXPECT_EQ (errorOnLoading (fileText().paddedRight (' ', 524289)), "creator_draft_recovery_required");
}

TEST (CreatorProfileStore, AnotherSchemaIsRefusedUntilTheDraftIsRemoved)
{
    const auto text = fileText ({ { "schemaVersion", 2 } });
    EXPECT_EQ (errorOnLoading (text), "unsupported_creator_schema");
    CreatorProfileStore store;
    juce::String error;
    EXPECT_FALSE (store.save (complete(), error));
    EXPECT_EQ (error, "creator_draft_recovery_required");
    EXPECT_EQ (profileFile().loadFileAsString(), text);

    EXPECT_TRUE (store.remove (error));
    EXPECT_EQ (store.lastError(), "");
    EXPECT_TRUE (store.save (complete(), error)) << error;
}

TEST (CreatorProfileStore, WhatIsNoObjectIsAnUnsupportedSchema)
{
    for (const auto& text : { juce::String ("plain text"), juce::String ("[]"), juce::String ("[{\"schemaVersion\":1}]"), juce::String ("null"),
                              juce::String ("{"), juce::String::repeatedString ("[", 40960) })
        EXPECT_EQ (errorOnLoading (text), "unsupported_creator_schema") << text.substring (0, 30);

    EXPECT_EQ (errorOnLoading (fileText ({ { "schemaVersion", juce::var() } })), "unsupported_creator_schema");
    EXPECT_EQ (errorOnLoading (fileText ({ { "schemaVersion", "1" } })), "") << "converts to 1";
}

TEST (CreatorProfileStore, AMissingKeyReadsAsEmptyAndNotAsItsDefault)
{
    EXPECT_EQ (errorOnLoading (fileText ({ { "accentColour", juce::var() } })), "invalid_creator_profile");
    EXPECT_EQ (errorOnLoading (fileText ({ { "backgroundTheme", juce::var() } })), "invalid_creator_profile");
    EXPECT_EQ (errorOnLoading (fileText ({ { "displayName", juce::var() }, { "genres", juce::var() }, { "socialLinks", juce::var() } })), "");
}

TEST (CreatorProfileStore, ListsAreTrimmedAndDuplicatesDropped)
{
    const auto list = [] (std::initializer_list<const char*> items) { juce::StringArray result; for (auto* item : items) result.add (item); return juce::var (result); };
    EXPECT_EQ (errorOnLoading (fileText ({ { "genres", list ({ " Pop ", "Pop", "pop", "\tRock\n" }) } })), "");
    const auto genres = CreatorProfileStore().load().genres;
    EXPECT_EQ (genres.joinIntoString ("|"), "Pop|pop|Rock") << "compared exactly";

    EXPECT_EQ (errorOnLoading (fileText ({ { "genres", list ({ "Pop", "  " }) } })), "invalid_creator_profile") << "an empty item is kept, and fails";
    EXPECT_EQ (errorOnLoading (fileText ({ { "genres", "Pop" } })), "");
    EXPECT_EQ (CreatorProfileStore().load().genres.size(), 0) << "no array is an empty list";
}

TEST (CreatorProfileStore, ALinkWithAnEmptyNameSurvives)
{
    auto profile = complete();
    profile.socialLinks.clear();
    profile.socialLinks.set ("", "https://zoe.example/");
    CreatorProfileStore store;
    juce::String error;
    ASSERT_TRUE (store.save (profile, error)) << error;
    const auto loaded = store.load();
    EXPECT_EQ (store.lastError(), "");
    EXPECT_EQ (loaded.socialLinks[""], "https://zoe.example/");
    EXPECT_TRUE (store.save (loaded, error)) << error;
}

TEST (CreatorProfileStore, ADraftWhosePictureHasGoneNeedsRecovery)
{
    EXPECT_EQ (errorOnLoading (fileText ({ { "profileImagePath", "/nowhere/picture.png" } })), "invalid_creator_profile");
    CreatorProfileStore store;
    juce::String error;
    EXPECT_FALSE (store.save (complete(), error));
    EXPECT_EQ (error, "creator_draft_recovery_required");
}

TEST (CreatorProfileStore, AProfileThatBreaksARuleIsNotSaved)
{
    CreatorProfileStore store;
    juce::String error;
    ASSERT_TRUE (store.save (complete(), error));
    const auto before = profileFile().loadFileAsString();
    auto profile = complete();
    profile.currentStep = 10;
    EXPECT_FALSE (store.save (profile, error));
    EXPECT_EQ (error, "invalid_creator_profile");
    EXPECT_EQ (profileFile().loadFileAsString(), before);
    EXPECT_EQ (store.lastError(), "");
}

TEST (CreatorProfileStore, WithoutAPlaceForItNothingIsSaved)
{
    HubPaths::ensureDirectories();
    HubPaths::creatorDirectory().deleteRecursively();
    ASSERT_TRUE (HubPaths::creatorDirectory().replaceWithText ("in the way"));
    CreatorProfileStore store;
    juce::String error;
    EXPECT_FALSE (store.save (complete(), error));
    EXPECT_EQ (error, "creator_storage_unavailable");
}

//==============================================================================
TEST (CreatorProfileStore, RemovingNothingSucceeds)
{
    CreatorProfileStore store;
    juce::String error ("not cleared");
    EXPECT_TRUE (store.remove (error));
    EXPECT_EQ (error, "");
}

TEST (CreatorProfileStore, AnExportIsTheFileByteForByteEvenWhenItNeedsRecovery)
{
    HubPaths::creatorDirectory().createDirectory();
    writeBytes (profileFile(), "{ damaged \xef\xbb\xbf\xff\n\r\n");
    CreatorProfileStore store;
    juce::String error ("not cleared");
    const auto target = freshFolder ("exports").getChildFile ("deeper/copy.json");
    ASSERT_TRUE (store.exportTo (target, error)) << error;
    EXPECT_EQ (error, "");
    juce::MemoryBlock copy, original;
    ASSERT_TRUE (target.loadFileAsData (copy) && profileFile().loadFileAsData (original));
    EXPECT_EQ (copy, original);
}

TEST (CreatorProfileStore, AnExportReplacesWhatIsThere)
{
    writeProfile (fileText());
    const auto target = freshFolder ("exports").getChildFile ("copy.json");
    ASSERT_TRUE (target.replaceWithText (juce::String::repeatedString ("old", 10000)));
    CreatorProfileStore store;
    juce::String error;
    ASSERT_TRUE (store.exportTo (target, error));
    EXPECT_EQ (target.loadFileAsString(), fileText());
    EXPECT_EQ (target.getParentDirectory().getNumberOfChildFiles (juce::File::findFiles), 1) << "no sibling is left";
}

TEST (CreatorProfileStore, ExportsThatCannotBeAreRefusedWithTheirCodes)
{
    CreatorProfileStore store;
    juce::String error;
    EXPECT_FALSE (store.exportTo (freshFolder ("exports").getChildFile ("copy.json"), error));
    EXPECT_EQ (error, "creator_draft_missing");

    writeProfile (fileText());
    EXPECT_FALSE (store.exportTo (profileFile(), error));
    EXPECT_EQ (error, "creator_export_destination_invalid");
    EXPECT_EQ (profileFile().loadFileAsString(), fileText());

    const auto file = freshFolder ("in-the-way").getChildFile ("file");
    ASSERT_TRUE (file.replaceWithText ("x"));
    EXPECT_FALSE (store.exportTo (file.getChildFile ("below/copy.json"), error));
    EXPECT_EQ (error, "creator_export_failed");
}

TEST (CreatorProfileStore, AnExportThatADiskCutsShortHasFailedAndKeepsTheEarlierOne)
{
    const auto whole = juce::String::repeatedString ("x", 6 * 4096);
    writeProfile (whole);
    CreatorProfileStore store;
    juce::String error;
    const auto folder = freshFolder ("disk");
    SmallDisk disk (folder, 100);
    const auto target = write (in (folder, "copy.json"), "an earlier export");

    // Room for one page, for two, and so on: the writing ends within one call, or between two.
    for (int pages = 0; pages < 6; ++pages)
    {
        const auto spare = in (folder, "spare");
        ASSERT_TRUE (pages == 0 || spare.replaceWithText (juce::String::repeatedString ("x", pages * 4096)));
        disk.fillWithBytes();
        spare.deleteFile();

        EXPECT_FALSE (store.exportTo (target, error)) << pages;
        EXPECT_EQ (error, "creator_export_failed");
        disk.clear();
        EXPECT_TRUE (target.loadFileAsString() == "an earlier export") << pages;
        EXPECT_EQ (folder.getNumberOfChildFiles (juce::File::findFiles), 1) << pages;
    }

    EXPECT_TRUE (store.exportTo (target, error)) << error;
    EXPECT_TRUE (target.loadFileAsString() == whole);
}

TEST (CreatorProfileStore, AFileFullOfGenresIsJudgedAboutAsFastAsItIsParsed)
{
    juce::MemoryOutputStream written;
    written << R"({"schemaVersion":1,"genres":["x")";

    for (int i = 0; written.getDataSize() < 500000; ++i)
        written << ",\"" << i << '"';

    written << "]}";
    const auto text = written.toString();
    const auto begin = juce::Time::getHighResolutionTicks();
    ASSERT_FALSE (BoundedJson::parse (text).isVoid());
    const auto parsed = juce::Time::getHighResolutionTicks();
    EXPECT_EQ (errorOnLoading (text), "invalid_creator_profile");
    const auto loaded = juce::Time::getHighResolutionTicks();

    EXPECT_LT (loaded - parsed, 30 * (parsed - begin)) << "without a limit it is a thousand times as long";
}
