#include "catalogue/ManifestParser.h"
#include "support/ManifestBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
std::vector<Product> parse (const juce::var& product)
{
    return parseManifest (manifest ({ product }));
}

bool acceptsPlatform (const juce::var& entry, const juce::String& key = "win")
{
    return ! parse (withPlatform (application ("a"), entry, key)).empty();
}
}

TEST (ManifestParser, AProductWithoutPlatformsHasAnEmptyMap)
{
    const auto products = parse (application ("a"));
    ASSERT_EQ (products.size(), 1u);
    EXPECT_TRUE (products[0].platforms.empty());
}

TEST (ManifestParser, PlatformsThatAreNoObjectCountAsAbsent)
{
    for (const auto& platforms : { juce::var(), juce::var (1), juce::var ("win"), list ({ platform ("http://not even https") }) })
    {
        const auto products = parse (with (application ("a"), "platforms", platforms));
        ASSERT_EQ (products.size(), 1u) << json (platforms);
        EXPECT_TRUE (products[0].platforms.empty()) << json (platforms);
    }
}

TEST (ManifestParser, KeepsEveryPlatformUnderItsNameAsWritten)
{
    auto entry = withPlatform (application ("a"), platform ("https://a.example/win", someSha256, 1));
    entry = withPlatform (entry, platform ("https://a.example/mac", someSha256, 2), "mac");
    entry = withPlatform (entry, platform ("https://a.example/other", someSha256, 3), "Win");
    const auto products = parse (entry);

    ASSERT_EQ (products.size(), 1u);
    ASSERT_EQ (products[0].platforms.size(), 3u);
    EXPECT_EQ (products[0].platforms.at ("win").url, "https://a.example/win");
    EXPECT_EQ (products[0].platforms.at ("mac").sizeBytes, 2);
    EXPECT_EQ (products[0].platforms.at ("Win").sizeBytes, 3);
    EXPECT_EQ (products[0].windowsPlatform(), &products[0].platforms.at ("win"));
}

TEST (ManifestParser, StoresTheDigestInLowerCaseAndNeitherAddressNorDigestTrimmed)
{
    const auto digest = juce::String (someSha256).toUpperCase();
    const auto products = parse (withPlatform (application ("a"), platform (" HTTPS://A.example/X ", " " + digest + "\n")));

    ASSERT_EQ (products.size(), 1u);
    EXPECT_EQ (products[0].platforms.at ("win").url, " HTTPS://A.example/X ");
    EXPECT_EQ (products[0].platforms.at ("win").sha256, " " + juce::String (someSha256) + "\n");
}

TEST (ManifestParser, EveryPlatformIsAnObject)
{
    for (const char* key : { "win", "mac", "anything" })
        for (const auto& entry : { juce::var(), juce::var (1), juce::var ("text"), juce::var (false), list ({}), list ({ platform() }) })
            EXPECT_FALSE (acceptsPlatform (entry, key)) << key << " " << json (entry);
}

TEST (ManifestParser, EveryPlatformHasAValidDownloadWhateverItsKey)
{
    for (const char* key : { "win", "mac" })
    {
        EXPECT_TRUE (acceptsPlatform (platform(), key));

        for (const char* url : { "", "http://a.example/x", "https://", "a.example/x" })
            EXPECT_FALSE (acceptsPlatform (platform (url), key)) << key << " " << url;

        for (const auto& digest : { juce::String(), juce::String (someSha256).substring (1), someSha256 + juce::String ("0"),
                                    "g" + juce::String (someSha256).substring (1) })
            EXPECT_FALSE (acceptsPlatform (platform ("https://a.example/x", digest), key)) << key << " " << digest;

        for (const char* missing : { "url", "sha256", "sizeBytes" })
            EXPECT_FALSE (acceptsPlatform (without (platform(), missing), key)) << key << " " << missing;
    }
}

TEST (ManifestParser, EveryPlatformHasAtLeastOneByte)
{
    const struct { juce::var size; juce::int64 stored; } cases[]
    {
        { 1, 1 }, { 0, 0 }, { -1, 0 }, { "", 0 }, { "5", 5 }, { "none", 0 }, { juce::var(), 0 }, { 0.9, 0 }, { 1.9, 1 },
        { juce::int64 (5000000000), 5000000000 }, { 1e30, std::numeric_limits<juce::int64>::max() }, { -1e30, 0 },
    };

    for (const auto& test : cases)
    {
        const auto products = parse (withPlatform (application ("a"), with (platform(), "sizeBytes", test.size)));
        ASSERT_EQ (products.size(), test.stored > 0 ? 1u : 0u) << json (test.size);

        if (test.stored > 0)
            EXPECT_EQ (products[0].platforms.at ("win").sizeBytes, test.stored) << json (test.size);
    }
}

TEST (ManifestParser, OneBadPlatformAmongGoodOnesIsFatal)
{
    const auto good = withPlatform (application ("a"), platform());
    EXPECT_EQ (parse (withPlatform (good, platform ("https://a.example/x", someSha256, 1), "mac")).size(), 1u);
    EXPECT_EQ (parse (withPlatform (good, platform ("https://a.example/x", someSha256, 0), "mac")).size(), 0u);
}
