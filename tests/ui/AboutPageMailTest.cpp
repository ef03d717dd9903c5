#include "AboutScene.h"
#include "app/OwnerDetails.h"
#include "support/Environment.h"
#include "support/FakeFileManager.h"
#include "support/Files.h"

using namespace zorva::test;

namespace
{
const juce::String mailto = "mailto:" + juce::String (OwnerDetails::contactAddress);

struct LinkRow
{
    const char *id, *text, *whatItDoes;
    juce::String address;       ///< percent-encoded by hand
};

const LinkRow rows[] {
    { "websiteLink", "Visit Website", "Open the ZORVA web site in your browser.", OwnerDetails::website },

    { "bugLink", "Report a Bug / Issue", "Open an email draft to report a bug or issue.",
      mailto + "?subject=ZORVA%20Bug%20%2F%20Issue%20Report&body=ZORVA%20version%3A%0AMac%20model%20and%20macOS%20version%3A%0A"
               "Steps%20to%20reproduce%3A%0AExpected%20result%3A%0AActual%20result%3A%0A" },

    { "featureLink", "Request a Feature", "Open an email draft to request a feature.",
      mailto + "?subject=ZORVA%20Feature%20Request&body=Feature%20request%3A%0AProduction%20workflow%20it%20would%20improve%3A%0A"
               "Why%20it%20matters%3A%0A" },

    { "joinLink", "Apply to Join ZORVA", "Open an email draft to apply to join ZORVA.",
      mailto + "?subject=ZORVA%20Team%20Application&body=Name%3A%0ARole%20or%20discipline%3A%0APortfolio%20or%20work%20samples%3A%0A"
               "How%20you%20want%20to%20help%20ZORVA%3A%0A" },
};

struct Draft
{
    const char *id, *subject, *body;
};

const Draft drafts[] {
    { "bugLink", "ZORVA Bug / Issue Report",
      "ZORVA version:\nMac model and macOS version:\nSteps to reproduce:\nExpected result:\nActual result:\n" },
    { "featureLink", "ZORVA Feature Request", "Feature request:\nProduction workflow it would improve:\nWhy it matters:\n" },
    { "joinLink", "ZORVA Team Application",
      "Name:\nRole or discipline:\nPortfolio or work samples:\nHow you want to help ZORVA:\n" },
};

juce::File opened()    { return in (juce::File::getSpecialLocation (juce::File::userHomeDirectory), "opened"); }

/** The address that was opened since the last look. */
std::string takeOpened (const FakeFileManager& desktop)
{
    const auto address = desktop.openedPath();
    EXPECT_TRUE (opened().deleteFile());
    return address.toStdString();
}
}

//==============================================================================
TEST (AboutPageMail, EachLinkSaysWhatItOpens)
{
    AboutScene scene;

    for (const auto& row : rows)
    {
        SCOPED_TRACE (row.id);
        auto& link = scene.link (row.id);
        EXPECT_EQ (link.getButtonText(), row.text);
        EXPECT_EQ (link.getTooltip(), row.whatItDoes) << "not the bare address";

        auto* const handler = link.getAccessibilityHandler();
        ASSERT_NE (handler, nullptr);
        EXPECT_EQ (handler->getRole(), juce::AccessibilityRole::hyperlink);
        EXPECT_EQ (handler->getTitle(), row.text);
        EXPECT_EQ (handler->getDescription(), row.whatItDoes);
    }
}

TEST (AboutPageMail, ThereAreFourLinksAndNoOtherWidget)
{
    AboutScene scene;
    EXPECT_EQ (scene.page.getNumChildComponents(), 4);
    EXPECT_EQ (allBelow<juce::HyperlinkButton> (scene.page).size(), 4u);
}

TEST (AboutPageMail, EveryAddressIsEncodedByteForByte)
{
    AboutScene scene;

    for (const auto& row : rows)
        EXPECT_EQ (scene.link (row.id).getURL().toString (true), row.address) << row.id;
}

TEST (AboutPageMail, DecodedTheDraftsReadAsWritten)
{
    AboutScene scene;

    for (const auto& draft : drafts)
    {
        SCOPED_TRACE (draft.id);
        const auto address = scene.link (draft.id).getURL().toString (true);
        EXPECT_EQ (address.upToFirstOccurrenceOf ("?", false, false), mailto);
        EXPECT_EQ (juce::URL::removeEscapeChars (address.fromFirstOccurrenceOf ("?subject=", false, false)
                                                     .upToFirstOccurrenceOf ("&", false, false)), draft.subject);
        EXPECT_EQ (juce::URL::removeEscapeChars (address.fromFirstOccurrenceOf ("&body=", false, false)), draft.body);
    }
}

TEST (AboutPageMail, NothingInADraftNeedsEncodingAnyMore)
{
    AboutScene scene;

    for (const auto& draft : drafts)
        EXPECT_TRUE (scene.link (draft.id).getURL().toString (true).containsOnly ("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                                                    "0123456789%:@?&=.-"))
            << draft.id;
}

TEST (AboutPageMail, TheWebSiteIsAnHttpsAddress)
{
    AboutScene scene;
    const auto address = scene.link ("websiteLink").getURL();
    EXPECT_EQ (address.getScheme(), "https");
    EXPECT_NE (address.getDomain(), "");
}

//==============================================================================
TEST (AboutPageMail, AClickOpensTheWholeAddressWithTheDefaultHandler)
{
    AboutScene scene;
    FakeFileManager desktop;

    for (const auto& row : rows)
    {
        scene.window->click (scene.link (row.id));
        EXPECT_EQ (takeOpened (desktop), row.address.toStdString()) << row.id;
        EXPECT_EQ (currentAlert(), nullptr);
    }
}

TEST (AboutPageMail, SpaceAndReturnOpenTheFocusedLink)
{
    AboutScene scene;
    FakeFileManager desktop;

    for (const int key : { juce::KeyPress::spaceKey, juce::KeyPress::returnKey })
        for (const auto& row : rows)
        {
            scene.link (row.id).grabKeyboardFocus();
            scene.window->key (key);
            EXPECT_EQ (takeOpened (desktop), row.address.toStdString()) << row.id;
        }
}

TEST (AboutPageMail, ClickingTwiceOpensItTwice)
{
    AboutScene scene;
    FakeFileManager desktop;

    for (int i = 0; i < 2; ++i)
    {
        scene.window->click (scene.link ("joinLink"));
        EXPECT_EQ (takeOpened (desktop), rows[3].address.toStdString());
    }
}

TEST (AboutPageMail, WhetherAnythingCouldBeOpenedIsNotChecked)
{
    const auto bin = freshFolder ("failing");
    const auto opener = write (in (bin, "xdg-open"), "#!/bin/sh\n: > '" + opened().getFullPathName() + "'\nexit 4\n");
    EXPECT_TRUE (opener.setExecutePermission (true));
    setEnvironment ("PATH", bin.getFullPathName() + ":" + juce::SystemStats::getEnvironmentVariable ("PATH", {}));

    AboutScene scene;
    scene.window->click (scene.link ("bugLink"));
    EXPECT_TRUE (pumpUntil ([] { return opened().existsAsFile(); }));
    pump();
    EXPECT_EQ (currentAlert(), nullptr);
    EXPECT_TRUE (scene.link ("bugLink").isEnabled());
}
