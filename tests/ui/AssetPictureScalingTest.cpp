#include "AssetPictureScene.h"

using namespace zorva::test;

//==============================================================================
TEST (AssetPicture, NothingIsRescaledWhilePainting)
{
    for (const float scale : { 1.0f, 1.25f, 1.5f, 2.0f, 3.0f })
        for (const bool covers : { false, true })
        {
            SCOPED_TRACE (std::to_string (scale) + (covers ? " cover" : " whole"));
            PictureOwner owner (wideName);
            owner.covers = covers;
            recordOf (owner, scale);
            waitForPictures();
            const auto drawn = drawnBy (owner, scale);

            ASSERT_TRUE (drawn.image.isValid());
            EXPECT_FALSE (drawn.rescaled) << "it has the pixels of its place";
            EXPECT_EQ (distanceOf (drawn.place, owner.box.toFloat()), "");
            EXPECT_NEAR (drawn.image.getWidth(), 320.0f * scale, 1.0f);
            EXPECT_NEAR (drawn.image.getHeight(), 144.0f * scale, 1.0f);
        }
}

TEST (AssetPicture, UntilANewSizeIsReadyTheOldOneStandsIn)
{
    PictureOwner owner (wideName);
    owner.box = { 20, 10, 160, 72 };
    load (owner);

    owner.box = { 20, 10, 320, 144 };
    const auto before = drawnBy (owner);
    ASSERT_TRUE (before.image.isValid());
    EXPECT_EQ (distanceOf (before.place, owner.box.toFloat()), "") << "at its new place already";
    EXPECT_EQ (before.image.getWidth(), 160);

    waitForPictures();
    EXPECT_EQ (drawnBy (owner).image.getWidth(), 320);
}

TEST (AssetPicture, WholeItIsCentredAndNeverLargerThanItIs)
{
    struct Case
    {
        const char* name;
        juce::Rectangle<int> box;
    };

    for (const auto& [name, box] : { Case { wideName, { 20, 10, 320, 144 } }, Case { wideName, { 20, 10, 320, 280 } },
                                     Case { wideName, { 20, 10, 100, 280 } }, Case { wideName, { 0, 0, 2000, 1000 } },
                                     Case { squareName, { 5, 5, 300, 200 } }, Case { squareName, { 5, 5, 900, 900 } } })
    {
        SCOPED_TRACE (std::string (name) + " " + box.toString().toStdString());
        PictureOwner owner (name);
        owner.setSize (2000, 1000);
        owner.box = box;
        load (owner);
        const auto drawn = drawnBy (owner);

        ASSERT_TRUE (drawn.image.isValid());
        EXPECT_EQ (distanceOf (drawn.place, placeOfWhole (asset (name), box)), "");
        EXPECT_EQ (differenceToAsset (drawn.image, name), "");
    }
}

TEST (AssetPicture, AsACoverItFillsItsBoxAndIsCutAroundTheFocus)
{
    const auto whole = asset (wideName);

    for (const float focus : { 0.0f, 0.3f, 0.5f, 0.7f, 1.0f })
    {
        SCOPED_TRACE (focus);
        PictureOwner owner (wideName);
        owner.covers = true;
        owner.focus = focus;
        owner.box = { 20, 10, 144, 144 };
        load (owner);
        const auto drawn = drawnBy (owner);

        ASSERT_TRUE (drawn.image.isValid());
        EXPECT_EQ (distanceOf (drawn.place, owner.box.toFloat()), "");
        const int x = juce::jlimit (0, 1600 - 720, juce::roundToInt (1600.0f * focus) - 360);
        EXPECT_EQ (differenceBySquares (drawn.image, scaledTo (whole.getClippedImage ({ x, 0, 720, 720 }).createCopy(), 144, 144)), "");
    }
}
