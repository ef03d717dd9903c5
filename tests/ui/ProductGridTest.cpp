#include "Children.h"
#include "Models.h"
#include "Painting.h"
#include "support/GuiHarness.h"
#include "ui/HubPalette.h"
#include "ui/ProductGrid.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
using State = ProductCardState;

std::vector<ProductCardModel> modelsOf (const juce::StringArray& ids, State state = State::notInstalled)
{
    std::vector<ProductCardModel> models;

    for (const auto& id : ids)
        models.push_back (someModel (state, someProduct (id, "Name of " + id)));

    return models;
}

juce::StringArray ids (int count)
{
    juce::StringArray names;

    for (int i = 0; i < count; ++i)
        names.add ("product-" + juce::String (i));

    return names;
}

/** A grid in a window, with a notebook of what it reports. */
struct Scene
{
    explicit Scene (int width = 934, int height = 900)
    {
        grid.setSize (width, height);
        grid.onProductAction = [this] (const juce::String& id, const juce::String& word) { notes.add (id + ": " + word); };
        grid.onProductSelected = [this] (const juce::String& id) { notes.add (id + " selected"); };
        window = std::make_unique<HeadlessWindow> (grid);
        juce::Component::unfocusAllComponents();
    }

    std::vector<ProductCard*> cards() const    { return allBelow<ProductCard> (grid); }
    juce::Viewport& viewport()                 { return *allBelow<juce::Viewport> (grid).at (0); }
    juce::Button& primaryOf (size_t card)      { return below<juce::Button> (*cards().at (card), "primaryButton"); }

    juce::String shownIds() const
    {
        juce::StringArray shown;

        for (const auto* card : cards())
            shown.add (card->getModel().product.id);

        return shown.joinIntoString (" ");
    }

    HubLook look;
    ProductGrid grid;
    std::unique_ptr<HeadlessWindow> window;
    juce::StringArray notes;
};
}

//==============================================================================
TEST (ProductGrid, WithoutProductsItSaysSo)
{
    ProductGrid grid;
    grid.setSize (500, 300);

    EXPECT_EQ (difference (pictureOf (grid), paintedOn (HubPalette::windowBackground, 500, 300, [] (juce::Graphics& g)
    {
        line (g, "No products available.", { 500, 300 }, plain (13.0f), HubPalette::textSecondary, juce::Justification::centred);
    })), "");
    EXPECT_EQ (grid.heightForWidth (934), 0);
}

TEST (ProductGrid, WithProductsTheTextGoesAndComesBack)
{
    Scene scene;
    scene.grid.setModels (modelsOf ({ "a" }));
    EXPECT_EQ (scene.cards().size(), (size_t) 1);
    EXPECT_EQ (pixelsOf (pictureOf (scene.grid), HubPalette::windowBackground, { 0, 440, 934, 300 }), 934 * 300);

    scene.grid.setModels ({});
    EXPECT_EQ (scene.cards().size(), (size_t) 0);
    EXPECT_LT (pixelsOf (pictureOf (scene.grid), HubPalette::windowBackground, { 300, 440, 334, 20 }), 334 * 20);
}

TEST (ProductGrid, TheCardsStandWhereTheLayoutSays)
{
    struct Case
    {
        int width;
        const char* third;
        const char* fifth;
    };

    for (const auto& c : { Case { 934, "626 20 287 380", "323 416 287 380" },
                           { 792, "532 20 240 380", "276 416 240 380" },
                           { 536, "20 416 240 380", "20 812 240 380" },
                           { 280, "20 812 240 380", "20 1604 240 380" },
                           { 279, "20 812 239 380", "20 1604 239 380" },
                           { 5000, "3336 20 1642 380", "1678 416 1642 380" } })
    {
        Scene scene (c.width, 2100);   // high enough for all, so that no scroll bar takes part of the width
        scene.grid.setModels (modelsOf (ids (5)));
        ASSERT_EQ (scene.cards().size(), (size_t) 5);
        EXPECT_EQ (scene.cards()[2]->getBounds().toString(), c.third) << c.width;
        EXPECT_EQ (scene.cards()[4]->getBounds().toString(), c.fifth) << c.width;
    }
}

TEST (ProductGrid, TellsItsHeightForAWidth)
{
    Scene scene;
    scene.grid.setModels (modelsOf (ids (5)));

    EXPECT_EQ (scene.grid.heightForWidth (934), 816);
    EXPECT_EQ (scene.grid.heightForWidth (792), 816);
    EXPECT_EQ (scene.grid.heightForWidth (791), 1212);
    EXPECT_EQ (scene.grid.heightForWidth (536), 1212);
    EXPECT_EQ (scene.grid.heightForWidth (535), 2004);
    EXPECT_EQ (scene.grid.heightForWidth (0), 2004);
}

TEST (ProductGrid, FillsTheRoomItHas)
{
    Scene scene (934, 900);
    scene.grid.setModels (modelsOf (ids (2)));

    EXPECT_EQ (scene.viewport().getBounds(), scene.grid.getLocalBounds());
    EXPECT_EQ (scene.viewport().getViewedComponent()->getBounds(), juce::Rectangle<int> (0, 0, 934, 900));
    EXPECT_FALSE (scene.viewport().getVerticalScrollBar().isVisible());
}

TEST (ProductGrid, ALowGridScrollsAndItsCardsMakeRoomForTheBar)
{
    Scene scene (934, 500);
    scene.grid.setModels (modelsOf (ids (6)));
    auto& viewport = scene.viewport();
    ASSERT_TRUE (viewport.getVerticalScrollBar().isVisible());
    EXPECT_FALSE (viewport.getHorizontalScrollBar().isVisible());

    const int visible = viewport.getMaximumVisibleWidth();
    EXPECT_LT (visible, 934);
    EXPECT_EQ (viewport.getViewedComponent()->getWidth(), visible);
    EXPECT_EQ (viewport.getViewedComponent()->getHeight(), 816);
    EXPECT_EQ (scene.cards()[0]->getWidth(), (visible - 72) / 3);
}

TEST (ProductGrid, TheLayoutFollowsTheSizeBackAndForth)
{
    Scene scene (934, 816);
    scene.grid.setModels (modelsOf (ids (6)));
    const auto before = scene.cards()[4]->getBounds();

    for (const auto [width, height] : { std::pair { 300, 200 }, { 0, 0 }, { 934, 500 }, { 128, 128 }, { 5000, 3000 } })
        scene.grid.setSize (width, height);

    scene.grid.setSize (934, 816);
    EXPECT_EQ (scene.cards()[4]->getBounds(), before);
    EXPECT_FALSE (scene.viewport().getVerticalScrollBar().isVisible());
}

//==============================================================================
TEST (ProductGrid, TheSameProductsKeepTheirCards)
{
    Scene scene;
    scene.grid.setModels (modelsOf ({ "a", "b", "c" }));
    const auto before = scene.cards();

    scene.grid.setModels (modelsOf ({ "a", "b", "c" }, State::cached));
    EXPECT_EQ (scene.cards(), before);

    for (const auto* card : scene.cards())
        EXPECT_EQ (card->getModel().state, State::cached);
}

TEST (ProductGrid, OtherProductsGetNewCards)
{
    for (const auto& changed : { juce::StringArray { "a", "b" }, { "a", "b", "c", "d" }, { "a", "c", "b" }, { "a", "b", "C" } })
    {
        Scene scene;
        scene.grid.setModels (modelsOf ({ "a", "b", "c" }));
        const juce::Component::SafePointer<ProductCard> first (scene.cards()[0]);

        scene.grid.setModels (modelsOf (changed));
        EXPECT_EQ (first, nullptr) << "all cards are made anew";
        EXPECT_EQ (scene.shownIds(), changed.joinIntoString (" "));
    }
}

TEST (ProductGrid, TheFocusStaysOnItsProductWhenOthersComeAndGo)
{
    Scene scene;
    scene.grid.setModels (modelsOf ({ "a", "b", "c" }));
    scene.cards()[1]->grabKeyboardFocus();
    scene.grid.setModels (modelsOf ({ "z", "a", "b" }));
    EXPECT_TRUE (scene.cards()[2]->hasKeyboardFocus (false));

    scene.primaryOf (2).grabKeyboardFocus();
    scene.grid.setModels (modelsOf ({ "b", "c" }));
    EXPECT_TRUE (scene.cards()[0]->hasKeyboardFocus (false)) << "from its button, which may mean something else by now";

    scene.grid.setModels (modelsOf ({ "c" }));
    EXPECT_FALSE (scene.cards()[0]->hasKeyboardFocus (true)) << "not on another product";

    juce::Component::unfocusAllComponents();
    scene.grid.setModels (modelsOf ({ "a", "c" }));
    EXPECT_EQ (juce::Component::getCurrentlyFocusedComponent(), nullptr);
}

TEST (ProductGrid, TheScrollPositionSurvivesARefresh)
{
    Scene scene (934, 500);
    scene.grid.setModels (modelsOf (ids (6)));
    scene.viewport().setViewPosition (0, 200);

    scene.grid.setModels (modelsOf (ids (6), State::cached));
    scene.grid.setOnline (true);
    EXPECT_EQ (scene.viewport().getViewPositionY(), 200);
}

TEST (ProductGrid, AnUpdatedModelReachesItsCardAlone)
{
    Scene scene;
    scene.grid.setModels (modelsOf ({ "a", "b" }));
    const auto before = scene.cards();

    scene.grid.updateModel (modelsOf ({ "b" }, State::downloading).front());
    EXPECT_EQ (scene.cards(), before);
    EXPECT_EQ (scene.cards()[0]->getModel().state, State::notInstalled);
    EXPECT_EQ (scene.cards()[1]->getModel().state, State::downloading);
}

TEST (ProductGrid, AnUnknownProductUpdatesNothing)
{
    Scene scene;
    scene.grid.setModels (modelsOf ({ "a", "b" }));

    for (const char* unknown : { "c", "", "A", "a " })
        scene.grid.updateModel (modelsOf ({ unknown }, State::downloading).front());

    EXPECT_EQ (scene.shownIds(), "a b");
    for (const auto* card : scene.cards())
        EXPECT_EQ (card->getModel().state, State::notInstalled);
}

TEST (ProductGrid, TheConnectionReachesPresentAndFutureCards)
{
    Scene scene;
    scene.grid.setModels (modelsOf ({ "a" }));
    EXPECT_FALSE (scene.primaryOf (0).isEnabled()) << "offline at first";

    scene.grid.setOnline (true);
    EXPECT_TRUE (scene.primaryOf (0).isEnabled());

    scene.grid.setModels (modelsOf ({ "b", "c" }));
    EXPECT_TRUE (scene.primaryOf (1).isEnabled());

    scene.grid.setOnline (false);
    EXPECT_FALSE (scene.primaryOf (0).isEnabled());
    EXPECT_FALSE (scene.primaryOf (1).isEnabled());
}

//==============================================================================
TEST (ProductGrid, ClicksComeUpWithTheProductsId)
{
    Scene scene;
    scene.grid.setModels (modelsOf ({ "a", "b", "c" }, State::cached));

    scene.window->click (scene.primaryOf (1));
    scene.window->click (*scene.cards()[2]);
    EXPECT_EQ (scene.notes.joinIntoString (", "), "b: install, c selected");
}

TEST (ProductGrid, WithoutCallbacksClicksDoNothing)
{
    Scene scene;
    scene.grid.onProductAction = nullptr;
    scene.grid.onProductSelected = nullptr;
    scene.grid.setModels (modelsOf ({ "a" }, State::cached));

    scene.window->click (scene.primaryOf (0));
    scene.window->click (*scene.cards()[0]);
    EXPECT_EQ (scene.notes.size(), 0);
}

TEST (ProductGrid, ACallbackMayChangeTheProducts)
{
    Scene scene;
    scene.grid.setModels (modelsOf ({ "a", "b" }, State::cached));
    scene.grid.onProductAction = [&] (const juce::String& id, const juce::String& word)
    {
        scene.grid.setModels ({});
        scene.notes.add (id + ": " + word);   // what was handed in must still be there
    };
    scene.window->click (scene.primaryOf (1));
    EXPECT_EQ (scene.notes.joinIntoString (", "), "b: install");

    scene.grid.setModels (modelsOf ({ "a", "b" }));
    scene.grid.onProductSelected = [&] (const juce::String& id)
    {
        scene.grid.setModels (modelsOf ({ "z" }));
        scene.notes.add (id + " selected");
    };
    scene.window->click (*scene.cards()[0]);
    EXPECT_EQ (scene.notes.joinIntoString (", "), "b: install, a selected");
}

TEST (ProductGrid, TheKeyboardReachesCardsBelowTheFold)
{
    Scene scene (934, 500);
    scene.grid.setModels (modelsOf (ids (6), State::cached));
    auto* const last = scene.cards().back();
    scene.window->grabKeyboardFocus();

    for (int i = 0; i < 40 && ! last->hasKeyboardFocus (false); ++i)
        scene.window->key (juce::KeyPress::tabKey);

    ASSERT_TRUE (last->hasKeyboardFocus (false));
    EXPECT_TRUE (scene.grid.getLocalBounds().contains (scene.grid.getLocalArea (last, last->getLocalBounds()))) << "it was scrolled into view";
}
