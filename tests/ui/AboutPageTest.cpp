#include "AboutScene.h"
#include "PaintRecorder.h"
#include "app/OwnerDetails.h"
#include "support/Text.h"
#include "ui/HubPalette.h"

using namespace zorva::test;

namespace
{
using Bounds = juce::Rectangle<int>;
constexpr auto centred = juce::Justification::centred;

const juce::String paragraph = "ZORVA Hub manages installation, updates, and offline Vault access for ZORVA products. "
                             + utf8 (OwnerDetails::creatorAccount);

/** The page as it must look, without its links: the column stands at x and is c wide. */
juce::Image expectedPage (int width, int height, int x, int c, bool withFoot = true)
{
    return painted (width, height, [&] (juce::Graphics& g)
    {
        g.fillAll (HubPalette::windowBackground);
        paintWhole (g, "ZorvaSplashLogo_png", { x + (c - 200) / 2, 48, 200, 125 });

        line (g, utf8 ("ZORVA™ Hub"), { x, 189, c, 30 }, bold (24.0f), HubPalette::textPrimary, centred);
        line (g, "Version 13.0.0", { x, 219, c, 20 }, plain (14.0f), HubPalette::textSecondary, centred);
        line (g, "The Official Product Hub for ZORVA DAW", { x, 239, c, 18 }, plain (12.0f), HubPalette::textSecondary, centred);
        line (g, utf8 (OwnerDetails::creatorName), { x, 263, c, 18 }, bold (12.0f), HubPalette::accent, centred);
        line (g, utf8 (OwnerDetails::creatorRole) + utf8 (" · ") + OwnerDetails::contactAddress, { x, 281, c, 18 }, plain (11.0f),
              HubPalette::textSecondary, centred);

        g.setFont (plain (12.0f));
        g.setColour (HubPalette::textPrimary);
        g.drawFittedText (paragraph, { x + 20, 303, c - 40, 82 }, juce::Justification::centredTop, 6);

        if (withFoot)
        {
            line (g, utf8 (OwnerDetails::copyrightLine), { x, height - 52, c, 15 }, plain (10.0f), HubPalette::textSecondary, centred);
            line (g, utf8 (OwnerDetails::trademarkLine), { x, height - 37, c, 15 }, plain (10.0f), HubPalette::textSecondary, centred);
        }
    });
}

/** The page as it is, without its links. */
juce::Image pictureWithoutLinks (AboutScene& scene)
{
    for (const auto* id : aboutLinks)
        scene.link (id).setVisible (false);

    return pictureOf (scene.page);
}

/** Whether any of a word's letters are drawn somewhere on the page. */
bool draws (AboutScene& scene, const juce::Font& font, const juce::String& word)
{
    const auto wanted = glyphsOf (font, word);
    const auto record = recordOf (scene.page);

    return std::any_of (record.texts.begin(), record.texts.end(), [&] (const DrawnText& text)
    {
        return std::search (text.glyphs.begin(), text.glyphs.end(), wanted.begin(), wanted.end()) != text.glyphs.end();
    });
}
}

//==============================================================================
TEST (AboutPage, ShowsLogoVersionOwnerAccountAndCopyright)
{
    AboutScene scene;
    EXPECT_EQ (difference (pictureWithoutLinks (scene), expectedPage (940, 574, 220, 500)), "");
}

TEST (AboutPage, ItsColumnIsCentredInALargeWindow)
{
    AboutScene scene (1440, 854);       // the page in a window of 1600 x 1000
    EXPECT_EQ (difference (pictureWithoutLinks (scene), expectedPage (1440, 854, 470, 500)), "");
}

TEST (AboutPage, InTheSmallestWindowTheCopyrightYieldsToTheLinks)
{
    AboutScene scene (740, 454);        // the page in a window of 900 x 600
    EXPECT_EQ (difference (pictureWithoutLinks (scene), expectedPage (740, 454, 120, 500, false)), "");
}

TEST (AboutPage, TheCopyrightComesAsSoonAsItRunsThroughNothing)
{
    for (const int height : { 500, 501 })
    {
        SCOPED_TRACE (height);
        AboutScene scene (940, height);
        EXPECT_EQ (difference (pictureWithoutLinks (scene), expectedPage (940, height, 220, 500, height == 501)), "");
    }
}

TEST (AboutPage, TheNameBearsItsTradeMark)
{
    AboutScene scene;
    EXPECT_TRUE (draws (scene, bold (24.0f), utf8 ("ZORVA™")));
    EXPECT_FALSE (draws (scene, bold (24.0f), "QUARTZ")) << "the search finds everything";
}

TEST (AboutPage, AllOfTheAccountHasRoom)
{
    for (const int width : { 940, 740, 1440 })
    {
        SCOPED_TRACE (width);
        AboutScene scene (width, 574);

        for (const auto& word : juce::StringArray::fromTokens (paragraph, " ", ""))
            EXPECT_TRUE (draws (scene, plain (12.0f), word)) << word;
    }
}

TEST (AboutPage, NothingOfItIsDrawnWithoutAWidth)
{
    AboutScene scene (47, 574);
    const auto blank = paintedOn (HubPalette::windowBackground, 47, 574, [] (juce::Graphics&) {});

    // The logo's box keeps its size and place.
    EXPECT_EQ (difference (pictureWithoutLinks (scene), blank, { { 0, 48, 47, 125 } }), "");
}

TEST (AboutPage, KeepsNothingOfTheFocusRingThatHasMovedOn)
{
    AboutScene scene;
    const auto before = pictureOf (scene.page);
    scene.link ("bugLink").grabKeyboardFocus();
    EXPECT_NE (difference (pictureOf (scene.page), before), "");
    juce::Component::unfocusAllComponents();
    EXPECT_EQ (difference (pictureOf (scene.page), before), "");
}

//==============================================================================
TEST (AboutPage, EachLinkIsWrittenInTheAccentColour)
{
    AboutScene scene;

    for (const auto* id : aboutLinks)
    {
        SCOPED_TRACE (id);
        auto& link = scene.link (id);
        EXPECT_EQ (hex (link.findColour (juce::HyperlinkButton::textColourId)), hex (HubPalette::accent));

        const auto expected = paintedOn (HubPalette::windowBackground, link.getWidth(), link.getHeight(), [&] (juce::Graphics& g)
        {
            line (g, link.getButtonText(), link.getLocalBounds().reduced (1, 0), plain (12.0f), HubPalette::accent, centred);
        });

        EXPECT_EQ (difference (cut (pictureOf (scene.page), link.getBounds()), expected), "");
    }
}

TEST (AboutPage, EveryLinksCaptionHasRoom)
{
    for (const int width : { 940, 740, 1440 })
    {
        AboutScene scene (width, 574);

        for (const auto* id : aboutLinks)
        {
            auto& link = scene.link (id);
            EXPECT_LE (widthOf (plain (12.0f), link.getButtonText()), link.getWidth() - 2) << id << " at " << width;
            EXPECT_TRUE (draws (scene, plain (12.0f), link.getButtonText().upToFirstOccurrenceOf (" ", false, false))) << id;
        }
    }
}

//==============================================================================
TEST (AboutPage, LinksTooLowToBeReadTakeNeitherFocusNorClicks)
{
    AboutScene scene (740, 454);        // the page in a window of 900 x 600
    auto& first = scene.link ("websiteLink");
    first.grabKeyboardFocus();
    scene.window->key (juce::KeyPress::tabKey);
    EXPECT_EQ (juce::Component::getCurrentlyFocusedComponent(), &scene.link ("bugLink"));
    scene.window->key (juce::KeyPress::tabKey);
    EXPECT_EQ (juce::Component::getCurrentlyFocusedComponent(), &first) << "there is no third stop";

    for (const auto* id : { "featureLink", "joinLink" })
    {
        auto& link = scene.link (id);
        ASSERT_EQ (link.getHeight(), 3) << id;
        EXPECT_FALSE (link.isShowing()) << id;
        EXPECT_FALSE (link.getWantsKeyboardFocus()) << id;
        EXPECT_EQ (scene.page.getComponentAt (link.getBounds().getCentre()), &scene.page) << id;
    }

    EXPECT_EQ (scene.page.getComponentAt (first.getBounds().getCentre()), &first);
}

TEST (AboutPage, ALinkThatGetsTooLowHandsTheFocusToOneThatCanBeRead)
{
    AboutScene scene;
    scene.link ("joinLink").grabKeyboardFocus();
    ASSERT_TRUE (scene.link ("joinLink").hasKeyboardFocus (false));
    scene.page.setSize (740, 454);
    EXPECT_EQ (juce::Component::getCurrentlyFocusedComponent(), &scene.link ("bugLink"));
}

TEST (AboutPage, LinksComeBackAsSoonAsTheyCanBeRead)
{
    // The second row begins at 427, and the page's margin is 24.
    AboutScene scene (940, 427 + 11 + 24);
    EXPECT_EQ (scene.link ("joinLink").getHeight(), 11);
    EXPECT_FALSE (draws (scene, plain (12.0f), "Apply"));

    scene.page.setSize (940, 427 + 12 + 24);
    EXPECT_TRUE (draws (scene, plain (12.0f), "Apply"));

    for (const auto* id : aboutLinks)
    {
        scene.link (id).grabKeyboardFocus();
        EXPECT_TRUE (scene.link (id).hasKeyboardFocus (false)) << id;
        EXPECT_EQ (scene.page.getComponentAt (scene.link (id).getBounds().getCentre()), &scene.link (id)) << id;
    }
}

TEST (AboutPage, AClickBesideTheLinksLeavesNoRing)
{
    AboutScene scene;
    scene.window->mouse ({ 470.0f, 60.0f }, juce::ModifierKeys::leftButtonModifier);
    scene.window->mouse ({ 470.0f, 60.0f }, 0);
    pump();
    EXPECT_EQ (juce::Component::getCurrentlyFocusedComponent(), nullptr);
}
