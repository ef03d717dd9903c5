#include "catalogue/ManifestParser.h"

#include <BinaryData.h>
#include <gtest/gtest.h>

namespace
{
juce::String fallbackText()
{
    return juce::String::fromUTF8 (BinaryData::FallbackManifest_json, BinaryData::FallbackManifest_jsonSize);
}
}

TEST (FallbackManifest, HasExactly1124Bytes)
{
    EXPECT_EQ (BinaryData::FallbackManifest_jsonSize, 1124);
    EXPECT_EQ (fallbackText().getNumBytesAsUTF8(), 1124u) << "no byte of it is lost in reading";
}

TEST (FallbackManifest, HoldsOneProductWithoutADownloadForWindows)
{
    const auto products = parseManifest (fallbackText());

    ASSERT_EQ (products.size(), 1u);
    const auto& product = products.front();
    EXPECT_EQ (product.id, "zorva-daw");
    EXPECT_EQ (product.name, "ZORVA DAW");
    EXPECT_EQ (product.vendor, "ZORVA DAW");
    EXPECT_EQ (product.version, "13.0.0");
    EXPECT_EQ (product.category, "DAW");
    EXPECT_TRUE (product.description.isNotEmpty());
    EXPECT_TRUE (product.releaseDate.isNotEmpty());
    EXPECT_EQ (product.sizeBytes, 0);
    EXPECT_EQ (product.installType, Product::InstallType::application);
    ASSERT_EQ (product.releaseNotes.size(), 1u);
    EXPECT_TRUE (product.releaseNotes.front().title.isNotEmpty());
    ASSERT_EQ (product.platforms.size(), 1u);
    EXPECT_GE (product.platforms.at ("mac").sizeBytes, 1);
    EXPECT_EQ (product.windowsPlatform(), nullptr);
}

TEST (FallbackManifest, HasTheShapeOfAPublishedManifest)
{
    const auto document = juce::JSON::parse (fallbackText());
    const auto product = document["products"][0];

    EXPECT_EQ ((int) document["manifestVersion"], 1);
    EXPECT_FALSE (product.hasProperty ("sizeBytes"));

    for (const char* key : { "url", "sha256", "sizeBytes", "minimumOS", "architecture" })
        EXPECT_TRUE (product["platforms"]["mac"].hasProperty (key)) << key;
}
