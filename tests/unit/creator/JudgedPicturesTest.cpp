#include "creator/ImageRules.h"
#include "creator/JudgedPictures.h"
#include "support/Files.h"
#include "support/PictureBuilder.h"

#include <gtest/gtest.h>

using namespace zorva::test;

TEST (JudgedPictures, KnowsWhatItWasTold)
{
    JudgedPictures judged;
    EXPECT_EQ (judged.verdictOn ("a"), std::nullopt);

    judged.remember ("a", true);
    judged.remember ("b", false);
    EXPECT_EQ (judged.verdictOn ("a"), true);
    EXPECT_EQ (judged.verdictOn ("b"), false);
    EXPECT_EQ (judged.verdictOn ("c"), std::nullopt);
}

TEST (JudgedPictures, ADigestThatFailedStandsForNoPicture)
{
    JudgedPictures judged;
    judged.remember ({}, true);
    EXPECT_EQ (judged.verdictOn ({}), std::nullopt);
}

TEST (JudgedPictures, TheOldestOfMoreThanEightIsForgotten)
{
    JudgedPictures judged;

    for (int i = 0; i < 9; ++i)
        judged.remember (juce::String (i), true);

    EXPECT_EQ (judged.verdictOn ("0"), std::nullopt);

    for (int i = 1; i < 9; ++i)
        EXPECT_EQ (judged.verdictOn (juce::String (i)), true) << i;
}

//==============================================================================
TEST (JudgedPictures, APictureIsDecodedOnce)
{
    // The largest there may be; as a file it is small.
    const auto file = writeBytes (in (freshFolder ("pictures"), "large.png"), blankPng (8192, 4096));

    const auto millisecondsToJudge = [&]
    {
        const auto start = juce::Time::getMillisecondCounterHiRes();
        EXPECT_TRUE (isAcceptableProfileImage (file.getFullPathName()));
        return juce::Time::getMillisecondCounterHiRes() - start;
    };

    const auto first = millisecondsToJudge();
    double again = first;

    for (int i = 0; i < 5; ++i)
        again = std::min (again, millisecondsToJudge());

    EXPECT_LT (again, first / 2);
}

TEST (JudgedPictures, AnotherPictureInTheSamePlaceIsJudgedByItself)
{
    const auto file = in (freshFolder ("pictures"), "picture.png");
    const auto good = blankPng (40, 30);
    auto broken = good;
    broken[good.size() / 2] = (char) ~broken[good.size() / 2];

    for (int i = 0; i < 3; ++i)
    {
        EXPECT_TRUE (isAcceptableProfileImage (writeBytes (file, good).getFullPathName()));
        EXPECT_FALSE (isAcceptableProfileImage (writeBytes (file, broken).getFullPathName())) << "of the same size";
    }
}
