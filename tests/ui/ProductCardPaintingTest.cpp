#include "ProductCardScene.h"
#include "ui/HubPalette.h"
#include "ui/ProductActions.h"

using namespace zorva::test;

namespace
{
using State = ProductCardState;
using Scene = CardScene;
constexpr int width = CardScene::width, height = CardScene::height;

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
    g.setGradientFill (juce::ColourGradient (juce::Colours::transparentBlack, 0.0f, 64.0f,
                                             juce::Colours::black.withAlpha (0.4f), 0.0f, 160.0f, false));
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
