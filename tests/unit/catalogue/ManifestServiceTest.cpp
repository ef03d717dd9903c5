#include "app/HubPaths.h"
#include "catalogue/ManifestParser.h"
#include "catalogue/ManifestService.h"
#include "support/Files.h"
#include "support/LogCapture.h"
#include "support/ManifestBuilder.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
/** The ids with their versions, joined by blanks. */
std::string shortList (const std::vector<Product>& products)
{
    juce::StringArray texts;

    for (const auto& product : products)
        texts.add (product.id + "=" + product.version);

    return texts.joinIntoString (" ").toStdString();
}

void writeCache (const juce::String& text)       { write (HubPaths::manifestCacheFile(), text); }
void writeOverride (const juce::String& text)    { write (HubPaths::manifestLocalFile(), text); }

juce::var emptySettings()                        { return new juce::DynamicObject(); }

const char* const fallbackOnly = "zorva-daw=13.0.0";

std::vector<juce::String> unusable()
{
    return
    {
        "", "no JSON", "null", "[]", manifest ({}), manifest ({ with (application ("a"), "name", "") }), manifest ({ application ("-a") }),
        juce::String::repeatedString ("[", 100000),
    };
}

Product product (const juce::String& id, const juce::String& version, const juce::String& url = {})
{
    auto entry = application (id, version);

    if (url.isNotEmpty())
        entry = withPlatform (entry, platform (url));

    return parseManifest (manifest ({ entry })).at (0);
}
}

//==============================================================================
TEST (ManifestService, AFirstStartWithoutFilesShowsTheFallbackOffline)
{
    const auto settings = emptySettings();
    const ManifestService service (settings);

    EXPECT_EQ (shortList (service.getProducts()), fallbackOnly);
    EXPECT_FALSE (service.isOnline());
    EXPECT_FALSE (isThere (HubPaths::root())) << "loading makes nothing";
}

TEST (ManifestService, AStartShowsTheCacheMergedWithTheFallback)
{
    writeCache (manifest ({ application ("b"), application ("a", "2.0") }));
    const auto settings = emptySettings();
    const ManifestService service (settings);

    EXPECT_EQ (shortList (service.getProducts()), "b=1.0.0 a=2.0 zorva-daw=13.0.0");
    EXPECT_FALSE (service.isOnline());
}

TEST (ManifestService, AUsableOverrideStandsAlone)
{
    writeCache (manifest ({ application ("b") }));
    writeOverride (manifest ({ application ("mine") }));

    EXPECT_EQ (shortList (loadProducts()), "mine=1.0.0");
}

TEST (ManifestService, AnUnusableOverrideCountsAsAbsent)
{
    writeCache (manifest ({ application ("b") }));
    const LogCapture log;

    for (const auto& text : unusable())
    {
        writeOverride (text);
        EXPECT_EQ (shortList (loadProducts()), "b=1.0.0 zorva-daw=13.0.0") << text.substring (0, 40);
        EXPECT_EQ (read (HubPaths::manifestLocalFile()), text.toStdString());
    }

    EXPECT_TRUE (log.lines().isEmpty());
}

TEST (ManifestService, AnUnusableCacheCountsAsAbsentAndStays)
{
    for (const auto& text : unusable())
    {
        writeCache (text);
        EXPECT_EQ (shortList (loadProducts()), fallbackOnly) << text.substring (0, 40);
        EXPECT_EQ (read (HubPaths::manifestCacheFile()), text.toStdString());
    }
}

TEST (ManifestService, FoldersInThePlacesOfTheFilesCountAsAbsent)
{
    ASSERT_TRUE (HubPaths::manifestCacheFile().createDirectory().wasOk());
    ASSERT_TRUE (HubPaths::manifestLocalFile().createDirectory().wasOk());

    EXPECT_EQ (shortList (loadProducts()), fallbackOnly);
}

//==============================================================================
TEST (ManifestService, ALowerCachedVersionIsReplacedWholeInItsPlace)
{
    auto old = withPlatform (with (application ("zorva-daw", "12.9.9"), "releaseNotes", list ({})), platform());
    old = with (with (old, "name", "Old name"), "vendor", "Old vendor");
    writeCache (manifest ({ application ("a"), old, application ("z") }));
    const auto products = loadProducts();

    ASSERT_EQ (shortList (products), "a=1.0.0 zorva-daw=13.0.0 z=1.0.0");
    EXPECT_EQ (products[1].name, "ZORVA DAW");
    EXPECT_EQ (products[1].vendor, "ZORVA DAW");
    EXPECT_EQ (products[1].releaseNotes.size(), 1u);
    EXPECT_EQ (products[1].windowsPlatform(), nullptr);
    EXPECT_EQ (products[1].platforms.count ("mac"), 1u);
}

TEST (ManifestService, AnEqualOrHigherCachedVersionKeepsItsDownloadData)
{
    for (const char* version : { "13.0.0", "13", "13.0.0-rc1", "13.0.1", "14" })
    {
        writeCache (manifest ({ withPlatform (application ("zorva-daw", version), platform ("https://cached.example/x.exe")) }));
        const auto products = loadProducts();

        ASSERT_EQ (products.size(), 1u) << version;
        EXPECT_EQ (products[0].version, version);
        ASSERT_NE (products[0].windowsPlatform(), nullptr) << version;
        EXPECT_EQ (products[0].windowsPlatform()->url, "https://cached.example/x.exe");
    }
}

TEST (ManifestService, MergingMatchesIdsWithoutRegardToCase)
{
    const auto merged = mergeProducts ({ product ("A", "1.0"), product ("B", "2.0") }, { product ("a", "1.1"), product ("b", "1.9") });

    EXPECT_EQ (shortList (merged), "a=1.1 B=2.0");
}

TEST (ManifestService, MergingKeepsTheCachedOrderAndAppendsWhatIsMissing)
{
    const auto merged = mergeProducts ({ product ("c", "1"), product ("a", "1"), product ("b", "1") },
                                       { product ("new-2", "1"), product ("b", "2"), product ("new-1", "1"), product ("c", "0.9") });

    EXPECT_EQ (shortList (merged), "c=1 a=1 b=2 new-2=1 new-1=1");
}

TEST (ManifestService, MergingWithNothingGivesTheOtherList)
{
    EXPECT_EQ (shortList (mergeProducts ({}, { product ("a", "1"), product ("b", "1") })), "a=1 b=1");
    EXPECT_EQ (shortList (mergeProducts ({ product ("a", "1"), product ("b", "1") }, {})), "a=1 b=1");
    EXPECT_TRUE (mergeProducts ({}, {}).empty());
}

//==============================================================================
TEST (ManifestService, ClearCacheDeletesTheFileAndKeepsTheList)
{
    writeCache (manifest ({ application ("a") }));
    writeOverride ("unusable");
    const auto settings = emptySettings();
    ManifestService service (settings);
    service.clearCache();

    EXPECT_FALSE (isThere (HubPaths::manifestCacheFile()));
    EXPECT_TRUE (isThere (HubPaths::manifestLocalFile())) << "the Hub never deletes the user's own file";
    EXPECT_EQ (shortList (service.getProducts()), "a=1.0.0 zorva-daw=13.0.0");
    EXPECT_FALSE (service.isOnline());
    service.clearCache();
}

TEST (ManifestService, TheSettingClearsTheCacheBeforeTheFirstLoad)
{
    for (const bool clears : { true, false })
    {
        writeCache (manifest ({ application ("a") }));
        auto settings = emptySettings();
        settings.getDynamicObject()->setProperty ("clearManifestCacheOnStartup", clears);
        const ManifestService service (settings);

        EXPECT_EQ (shortList (service.getProducts()), clears ? fallbackOnly : "a=1.0.0 zorva-daw=13.0.0");
        EXPECT_EQ (isThere (HubPaths::manifestCacheFile()), ! clears);
    }
}
