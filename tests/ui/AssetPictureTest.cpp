#include "AssetPictureScene.h"
#include "support/ThreadRefusal.h"

#include <thread>

using namespace zorva::test;

//==============================================================================
TEST (AssetPicture, IsAskedForWhenItIsFirstPainted)
{
    PictureOwner owner (wideName);
    pump();
    EXPECT_FALSE (AssetPicture::isAnyLoading()) << "not before";

    EXPECT_TRUE (isBlank (owner));
    waitForPictures();
    EXPECT_FALSE (isBlank (owner));
}

TEST (AssetPicture, PaintingWaitsForNothing)
{
    const auto owners = askForMany();
    EXPECT_TRUE (AssetPicture::isAnyLoading()) << "all are painted, and the worker is at it";
    EXPECT_EQ (AssetPicture::bytesHeld(), (size_t) 0);

    waitForPictures();

    for (const auto& owner : owners)
        EXPECT_FALSE (isBlank (*owner));
}

TEST (AssetPicture, IsDecodedOffTheMessageThreadAndHandedOverOnIt)
{
    PictureOwner owner (wideName);
    RepaintWatch repaints (owner);
    isBlank (owner);

    ASSERT_TRUE (waitWithoutMessages()) << "the worker needs no message loop";
    EXPECT_EQ (repaints.count(), 0);
    EXPECT_EQ (AssetPicture::bytesHeld(), (size_t) 0);
    EXPECT_TRUE (isBlank (owner)) << "what is ready is taken by a message";

    pump();
    EXPECT_EQ (repaints.count(), 1) << "and the owner is painted anew";
    EXPECT_GT (AssetPicture::bytesHeld(), (size_t) 0);
    EXPECT_FALSE (isBlank (owner));
}

TEST (AssetPicture, IsMadeReadyOnceForASize)
{
    PictureOwner owner (wideName);
    RepaintWatch repaints (owner);

    for (int i = 0; i < 20; ++i)
        isBlank (owner);

    waitForPictures();
    ASSERT_EQ (repaints.count(), 1) << "twenty paintings asked once";
    const auto held = AssetPicture::bytesHeld();

    for (int i = 0; i < 20; ++i)
    {
        EXPECT_FALSE (isBlank (owner));
        EXPECT_FALSE (AssetPicture::isAnyLoading()) << i;
    }

    waitForPictures();
    EXPECT_EQ (repaints.count(), 1);
    EXPECT_EQ (AssetPicture::bytesHeld(), held);
}

TEST (AssetPicture, KeepsACopyForEachOfTwoSizes)
{
    PictureOwner owner (wideName);
    const juce::Rectangle<int> small (20, 10, 160, 72), large (20, 10, 320, 144);
    owner.box = small;
    load (owner);
    EXPECT_EQ (AssetPicture::bytesHeld(), bytesOfCopy (160, 72)) << "the copy alone, not the picture";
    owner.box = large;
    load (owner);
    EXPECT_EQ (AssetPicture::bytesHeld(), bytesOfCopy (160, 72) + bytesOfCopy (320, 144));

    for (int i = 0; i < 10; ++i)
    {
        owner.box = i % 2 == 0 ? small : large;
        EXPECT_FALSE (drawnBy (owner).rescaled);
        EXPECT_EQ (drawnBy (owner).image.getWidth(), owner.box.getWidth());
        EXPECT_FALSE (AssetPicture::isAnyLoading()) << "both are there";
    }
}

TEST (AssetPicture, ManySizesDoNotFillTheMemory)
{
    PictureOwner owner (wideName);

    for (int width = 200; width <= 360; width += 20)
    {
        owner.box = { 0, 0, width, width * 9 / 20 };
        load (owner);
        EXPECT_EQ (drawnBy (owner).image.getWidth(), width);
        EXPECT_LT (AssetPicture::bytesHeld(), 3 * bytesOfCopy (width, width * 9 / 20));
    }
}

TEST (AssetPicture, GivesItsMemoryBack)
{
    {
        PictureOwner wide (wideName), square (squareName);
        load (wide);
        load (square);
        EXPECT_EQ (AssetPicture::bytesHeld(), bytesOfCopy (320, 144) + bytesOfCopy (144, 144));
    }

    EXPECT_EQ (AssetPicture::bytesHeld(), (size_t) 0);
}

//==============================================================================
TEST (AssetPicture, ANameThatIsNotCompiledInIsNeverDrawn)
{
    PictureOwner owner ("no_such_picture_png");
    RepaintWatch repaints (owner);

    for (int i = 0; i < 3; ++i)
    {
        EXPECT_TRUE (isBlank (owner));
        waitForPictures();
    }

    EXPECT_TRUE (isBlank (owner));
    EXPECT_FALSE (AssetPicture::isAnyLoading()) << "nobody looks again";
    EXPECT_EQ (AssetPicture::bytesHeld(), (size_t) 0);
    EXPECT_EQ (repaints.count(), 0);
}

TEST (AssetPicture, WhatIsNoPictureIsNeverDrawnAndNeverTriedAgain)
{
    PictureOwner owner ("FallbackManifest_json");
    isBlank (owner);
    waitForPictures();

    for (int i = 0; i < 50; ++i)
    {
        EXPECT_TRUE (isBlank (owner));
        EXPECT_FALSE (AssetPicture::isAnyLoading()) << i;
    }

    EXPECT_EQ (AssetPicture::bytesHeld(), (size_t) 0);
}

TEST (AssetPicture, WithoutAThreadNothingIsDrawnAndNothingWaits)
{
    PictureOwner owner (wideName);
    refuseNewThreads();
    EXPECT_TRUE (isBlank (owner));
    EXPECT_TRUE (pumpUntil ([] { return ! AssetPicture::isAnyLoading(); }, 10000)) << "nothing stays pending";
    EXPECT_TRUE (isBlank (owner));
}

TEST (AssetPicture, IsAskedForAgainWhenAThreadCouldNotBeStarted)
{
    PictureOwner owner (wideName);
    bool blank = false, loading = true;

    std::thread refused ([&]
    {
        refuseNewThreads();     // here alone
        blank = isBlank (owner);
        loading = AssetPicture::isAnyLoading();
    });

    refused.join();
    EXPECT_TRUE (blank);
    EXPECT_FALSE (loading);

    load (owner);
    EXPECT_FALSE (isBlank (owner));
}

TEST (AssetPicture, HiddenOrWithoutRoomAsksForNothing)
{
    juce::Component room;
    PictureOwner hidden (wideName), empty (wideName);
    room.setSize (400, 300);
    room.addChildComponent (hidden);
    hidden.setVisible (false);
    room.addAndMakeVisible (empty);

    using Bounds = juce::Rectangle<int>;

    for (const auto& box : { Bounds(), Bounds (20, 10, 0, 144), Bounds (20, 10, 320, 0), Bounds (20, 10, -5, -5) })
    {
        empty.box = box;
        pictureOf (room);
        EXPECT_FALSE (AssetPicture::isAnyLoading()) << box.toString();
    }

    hidden.setVisible (true);
    pictureOf (room);
    waitForPictures();
    EXPECT_EQ (AssetPicture::bytesHeld(), bytesOfCopy (320, 144)) << "the one that is shown now";
}

TEST (AssetPicture, AComponentMayGoWhileItsPictureIsDecoded)
{
    auto owners = askForMany();
    EXPECT_TRUE (AssetPicture::isAnyLoading());
    owners.clear();
    EXPECT_FALSE (AssetPicture::isAnyLoading()) << "what waited is dropped, and what ran has ended";
    waitForPictures();
    EXPECT_EQ (AssetPicture::bytesHeld(), (size_t) 0) << "what comes late is dropped";

    PictureOwner another (wideName);
    load (another);
    EXPECT_FALSE (isBlank (another)) << "and the worker goes on";
}

TEST (AssetPicture, AComponentMayGoWhenItsPictureIsReadyButNotTaken)
{
    auto owner = std::make_unique<PictureOwner> (wideName);
    isBlank (*owner);
    ASSERT_TRUE (waitWithoutMessages());
    owner.reset();
    pump();
    EXPECT_EQ (AssetPicture::bytesHeld(), (size_t) 0);
}
