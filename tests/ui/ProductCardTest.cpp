#include "Children.h"
#include "MenusInTheWindow.h"
#include "Models.h"
#include "Painting.h"
#include "support/Files.h"
#include "support/GuiHarness.h"
#include "ui/HubPalette.h"
#include "ui/ProductActions.h"
#include "ui/ProductCard.h"

#include <gtest/gtest.h>

using namespace zorva;
using namespace zorva::test;

namespace
{
using State = ProductCardState;
constexpr int width = 252, height = 380;

//==============================================================================
/** How a card is to look. */
struct Shown
{
    ProductCardModel model = someModel();
    juce::Colour body = HubPalette::surface;
    bool shadow = false;
};

struct Chip
{
    juce::Colour fill, outline, text;
};

Chip chipOf (State state)
{
    using namespace HubPalette;
    const juce::Colour none;

    switch (state)
    {
        case State::downloading:
        case State::installing:
        case State::updateAvailable:  return { warning, none, inverseText };
        case State::cached:           return { none, border, textSecondary };
        case State::installed:        return { success, none, inverseText };
        case State::notInstalled:
        default:                      return { none, accent, accent };
    }
}

void paintPicture (juce::Graphics& g, juce::Rectangle<float> body, const juce::Image& image, int cardWidth)
{
    const juce::Graphics::ScopedSaveState saved (g);
    juce::Path top;
    top.addRoundedRectangle (body.getX(), body.getY(), body.getWidth(), 160.0f, 4.0f, 4.0f, true, true, false, false);
    g.reduceClipRegion (top);

    g.setColour (HubPalette::panel);
    g.fillRect (0, 0, cardWidth, 160);
    g.setOpacity (1.0f);
    g.drawImageWithin (image, 16, 16, std::max (cardWidth - 32, 0), 128,
                       juce::RectanglePlacement::xMid | juce::RectanglePlacement::yMid | juce::RectanglePlacement::onlyReduceInSize);
    g.setGradientFill (juce::ColourGradient (juce::Colours::transparentBlack, 0.0f, 64.0f, juce::Colours::black.withAlpha (0.4f), 0.0f, 160.0f, false));
    g.fillRect (0, 0, cardWidth, 160);
}

void paintChip (juce::Graphics& g, const ProductCardModel& model, int cardWidth)
{
    const auto text = stateChipTextFor (model);
    const auto chip = chipOf (model.state);
    const int chipWidth = std::min (widthOf (bold (10.0f), text) + 16, cardWidth - 24);
    const juce::Rectangle<float> bounds (12.0f, 232.0f, (float) chipWidth, 20.0f);

    g.setColour (chip.fill);
    g.fillRoundedRectangle (bounds, 3.0f);
    g.setColour (chip.outline);
    g.drawRoundedRectangle (bounds.reduced (0.5f), 3.0f, 1.0f);
    line (g, text, { 16, 232, chipWidth - 8, 20 }, bold (10.0f), chip.text, juce::Justification::centred);
}

/** A card without its two buttons. */
juce::Image picture (const Shown& s, int cardWidth = width)
{
    return painted (cardWidth, height, [&] (juce::Graphics& g)
    {
        const juce::Rectangle<float> body (0.5f, 0.5f, (float) cardWidth - 1.0f, (float) height - 1.0f);
        const auto& product = s.model.product;

        if (s.shadow)
        {
            juce::Path path;
            path.addRoundedRectangle (juce::Rectangle<int> (cardWidth, height).reduced (2).toFloat(), 4.0f);
            juce::DropShadow (juce::Colours::black.withAlpha (0.5f), 12, { 0, 4 }).drawForPath (g, path);
        }

        g.setColour (s.body);
        g.fillRoundedRectangle (body, 4.0f);
        paintPicture (g, body, product.image, cardWidth);
        g.setColour (HubPalette::border);
        g.drawRoundedRectangle (body, 4.0f, 1.0f);

        line (g, product.name, { 12, 172, cardWidth - 24, 18 }, bold (14.0f), HubPalette::textPrimary);
        line (g, product.vendor, { 12, 194, cardWidth - 24, 14 }, plain (11.0f), HubPalette::textSecondary);
        line (g, "Version " + product.version, { 12, 210, cardWidth - 24, 14 }, plain (11.0f), HubPalette::textSecondary);
        paintChip (g, s.model, cardWidth);
    });
}

std::vector<juce::Rectangle<int>> buttonsOf (int cardWidth = width)
{
    return { { 10, height - 46, cardWidth - 20, 36 }, { cardWidth - 28, 4, 24, 24 } };
}

//==============================================================================
/** A card amid a window, with a notebook of what it reports. */
struct Scene
{
    explicit Scene (ProductCardModel model = someModel(), bool online = true)
        : card (std::make_unique<ProductCard> (std::move (model), online))
    {
        room.setSize (600, 480);
        room.addAndMakeVisible (*card);
        card->setBounds (40, 40, width, height);
        card->onAction = [this] (const juce::String& word) { notes.add (word); };
        card->onSelected = [this] { notes.add ("selected"); };
        window = std::make_unique<HeadlessWindow> (room);
        juce::Component::unfocusAllComponents();
        window->mouse ({ 590.0f, 470.0f }, 0);
    }

    juce::TextButton& primary()    { return below<juce::TextButton> (*card, "primaryButton"); }
    juce::Button& more()           { return below<juce::Button> (*card, "overflowButton"); }

    juce::Point<float> at (int x, int y) const    { return card->getPosition().translated (x, y).toFloat(); }

    void press (juce::Point<float> from, juce::Point<float> to)
    {
        window->mouse (from, 0);
        window->mouse (from, juce::ModifierKeys::leftButtonModifier);
        window->mouse (to, juce::ModifierKeys::leftButtonModifier);
        window->mouse (to, 0);
        pump();
    }

    std::string noted() const    { return notes.joinIntoString (", ").toStdString(); }

    HubLook look;
    juce::Component room;
    std::unique_ptr<ProductCard> card;
    std::unique_ptr<HeadlessWindow> window;
    juce::StringArray notes;
};

ProductCardModel withImage (ProductCardModel model)
{
    model.product.image = someImage();
    return model;
}
}

//==============================================================================
TEST (ProductCard, PaintsEachState)
{
    for (const auto state : allStates())
    {
        Scene scene (withImage (someModel (state)));
        EXPECT_EQ (difference (pictureOf (*scene.card), picture ({ .model = withImage (someModel (state)) }), buttonsOf()), "") << (int) state;
    }
}

TEST (ProductCard, AnUnknownStateLooksLikeNotInstalled)
{
    auto model = withImage (someModel (static_cast<State> (99)));
    Scene scene (model);

    EXPECT_EQ (difference (pictureOf (*scene.card), picture ({ .model = model }), buttonsOf()), "");
}

TEST (ProductCard, LongTextsEndInAnEllipsis)
{
    auto model = withImage (someModel (State::updateAvailable));
    model.product.name = "The Grand Piano of the Old Concert Hall by the River";
    model.product.vendor = "ZORVA Instruments and Their Many Friends in the Valley";
    model.product.version = "2.1-with-a-very-long-suffix-that-does-not-fit-the-card";
    model.latestVersion = model.product.version;

    for (const int cardWidth : { width, 240, 140 })
    {
        Scene scene (model);
        scene.card->setSize (cardWidth, height);
        EXPECT_EQ (difference (pictureOf (*scene.card), picture ({ .model = model }, cardWidth), buttonsOf (cardWidth)), "") << cardWidth;
    }
}

TEST (ProductCard, WithoutAPictureItShowsTheLogo)
{
    Scene scene;
    const juce::SharedResourcePointer<SplashLogo> logo;
    ASSERT_TRUE (logo->picture.isValid());

    auto withLogo = someModel();
    withLogo.product.image = paintedOn (HubPalette::panel, width - 32, 128, [&] (juce::Graphics& g)
    {
        logo->picture.draw (g, { 0, 0, width - 32, 128 });
    });

    EXPECT_EQ (difference (pictureOf (*scene.card), picture ({ .model = withLogo }), buttonsOf()), "");
}

TEST (ProductCard, WithoutPictureAndLogoTheWellStaysEmpty)
{
    const juce::SharedResourcePointer<SplashLogo> logo;
    logo->picture = {};
    Scene scene;

    EXPECT_EQ (difference (pictureOf (*scene.card), picture ({}), buttonsOf()), "");
}

TEST (ProductCard, AHoveredCardIsRaisedAboveAShadow)
{
    Scene scene (withImage (someModel()));
    const Shown hovered { .model = withImage (someModel()), .body = HubPalette::raised, .shadow = true };

    scene.window->mouse (scene.at (100, 200), 0);
    EXPECT_EQ (difference (pictureOf (*scene.card), picture (hovered), buttonsOf()), "");

    scene.window->moveTo (scene.primary());
    EXPECT_EQ (difference (pictureOf (*scene.card), picture (hovered), buttonsOf()), "") << "over a child it is hovered too";

    scene.window->mouse ({ 590.0f, 470.0f }, 0);
    EXPECT_EQ (difference (pictureOf (*scene.card), picture ({ .model = withImage (someModel()) }), buttonsOf()), "");
}

TEST (ProductCard, APressedCardIsRecessed)
{
    Scene scene (withImage (someModel()));
    scene.window->mouse (scene.at (100, 200), 0);
    scene.window->mouse (scene.at (100, 200), juce::ModifierKeys::leftButtonModifier);

    EXPECT_EQ (difference (pictureOf (*scene.card), picture ({ .model = withImage (someModel()), .body = HubPalette::panel }), buttonsOf()), "");

    scene.window->mouse (scene.at (100, 200), 0);
    EXPECT_EQ (pixel (pictureOf (*scene.card), 100, 300), hex (HubPalette::raised));
}

TEST (ProductCard, MouseActivityIsRepainted)
{
    Scene scene;
    const RepaintWatch repaints (*scene.card);

    scene.window->mouse (scene.at (100, 200), 0);
    const int entered = repaints.count();
    EXPECT_GT (entered, 0);

    scene.window->mouse ({ 590.0f, 470.0f }, 0);
    EXPECT_GT (repaints.count(), entered);
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

TEST (ProductCard, EachProgressReachesChipAndButton)
{
    Scene scene (someModel (State::downloading));
    EXPECT_EQ (scene.primary().getButtonText(), "42%");

    auto later = withImage (someModel (State::downloading));
    later.progress = 0.87;
    scene.card->setModel (later);

    EXPECT_EQ (scene.primary().getButtonText(), "87%");
    EXPECT_EQ (difference (pictureOf (*scene.card), picture ({ .model = later }), buttonsOf()), "");
}

//==============================================================================
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

TEST (ProductCard, TheMoreButtonShowsThreeDots)
{
    Scene scene;

    const auto dots = [&] (juce::Colour ground, juce::Colour dotColour)
    {
        return paintedOn (HubPalette::panel, 24, 24, [&] (juce::Graphics& g)
        {
            g.setColour (ground);
            g.fillRoundedRectangle (0.0f, 0.0f, 24.0f, 24.0f, 3.0f);
            g.setColour (dotColour);

            for (const float centre : { 7.0f, 12.0f, 17.0f })
                g.fillEllipse (centre - 1.5f, 10.5f, 3.0f, 3.0f);
        });
    };
    const auto actual = [&]
    {
        return paintedOn (HubPalette::panel, 24, 24, [&] (juce::Graphics& g) { scene.more().paintEntireComponent (g, false); });
    };

    EXPECT_EQ (difference (actual(), dots (juce::Colours::transparentBlack, HubPalette::textSecondary)), "");

    scene.window->moveTo (scene.more());
    EXPECT_EQ (difference (actual(), dots (HubPalette::raised, HubPalette::textPrimary)), "");

    const auto centre = scene.at (236, 16);
    scene.window->mouse (centre, juce::ModifierKeys::leftButtonModifier);
    EXPECT_EQ (difference (actual(), dots (HubPalette::panel, HubPalette::textPrimary)), "");
    scene.window->mouse ({ 590.0f, 470.0f }, juce::ModifierKeys::leftButtonModifier);
    scene.window->mouse ({ 590.0f, 470.0f }, 0);
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
