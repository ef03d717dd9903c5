#include "Models.h"
#include "ui/HeroPrimary.h"

#include <gtest/gtest.h>

using namespace zorva::test;
using State = ProductCardState;

namespace
{
ProductCardModel daw (State state, const juce::String& id = "zorva-daw")
{
    return someModel (state, someProduct (id, "ZORVA DAW"));
}

std::string said (const std::vector<ProductCardModel>& models)
{
    const auto words = heroPrimaryFor (models);
    return (words.text + " | " + words.description).toStdString();
}
}

TEST (HeroPrimary, WithoutTheApplicationItSaysGetAndFind)
{
    EXPECT_EQ (said ({}), "GET ZORVA DAW | Open Library to find ZORVA DAW.");
    EXPECT_EQ (said ({ someModel (State::installed), daw (State::installed, "zorva-daw-extra") }), "GET ZORVA DAW | Open Library to find ZORVA DAW.");
}

TEST (HeroPrimary, FollowsTheStateOfTheApplication)
{
    const std::pair<State, const char*> table[] {
        { State::notInstalled, "GET ZORVA DAW | Open Library to download or install ZORVA DAW." },
        { State::downloading, "GET ZORVA DAW | Open Library to view the current ZORVA DAW download." },
        { State::cached, "GET ZORVA DAW | Open Library to install the ZORVA DAW copy saved in your Vault." },
        { State::installing, "GET ZORVA DAW | Open Library to view the current ZORVA DAW installation." },
        { State::installed, "MANAGE ZORVA DAW | Open Library to manage the installed ZORVA DAW." },
        { State::updateAvailable, "UPDATE ZORVA DAW | Open Library to review the verified ZORVA DAW update." },
    };

    for (const auto& [state, words] : table)
        EXPECT_EQ (said ({ someModel (State::cached), daw (state) }), words);
}

TEST (HeroPrimary, WhileItIsDownloadedTheWordGetStays)
{
    const auto before = heroPrimaryFor ({ daw (State::notInstalled) }), during = heroPrimaryFor ({ daw (State::downloading) });
    EXPECT_EQ (before.text, "GET ZORVA DAW");
    EXPECT_EQ (during.text, before.text);
    EXPECT_NE (during.description, before.description);
}

TEST (HeroPrimary, FindsTheApplicationWithoutRegardToCase)
{
    EXPECT_EQ (said ({ daw (State::installed, "ZORVA-Daw") }), "MANAGE ZORVA DAW | Open Library to manage the installed ZORVA DAW.");
}
