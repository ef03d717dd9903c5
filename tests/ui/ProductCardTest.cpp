#include "MenusInTheWindow.h"
#include "ProductCardScene.h"
#include "support/Files.h"
#include "ui/HubPalette.h"
#include "ui/ProductActions.h"

using namespace zorva::test;

namespace
{
using State = ProductCardState;
using Scene = CardScene;
constexpr int width = CardScene::width, height = CardScene::height;
}

//==============================================================================
TEST (ProductCard, ItsButtonsStandInTheirPlaces)
{
    Scene scene;
    EXPECT_EQ (scene.primary().getBounds(), juce::Rectangle<int> (10, 334, 232, 36));
    EXPECT_EQ (scene.more().getBounds(), juce::Rectangle<int> (224, 4, 24, 24));

    scene.card->setSize (300, 400);
    EXPECT_EQ (scene.primary().getBounds(), juce::Rectangle<int> (10, 354, 280, 36));
    EXPECT_EQ (scene.more().getBounds(), juce::Rectangle<int> (272, 4, 24, 24));
}

TEST (ProductCard, ThePrimaryButtonShowsTheActionOfTheState)
{
    for (const auto state : allStates())
        for (const bool online : { false, true })
        {
            Scene scene (someModel (state), online);
            const auto expected = primaryActionFor (someModel (state), online);

            EXPECT_EQ (scene.primary().getButtonText(), expected.label);
            EXPECT_EQ (scene.primary().getTooltip(), expected.tooltip);
            EXPECT_EQ (scene.primary().isEnabled(), expected.enabled);
            EXPECT_EQ (hex (scene.primary().findColour (juce::TextButton::buttonColourId)), hex (expected.fill));
            EXPECT_EQ (hex (scene.primary().findColour (juce::TextButton::textColourOffId)), hex (expected.text));
        }
}

TEST (ProductCard, ANewModelOrConnectionChangesTheButtonAtOnce)
{
    Scene scene (someModel(), false);
    EXPECT_FALSE (scene.primary().isEnabled());

    scene.card->setOnline (true);
    EXPECT_TRUE (scene.primary().isEnabled());
    EXPECT_EQ (scene.primary().getTooltip(), "Download the installer to the Vault");

    scene.card->setModel (someModel (State::cached));
    EXPECT_EQ (scene.primary().getButtonText(), "INSTALL");
    EXPECT_EQ (scene.card->getModel().state, State::cached);

    scene.window->click (scene.primary());
    EXPECT_EQ (scene.noted(), "install") << "and what a click sends";
}

TEST (ProductCard, TheSameConnectionAgainRepaintsNothing)
{
    Scene scene (someModel(), true);
    const RepaintWatch repaints (*scene.card);

    scene.card->setOnline (true);
    EXPECT_EQ (repaints.count(), 0);
    scene.card->setOnline (false);
    EXPECT_GT (repaints.count(), 0);
}

TEST (ProductCard, AClickOnThePrimaryButtonSendsItsWord)
{
    for (const auto state : allStates())
    {
        Scene scene (someModel (state));
        scene.window->click (scene.primary());
        EXPECT_FALSE (scene.notes.contains ("")) << "never an empty word";
        scene.notes.removeString ("selected");   // a disabled button lets the click through to nothing

        EXPECT_EQ (scene.noted(), primaryActionFor (someModel (state), true).action.toStdString()) << (int) state;
    }
}

TEST (ProductCard, WithoutCallbacksClicksDoNothing)
{
    Scene scene;
    scene.card->onAction = nullptr;
    scene.card->onSelected = nullptr;
    scene.window->click (scene.primary());
    scene.press (scene.at (100, 200), scene.at (100, 200));

    EXPECT_EQ (scene.noted(), "");
}

TEST (ProductCard, ACallbackMayDeleteTheCard)
{
    Scene scene;
    scene.card->onAction = [&scene] (const juce::String& word)
    {
        scene.card.reset();
        scene.notes.add (word + " and gone");
    };
    scene.window->click (scene.primary());
    EXPECT_EQ (scene.noted(), "download and gone");

    Scene other;
    other.card->onSelected = [&other]
    {
        other.card.reset();
        other.notes.add ("selected and gone");
    };
    other.press (other.at (100, 200), other.at (100, 200));
    EXPECT_EQ (other.noted(), "selected and gone");
}

TEST (ProductCard, AClickSelectsTheCard)
{
    Scene scene;
    scene.press (scene.at (100, 200), scene.at (100, 200));
    EXPECT_EQ (scene.noted(), "selected");
}

TEST (ProductCard, OnlyThePlaceOfTheReleaseDecides)
{
    Scene scene;
    scene.press (scene.at (100, 200), scene.at (0, 0));
    EXPECT_EQ (scene.noted(), "selected");

    for (const auto outside : { scene.at (-1, 200), scene.at (width, 200), scene.at (100, -1), scene.at (100, height) })
        scene.press (scene.at (100, 200), outside);

    EXPECT_EQ (scene.noted(), "selected") << "a release outside selects nothing";
}

TEST (ProductCard, ReturnAndSpaceSelectTheFocusedCard)
{
    Scene scene;
    scene.window->grabKeyboardFocus();
    ASSERT_TRUE (scene.card->hasKeyboardFocus (false)) << "it is the first that takes it";

    scene.window->key (juce::KeyPress::returnKey);
    scene.window->key (juce::KeyPress::spaceKey);
    EXPECT_EQ (scene.noted(), "selected, selected");
}

TEST (ProductCard, SpaceAndReturnPressTheFocusedButton)
{
    Scene scene;
    scene.primary().grabKeyboardFocus();
    ASSERT_TRUE (scene.primary().hasKeyboardFocus (false));

    scene.window->key (juce::KeyPress::returnKey);
    scene.window->key (juce::KeyPress::spaceKey);
    EXPECT_EQ (scene.noted(), "download, download");
}

TEST (ProductCard, TheAccessibleTextsNameTheProduct)
{
    Scene scene (someModel (State::cached));
    auto* const handler = scene.card->getAccessibilityHandler();
    ASSERT_NE (handler, nullptr);

    EXPECT_TRUE (handler->getTitle().contains ("Grand Piano"));
    EXPECT_TRUE (scene.primary().getTitle().contains ("Grand Piano"));
    EXPECT_NE (handler->getDescription(), "");
    EXPECT_NE (scene.card->getTooltip(), "");
}

//==============================================================================
namespace
{
/** Opens the menu behind the dots and chooses the n-th entry that can be chosen, counted from 1; 0 dismisses it. */
void chooseFromMenu (Scene& scene, int entry)
{
    const MenusInTheWindow menus (*scene.window);
    menus.open (scene.more());
    menus.choose (entry);
}

ProductCardModel withInstaller (State state)
{
    auto model = someModel (state);
    model.vaultFile = write (in (freshFolder ("vault"), "setup.exe"), "x");
    return model;
}
}

TEST (ProductCard, TheMoreButtonBearsItsNameAndTooltip)
{
    Scene scene;
    EXPECT_EQ (scene.more().getName(), "More");
    EXPECT_EQ (scene.more().getTooltip(), "More options");
}

TEST (ProductCard, TheMenusEntriesSendTheirWords)
{
    {
        Scene scene (withInstaller (State::cached));
        chooseFromMenu (scene, 1);
        EXPECT_EQ (scene.noted(), "reveal");
        chooseFromMenu (scene, 2);   // the greyed entry is passed over
        EXPECT_EQ (scene.noted(), "reveal, delete-vault");
    }

    Scene scene (withInstaller (State::downloading));
    chooseFromMenu (scene, 2);
    EXPECT_EQ (scene.noted(), "cancel");
}

TEST (ProductCard, ADismissedMenuSendsNothing)
{
    Scene scene (withInstaller (State::cached));
    chooseFromMenu (scene, 0);

    EXPECT_EQ (scene.noted(), "");
}

TEST (ProductCard, TheMenuWithoutACallbackSendsNothing)
{
    Scene scene (withInstaller (State::cached));
    scene.card->onAction = nullptr;
    chooseFromMenu (scene, 1);

    EXPECT_EQ (scene.noted(), "");
}

TEST (ProductCard, AMenuOutlivesItsCardInPeace)
{
    Scene scene (withInstaller (State::cached));
    const MenusInTheWindow menus (*scene.window);
    menus.open (scene.more());

    scene.card.reset();
    menus.choose (1);
    EXPECT_EQ (scene.noted(), "");
}
