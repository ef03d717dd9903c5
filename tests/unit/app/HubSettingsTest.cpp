#include "app/HubPaths.h"
#include "app/HubSettings.h"
#include "app/PathTrust.h"
#include "support/Files.h"
#include "support/PrivateMounts.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
juce::var settingsWith (const juce::Identifier& key, const juce::var& value)
{
    juce::DynamicObject::Ptr object = new juce::DynamicObject();
    object->setProperty (key, value);
    return object.get();
}

bool isEmptyObject (const juce::var& settings)
{
    const auto* object = settings.getDynamicObject();
    return object != nullptr && object->getProperties().isEmpty();
}

/** What a reader finds who starts now. */
juce::var stored()
{
    return juce::JSON::parse (HubPaths::settingsFile().loadFileAsString());
}
}

//==============================================================================
TEST (HubSettings, TheBuiltInAddressIsAnHttpsEndpointForAManifest)
{
    const juce::URL url { juce::String (HubSettings::defaultManifestUrl) };

    EXPECT_TRUE (PathTrust::isHttpsUrl (HubSettings::defaultManifestUrl));
    EXPECT_EQ (url.getSubPath(), "manifest.json");
}

TEST (HubSettings, LoadGivesAnEmptyObjectWithoutAFile)
{
    EXPECT_TRUE (isEmptyObject (HubSettings::load()));
    EXPECT_FALSE (isThere (HubPaths::root())) << "loading makes nothing";
}

TEST (HubSettings, LoadGivesAnEmptyObjectForWhatIsNoJsonObjectAndLeavesTheFile)
{
    const struct { const char* name; juce::String content; } cases[]
    {
        { "empty file", "" },
        { "no JSON", "manifestUrl = https://a.example" },
        { "cut off", "{ \"manifestUrl\": \"https://a.exa" },
        { "array", "[ { \"manifestUrl\": \"https://a.example/m.json\" } ]" },
        { "string", "\"manifestUrl\"" },
        { "number", "7" },
        { "null", "null" },
        { "nested beyond reason", juce::String::repeatedString ("[", 100000) },
        { "object nested beyond reason", "{ \"manifestUrl\": " + juce::String::repeatedString ("[", 100000) },
    };

    for (const auto& test : cases)
    {
        SCOPED_TRACE (test.name);
        write (HubPaths::settingsFile(), test.content);

        EXPECT_TRUE (isEmptyObject (HubSettings::load()));
        EXPECT_EQ (read (HubPaths::settingsFile()), test.content.toStdString());
    }
}

TEST (HubSettings, LoadGivesAnEmptyObjectWhenTheFileIsAFolder)
{
    ASSERT_TRUE (HubPaths::settingsFile().createDirectory().wasOk());
    EXPECT_TRUE (isEmptyObject (HubSettings::load()));
}

TEST (HubSettings, LoadReadsAnObjectWhateverItsKeys)
{
    write (HubPaths::settingsFile(), "{ \"manifestUrl\": \"https://a.example/m.json\", \"other\": [ 1, 2 ] }");
    const auto settings = HubSettings::load();

    EXPECT_EQ (HubSettings::getManifestUrl (settings), "https://a.example/m.json");
    EXPECT_EQ (settings["other"].size(), 2);
}

//==============================================================================
TEST (HubSettings, ManifestUrlIsTheStoredTextOrTheBuiltInOne)
{
    const juce::String builtIn (HubSettings::defaultManifestUrl);
    const struct { const char* name; juce::var settings; juce::String expected; } cases[]
    {
        { "key absent", settingsWith ("other", 1), builtIn },
        { "key empty", settingsWith ("manifestUrl", ""), builtIn },
        { "key null", settingsWith ("manifestUrl", {}), builtIn },
        { "settings void", juce::var(), builtIn },
        { "settings an array", juce::var (juce::Array<juce::var>()), builtIn },
        { "settings a text", juce::var ("https://a.example/m.json"), builtIn },
        { "an address", settingsWith ("manifestUrl", "https://a.example/m.json"), "https://a.example/m.json" },
        { "not trimmed", settingsWith ("manifestUrl", " https://a.example/m.json "), " https://a.example/m.json " },
        { "blanks are not empty", settingsWith ("manifestUrl", "  "), "  " },
        { "not validated", settingsWith ("manifestUrl", "http://a.example"), "http://a.example" },
        { "a number reads as its text", settingsWith ("manifestUrl", 12), "12" },
    };

    for (const auto& test : cases)
        EXPECT_EQ (HubSettings::getManifestUrl (test.settings), test.expected) << test.name;
}

TEST (HubSettings, IsDefaultOnlyForExactlyTheBuiltInAddress)
{
    const juce::String builtIn (HubSettings::defaultManifestUrl);

    EXPECT_TRUE (HubSettings::isDefaultManifestUrl (juce::var()));
    EXPECT_TRUE (HubSettings::isDefaultManifestUrl (settingsWith ("manifestUrl", "")));
    EXPECT_TRUE (HubSettings::isDefaultManifestUrl (settingsWith ("manifestUrl", builtIn)));
    EXPECT_FALSE (HubSettings::isDefaultManifestUrl (settingsWith ("manifestUrl", builtIn + " ")));
    EXPECT_FALSE (HubSettings::isDefaultManifestUrl (settingsWith ("manifestUrl", builtIn.toUpperCase())));
    EXPECT_FALSE (HubSettings::isDefaultManifestUrl (settingsWith ("manifestUrl", " ")));
}

TEST (HubSettings, SetManifestUrlTrimsAndSaves)
{
    auto settings = HubSettings::load();
    HubSettings::setManifestUrl (settings, " \t https://a.example/m.json \r\n");

    EXPECT_EQ (HubSettings::getManifestUrl (settings), "https://a.example/m.json");
    EXPECT_EQ (HubSettings::getManifestUrl (HubSettings::load()), "https://a.example/m.json");
}

TEST (HubSettings, AnEmptyManifestUrlIsStoredEmptyAndReadsAsTheBuiltInOne)
{
    auto settings = settingsWith ("manifestUrl", "https://a.example/m.json");
    HubSettings::setManifestUrl (settings, "   ");

    EXPECT_TRUE (stored().hasProperty ("manifestUrl"));
    EXPECT_EQ (stored()["manifestUrl"].toString(), "");
    EXPECT_TRUE (HubSettings::isDefaultManifestUrl (HubSettings::load()));
}

TEST (HubSettings, ClearManifestCacheOnStartupIsFalseUntilItIsSet)
{
    auto settings = HubSettings::load();
    EXPECT_FALSE (HubSettings::getClearManifestCacheOnStartup (settings));
    EXPECT_FALSE (HubSettings::getClearManifestCacheOnStartup (juce::var()));

    HubSettings::setClearManifestCacheOnStartup (settings, true);
    EXPECT_TRUE (HubSettings::getClearManifestCacheOnStartup (settings));
    EXPECT_TRUE (HubSettings::getClearManifestCacheOnStartup (HubSettings::load()));
    EXPECT_TRUE (stored()["clearManifestCacheOnStartup"].isBool());

    HubSettings::setClearManifestCacheOnStartup (settings, false);
    EXPECT_FALSE (HubSettings::getClearManifestCacheOnStartup (HubSettings::load()));
}

//==============================================================================
TEST (HubSettings, ASaveWritesJsonWithWindowsLineEndsAndNoByteOrderMark)
{
    auto settings = HubSettings::load();
    HubSettings::setManifestUrl (settings, "https://a.example/m.json");
    HubSettings::setClearManifestCacheOnStartup (settings, true);

    EXPECT_EQ (read (HubPaths::settingsFile()),
               "{\r\n"
               "  \"manifestUrl\": \"https://a.example/m.json\",\r\n"
               "  \"clearManifestCacheOnStartup\": true\r\n"
               "}");
}

TEST (HubSettings, ASaveKeepsKeysThatTheHubDoesNotKnow)
{
    write (HubPaths::settingsFile(), utf8 ("{ \"vaultPath\": \"D:/Vault\", \"plug-in\": { \"größe\": [ 1, 2.5, null, true ] }, \"manifestUrl\": \"x\" }"));
    const auto before = HubSettings::load();
    auto settings = HubSettings::load();
    HubSettings::setManifestUrl (settings, "https://a.example/m.json");
    const auto after = HubSettings::load();

    EXPECT_EQ (after["vaultPath"], before["vaultPath"]);
    EXPECT_EQ (juce::JSON::toString (after["plug-in"]), juce::JSON::toString (before["plug-in"]));
    EXPECT_EQ (after["manifestUrl"].toString(), "https://a.example/m.json");
}

TEST (HubSettings, ASaveReplacesAFileThatHeldAnArray)
{
    write (HubPaths::settingsFile(), "[ 1, 2, 3 ]");
    auto settings = HubSettings::load();
    EXPECT_TRUE (HubSettings::isDefaultManifestUrl (settings));
    EXPECT_FALSE (HubSettings::getClearManifestCacheOnStartup (settings));

    HubSettings::setClearManifestCacheOnStartup (settings, true);
    EXPECT_EQ (read (HubPaths::settingsFile()), "{\r\n  \"clearManifestCacheOnStartup\": true\r\n}");
}

TEST (HubSettings, ASaveMakesTheDirectoriesAndLeavesNothingBesideTheFile)
{
    auto settings = HubSettings::load();
    HubSettings::setProperty (settings, "manifestUrl", "https://a.example/m.json");
    HubSettings::setProperty (settings, "manifestUrl", "https://b.example/m.json");

    auto tree = treeOf (HubPaths::root());
    EXPECT_EQ (tree.erase ("settings.json"), 1u);
    EXPECT_EQ (tree, (Tree { { "Vault", "folder" }, { "Runtime", "folder" }, { "Creator", "folder" }, { "Creator/Publish Drafts", "folder" } }));
}

TEST (HubSettings, ASaveStillWorksWhenADirectoryCannotBeMade)
{
    write (HubPaths::vaultDirectory(), "a file where the Vault belongs");
    auto settings = HubSettings::load();
    HubSettings::setManifestUrl (settings, "https://a.example/m.json");

    EXPECT_EQ (HubSettings::getManifestUrl (HubSettings::load()), "https://a.example/m.json");
}

TEST (HubSettings, TextOutsideAsciiSurvivesASave)
{
    auto settings = HubSettings::load();
    HubSettings::setProperty (settings, "note", utf8 ("Größe 音 🎹 \"quoted\" \\"));

    EXPECT_EQ (HubSettings::load()["note"].toString(), utf8 ("Größe 音 🎹 \"quoted\" \\"));
}

TEST (HubSettings, AFailedSaveKeepsTheOldFileAndTheNewValueInMemory)
{
    auto settings = HubSettings::load();
    HubSettings::setManifestUrl (settings, "https://old.example/m.json");
    const auto before = treeOf (HubPaths::root());
    const ReadOnlyFolder locked (HubPaths::root());
    HubSettings::setManifestUrl (settings, "https://new.example/m.json");

    EXPECT_EQ (treeOf (HubPaths::root()), before);
    EXPECT_EQ (HubSettings::getManifestUrl (settings), "https://new.example/m.json");
}

TEST (HubSettings, ASaveOnAFullDiskKeepsTheOldFile)
{
    ASSERT_TRUE (HubPaths::root().createDirectory().wasOk());

    for (const auto fillUp : { &SmallDisk::fill, &SmallDisk::fillWithBytes })
    {
        SmallDisk disk (HubPaths::root(), 20);
        auto settings = HubSettings::load();
        HubSettings::setManifestUrl (settings, "https://old.example/m.json");
        const auto before = treeOf (HubPaths::root());
        (disk.*fillUp)();
        HubSettings::setManifestUrl (settings, "https://new.example/m.json");
        disk.clear();

        EXPECT_EQ (treeOf (HubPaths::root()), before);
        EXPECT_EQ (HubSettings::getManifestUrl (settings), "https://new.example/m.json");
    }
}

TEST (HubSettings, SettingAPropertyOfNoObjectDoesNothing)
{
    for (auto settings : { juce::var(), juce::var (3), juce::var ("text"), juce::var (juce::Array<juce::var>()) })
    {
        const auto before = juce::JSON::toString (settings);
        HubSettings::setProperty (settings, "manifestUrl", "https://a.example/m.json");
        HubSettings::setManifestUrl (settings, "https://a.example/m.json");
        HubSettings::setClearManifestCacheOnStartup (settings, true);

        EXPECT_EQ (juce::JSON::toString (settings), before);
        EXPECT_FALSE (isThere (HubPaths::settingsFile()));
    }
}
