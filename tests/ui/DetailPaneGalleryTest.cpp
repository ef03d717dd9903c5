#include "DetailPaneScene.h"
#include "GalleryScene.h"

using namespace zorva::test;

namespace
{
using State = ProductCardState;

/** The main application with only the one fact that is always there. */
ProductCardModel daw (State state = State::notInstalled)
{
    auto model = someModel (state, someProduct ("zorva-daw", "ZORVA DAW"));
    model.product.platforms.clear();
    return model;
}

/** A pane that shows the product, with handles to its gallery. */
struct Scene : PaneScene
{
    explicit Scene (const ProductCardModel& model = daw(), int paneHeight = PaneScene::height) : PaneScene (paneHeight) { pane.setModel (model); }

    juce::Viewport& viewport()          { return below<juce::Viewport> (pane, "galleryViewport"); }
    WhatsIncludedGallery& gallery()     { return below<WhatsIncludedGallery> (pane, "gallery"); }

    std::string shown()    { return viewport().isVisible() ? viewport().getBounds().toString().toStdString() : "(hidden)"; }

    /** Turns the mouse wheel down over a component, once. */
    void wheelOver (juce::Component& target)
    {
        const auto p = window->getLocalPoint (&target, target.getLocalBounds().getCentre()).toFloat();
        window->mouse (p, 0);
        juce::MouseWheelDetails wheel {};
        wheel.deltaY = -1.0f;
        window->peer().handleMouseWheel (juce::MouseInputSource::InputSourceType::mouse, p, juce::Time::currentTimeMillis(), wheel);
        pump();
    }
};

/** The heading by hand, where the gallery begins at this top. */
std::string differenceToHeading (Scene& scene, int galleryTop, const juce::String& text = "What's Included")
{
    const juce::Rectangle<int> place (16, galleryTop - 18, PaneScene::width - 32, 18);
    const auto expected = paintedOn (HubPalette::surface, place.getWidth(), place.getHeight(), [&] (juce::Graphics& g)
    {
        line (g, text, place.withZeroOrigin(), bold (11.0f), HubPalette::textPrimary, juce::Justification::centredLeft, false);
    });

    return difference (cut (pictureOf (scene.pane), place), expected);
}
}

//==============================================================================
TEST (DetailPaneGallery, BelongsToTheMainApplicationAlone)
{
    for (const auto* id : { "zorva-stagewell", "ZORVA-DAW", "zorva-daw ", "zorva-daw-2", "zorva" })
    {
        auto model = daw();
        model.product.id = id;
        Scene scene (model);
        EXPECT_EQ (scene.shown(), "(hidden)") << id;
        EXPECT_EQ (differenceToHeading (scene, 300, {}), "") << "no heading either: " << id;
    }

    EXPECT_EQ (Scene().shown(), "16 300 288 472");
}

TEST (DetailPaneGallery, StandsBetweenItsHeadingAndThePrimaryButton)
{
    using Change = void (*) (ProductCardModel&);
    struct Case
    {
        State state;
        Change change;
        int top, height;
    };

    const Case cases[] {
        { State::notInstalled, [] (auto&) {}, 300, 472 },
        { State::cached, [] (auto&) {}, 300, 472 },
        { State::notInstalled, [] (auto& m) { m.product.description = "A studio."; }, 372, 400 },
        { State::notInstalled, [] (auto& m) { m.product.releaseDate = "soon"; m.product.category = "DAW"; m.product.sizeBytes = 1; }, 351, 421 },
        { State::notInstalled, [] (auto& m) { m.product.releaseNotes = { { "One", "1" }, { "Two", "2" } }; }, 476, 296 },

        // The installed version is a fact more, and "REINSTALL" takes 44 pixels.
        { State::installed, [] (auto&) {}, 317, 411 },
        { State::updateAvailable, [] (auto& m) { m.product.description = "A studio."; }, 389, 339 },
    };

    for (const auto& c : cases)
    {
        SCOPED_TRACE (c.top);
        auto model = daw (c.state);
        c.change (model);
        Scene scene (model);

        EXPECT_EQ (scene.viewport().getBounds(), juce::Rectangle<int> (16, c.top, 288, c.height));
        EXPECT_EQ (scene.viewport().getBottom() + 8, scene.primary().getY());
        EXPECT_EQ (differenceToHeading (scene, c.top), "");
        EXPECT_EQ (scene.gallery().getBounds(), juce::Rectangle<int> (282, 520)) << "its height is its own";
    }
}

TEST (DetailPaneGallery, FillsThePaneOfEachWindow)
{
    // The pane is as high as the page: windows of 1600 x 1000, 1100 x 720 and 900 x 600.
    EXPECT_EQ (Scene (daw(), 854).shown(), "16 300 288 466");
    EXPECT_EQ (Scene (daw(), 574).shown(), "16 300 288 186");
    EXPECT_EQ (Scene (daw(), 454).shown(), "16 300 288 66");
    EXPECT_EQ (Scene (daw (State::installed), 574).shown(), "16 317 288 125");
    EXPECT_EQ (Scene (daw (State::installed), 454).shown(), "(hidden)");
}

TEST (DetailPaneGallery, NeedsAHeightOf41)
{
    EXPECT_EQ (Scene (daw(), 429).shown(), "16 300 288 41");
    EXPECT_EQ (Scene (daw(), 428).shown(), "(hidden)");
    EXPECT_EQ (Scene (daw(), 200).shown(), "(hidden)");
    EXPECT_EQ (Scene (daw (State::installed), 490).shown(), "16 317 288 41");
    EXPECT_EQ (Scene (daw (State::installed), 489).shown(), "(hidden)");
}

TEST (DetailPaneGallery, WithTooLittleHeightTheHeadingIsStillPainted)
{
    Scene scene (daw(), 428);
    EXPECT_EQ (scene.shown(), "(hidden)");
    EXPECT_EQ (differenceToHeading (scene, 300), "");
    EXPECT_NE (differenceToHeading (scene, 300, {}), "");
}

TEST (DetailPaneGallery, AHeadingThatDoesNotFitWholeIsNotPainted)
{
    // The details end 88 pixels above the foot of the pane.
    EXPECT_EQ (differenceToHeading (*std::make_unique<Scene> (daw(), 300 + 88), 300), "");
    Scene lower (daw(), 299 + 88);
    EXPECT_EQ (differenceToHeading (lower, 300, {}), "");
    EXPECT_EQ (pixelsOf (pictureOf (lower.pane), HubPalette::border, { 16, 273, PaneScene::width - 32, 1 }), PaneScene::width - 32)
        << "the rule above it has its room";
}

TEST (DetailPaneGallery, ComesAndGoesWithTheHeightOfThePane)
{
    Scene scene;

    for (const auto& [height, shown] : { std::pair (428, "(hidden)"), { 429, "16 300 288 41" }, { 300, "(hidden)" }, { 854, "16 300 288 466" } })
    {
        scene.pane.setSize (PaneScene::width, height);
        EXPECT_EQ (scene.shown(), shown) << height;
    }
}

TEST (DetailPaneGallery, FollowsTheWidthOfThePane)
{
    Scene scene;
    scene.pane.setSize (200, 860);
    EXPECT_EQ (scene.shown(), "16 300 168 472");
    EXPECT_EQ (scene.gallery().getBounds(), juce::Rectangle<int> (162, 370)) << "cells of 48 by 30";

    for (const int width : { 32, 33, 20, 0 })
    {
        scene.pane.setSize (width, 860);
        EXPECT_GE (scene.gallery().getWidth(), 0) << width;
        EXPECT_EQ (scene.gallery().getHeight(), 196) << width;
    }
}

//==============================================================================
TEST (DetailPaneGallery, ScrollsUpAndDownOnly)
{
    Scene scene;
    auto& viewport = scene.viewport();
    EXPECT_EQ (viewport.getScrollBarThickness(), 6);
    EXPECT_TRUE (viewport.getVerticalScrollBar().isVisible());
    EXPECT_FALSE (viewport.getHorizontalScrollBar().isVisible());
    EXPECT_EQ (viewport.getViewedComponent(), &scene.gallery());

    viewport.setViewPosition (0, 10000);
    EXPECT_EQ (viewport.getViewPosition(), juce::Point<int> (0, 520 - 472)) << "its last row is reached";
    viewport.setViewPosition (100, 0);
    EXPECT_EQ (viewport.getViewPosition(), juce::Point<int> (0, 0));
}

TEST (DetailPaneGallery, TheLessHeightThereIsTheFurtherItScrolls)
{
    for (const auto& [paneHeight, furthest] : { std::pair (860, 48), { 854, 54 }, { 574, 334 }, { 454, 454 }, { 429, 479 }, { 908, 0 } })
    {
        Scene scene (daw(), paneHeight);
        scene.viewport().setViewPosition (0, 10000);
        EXPECT_EQ (scene.viewport().getViewPositionY(), furthest) << paneHeight;
        EXPECT_EQ (scene.viewport().getVerticalScrollBar().isVisible(), furthest > 0) << paneHeight;
        EXPECT_EQ (scene.gallery().getWidth(), 282) << "with or without the bar: " << paneHeight;
    }
}

TEST (DetailPaneGallery, TheMouseWheelScrollsIt)
{
    Scene scene (daw(), 574);
    scene.wheelOver (scene.viewport());
    EXPECT_GT (scene.viewport().getViewPositionY(), 0);
}

TEST (DetailPaneGallery, ARefreshOfTheProductKeepsItsPlace)
{
    Scene scene (daw(), 574);
    scene.viewport().setViewPosition (0, 150);
    auto model = daw();
    model.progress = 0.5;
    scene.pane.setModel (model);
    EXPECT_EQ (scene.viewport().getViewPositionY(), 150);
}

//==============================================================================
TEST (DetailPaneGallery, PaintsWhatTheLibrarysGalleryPaintsAtItsWidth)
{
    Scene scene;
    GalleryScene alone (282);
    scene.pane.setSize (320, 908);      // high enough for all of it
    pictureOf (scene.pane);
    waitForPictures();

    const auto expected = cut (pictureWithArtworkOn (HubPalette::surface, alone.gallery), { 282, 520 });
    EXPECT_EQ (differenceBySquares (cut (pictureOf (scene.pane), { 16, 300, 282, 520 }), expected), "");
}

TEST (DetailPaneGallery, AnotherProductHidesItAtOnceAndComingBackShowsIt)
{
    Scene scene;
    scene.pane.setModel (someModel());
    EXPECT_EQ (scene.shown(), "(hidden)");
    scene.pane.setModel (daw());
    EXPECT_EQ (scene.shown(), "16 300 288 472");
    scene.pane.clear();
    EXPECT_EQ (scene.shown(), "(hidden)");
    EXPECT_EQ (differenceToHeading (scene, 300, {}), "");
    scene.pane.setModel (daw());
    EXPECT_EQ (scene.shown(), "16 300 288 472");
}

TEST (DetailPaneGallery, IsThereFromTheStartAndHidden)
{
    PaneScene scene;
    EXPECT_FALSE (below<juce::Viewport> (scene.pane, "galleryViewport").isVisible());
}
