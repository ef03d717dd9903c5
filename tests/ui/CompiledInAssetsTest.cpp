#include <BinaryData.h>
#include <gtest/gtest.h>
#include <juce_graphics/juce_graphics.h>

TEST (CompiledInAssets, AllNineteenAreThereAndEveryPictureDecodes)
{
    const char* const names[] { "ZorvaSplashLogo_png", "ZorvaAppIcon_png", "FallbackManifest_json", "zorva_community_hero_people_v1_png",
                                "fictional_producer_preview_png", "fictional_black_male_producer_preview_png",
                                "fictional_black_female_producer_preview_png", "zorvadawstagewellhubbannerv1_jpg", "zorvasynthspack_png",
                                "zorvahiphoppack_png", "zorvadrumpack_png", "zorvaafrobeatspack_png", "drums_bg_png", "electronic_drums_bg_png",
                                "bass_bg_png", "keys_bg_png", "guitar_bg_png", "synth_bg_png", "sound_designer_bg_png" };
    int total = 0;

    for (const auto* name : names)
    {
        int size = 0;
        const auto* data = BinaryData::getNamedResource (name, size);
        ASSERT_NE (data, nullptr) << name;
        total += size;

        if (! juce::String (name).endsWith ("_json"))
            EXPECT_TRUE (juce::ImageFileFormat::loadFrom (data, (size_t) size).isValid()) << name;
    }

    EXPECT_EQ ((int) std::size (names), 19);
    EXPECT_EQ (BinaryData::namedResourceListSize, 19);
    EXPECT_LE (total, 8 * 1024 * 1024);
}
