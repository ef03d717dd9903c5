#include "CommunityScene.h"
#include "HubWorld.h"
#include "app/OwnerDetails.h"
#include "support/Files.h"
#include "ui/CommunityTexts.h"

using namespace zorva::test;

namespace
{
struct MailRow
{
    const char *name, *subject, *body;
    const char* encoded;        ///< what follows the contact address, percent-encoded by hand
};

const MailRow mailRows[] {
    { "submission",
      "Made with ZORVA Submission",
      "Artist / producer name:\n\nTrack title:\n\nPrivate listening link:\n\nPortrait or cover-art link (optional):\n\n"
      "I confirm I own or control the submitted music and artwork: Yes / No\nI grant ZORVA DAW permission to review "
      "this material for a possible community feature: Yes / No\n",
      "?subject=Made%20with%20ZORVA%20Submission&body=Artist%20%2F%20producer%20name%3A%0A%0ATrack%20title%3A%0A%0A"
      "Private%20listening%20link%3A%0A%0APortrait%20or%20cover-art%20link%20(optional)%3A%0A%0AI%20confirm%20I%20own"
      "%20or%20control%20the%20submitted%20music%20and%20artwork%3A%20Yes%20%2F%20No%0AI%20grant%20ZORVA%20DAW"
      "%20permission%20to%20review%20this%20material%20for%20a%20possible%20community%20feature%3A%20Yes%20%2F%20No%0A" },

    { "premiere",
      "Made with ZORVA Producer Premiere Submission",
      "Producer / artist name:\n\nShort bio:\n\nZORVA-made track title:\n\nPrivate listening link:\n\nPortrait / "
      "press-photo link:\n\nI own or control the music and image and grant ZORVA DAW permission to review this "
      "material: Yes / No\n",
      "?subject=Made%20with%20ZORVA%20Producer%20Premiere%20Submission&body=Producer%20%2F%20artist%20name%3A%0A%0A"
      "Short%20bio%3A%0A%0AZORVA-made%20track%20title%3A%0A%0APrivate%20listening%20link%3A%0A%0APortrait%20%2F"
      "%20press-photo%20link%3A%0A%0AI%20own%20or%20control%20the%20music%20and%20image%20and%20grant%20ZORVA%20DAW"
      "%20permission%20to%20review%20this%20material%3A%20Yes%20%2F%20No%0A" },

    { "story",
      "Made with ZORVA Artist Story Submission",
      "Producer / artist name:\n\nYour story:\n\nZORVA-made track title:\n\nPrivate listening link:\n\nPortrait / "
      "press-photo link:\n\nI own or control the music and image and approve review for a ZORVA community feature: Yes "
      "/ No\n",
      "?subject=Made%20with%20ZORVA%20Artist%20Story%20Submission&body=Producer%20%2F%20artist%20name%3A%0A%0AYour"
      "%20story%3A%0A%0AZORVA-made%20track%20title%3A%0A%0APrivate%20listening%20link%3A%0A%0APortrait%20%2F"
      "%20press-photo%20link%3A%0A%0AI%20own%20or%20control%20the%20music%20and%20image%20and%20approve%20review%20for"
      "%20a%20ZORVA%20community%20feature%3A%20Yes%20%2F%20No%0A" },

    { "sound",
      "ZORVA Sound Suggestion",
      "Sound or preset idea:\n\nGenre / production context:\n",
      "?subject=ZORVA%20Sound%20Suggestion&body=Sound%20or%20preset%20idea%3A%0A%0AGenre%20%2F%20production"
      "%20context%3A%0A" },

    { "bug",
      "ZORVA Bug / Issue Report",
      "ZORVA version:\n\nComputer and operating system:\n\nSteps to reproduce:\n\nExpected result:\n\nActual result:\n",
      "?subject=ZORVA%20Bug%20%2F%20Issue%20Report&body=ZORVA%20version%3A%0A%0AComputer%20and%20operating"
      "%20system%3A%0A%0ASteps%20to%20reproduce%3A%0A%0AExpected%20result%3A%0A%0AActual%20result%3A%0A" },

    { "feature",
      "ZORVA Feature Request",
      "Feature request:\n\nProduction workflow it would improve:\n\nWhy it matters:\n",
      "?subject=ZORVA%20Feature%20Request&body=Feature%20request%3A%0A%0AProduction%20workflow%20it%20would"
      "%20improve%3A%0A%0AWhy%20it%20matters%3A%0A" },

    { "team",
      "ZORVA Team Application",
      "Name:\n\nLocation / time zone:\n\nRole or discipline:\n\nPortfolio / work samples:\n\nHow you use music "
      "technology:\n\nWhy you want to help build ZORVA:\n\nAvailability:\n\nNote: This is an expression of interest, "
      "not an offer of employment.\n",
      "?subject=ZORVA%20Team%20Application&body=Name%3A%0A%0ALocation%20%2F%20time%20zone%3A%0A%0ARole%20or"
      "%20discipline%3A%0A%0APortfolio%20%2F%20work%20samples%3A%0A%0AHow%20you%20use%20music%20technology%3A%0A%0AWhy"
      "%20you%20want%20to%20help%20build%20ZORVA%3A%0A%0AAvailability%3A%0A%0ANote%3A%20This%20is%20an%20expression"
      "%20of%20interest%2C%20not%20an%20offer%20of%20employment.%0A" },
};

const MailRow& mail (const juce::String& name)
{
    for (const auto& row : mailRows)
        if (name == row.name)
            return row;

    ADD_FAILURE() << "no such mail: " << name;
    std::abort();
}

/** Every button that writes a mail, by its section's id and its own. */
struct MailButton
{
    const char *path, *mail;
};

const MailButton mailButtons[] {
    { "hero/submitYourMusicButton", "submission" },
    { "featuredTrack/submitATrackButton", "submission" },
    { "producerSpotlight/spotlightButton", "premiere" },
    { "artistSpotlight/spotlightButton", "story" },
    { "participation/submitMusicButton", "submission" },
    { "resource2/resourceButton", "sound" },
    { "resource4/resourceButton", "bug" },
    { "resource5/resourceButton", "feature" },
    { "resource6/resourceButton", "team" },
};
}

//==============================================================================
TEST (CommunityMail, EachButtonWritesItsMail)
{
    ExperienceScene scene;

    for (const auto& button : mailButtons)
    {
        const auto& expected = mail (button.mail);
        EXPECT_EQ (scene.click (button.path), std::string (expected.subject) + "|" + expected.body) << button.path;
    }
}

TEST (CommunityMail, EveryMailIsEncodedByteForByte)
{
    for (const auto& row : mailRows)
        EXPECT_EQ (mailtoAddress (row.subject, row.body), "mailto:" + juce::String (OwnerDetails::contactAddress) + row.encoded) << row.name;
}

TEST (CommunityMail, WhatWouldEndAPartOfTheAddressIsEncoded)
{
    EXPECT_EQ (mailtoAddress ("a&b=c?d#e%f+g", utf8 ("\xc3\xa9 \"x\"\n'(y)'")),
               "mailto:" + juce::String (OwnerDetails::contactAddress)
                   + "?subject=a%26b%3Dc%3Fd%23e%25f%2Bg&body=%C3%A9%20%22x%22%0A%27(y)%27");
}

TEST (CommunityMail, EveryDraftIsOpenedInTheUsersOwnMailProgram)
{
    CommunityScene scene;
    FakeFileManager desktop;

    for (const auto& button : mailButtons)
    {
        scene.click (button.path);
        EXPECT_EQ (desktop.openedPath(), "mailto:" + juce::String (OwnerDetails::contactAddress) + mail (button.mail).encoded) << button.path;
        EXPECT_EQ (currentAlert(), nullptr);
        EXPECT_TRUE (in (juce::File::getSpecialLocation (juce::File::userHomeDirectory), "opened").deleteFile());
    }

    EXPECT_EQ (scene.notes.joinIntoString (","), "");
}
