#include "DetailPaneScene.h"
#include "HubRun.h"
#include "HubWorld.h"
#include "ui/KeepingFocus.h"

using namespace zorva::test;

namespace
{
Product app (const juce::String& id)    { return applicationOf (id, "2.0.0", "setup of " + id.toStdString()); }

/** The library with two products that can be installed. */
struct LibraryScene
{
    LibraryScene()
    {
        stayOffline();
        std::vector<Product> products;

        for (const auto* id : { "first", "second", "third", "fourth", "fifth", "sixth", "seventh" })
        {
            products.push_back (app (id));
            putInVault (app (id), "setup.exe", "setup of " + std::string (id));
        }

        putLocalManifest (products);
        run = std::make_unique<HubRun>();
        pump (30);
    }

    std::unique_ptr<HubRun> run;
};

/** Three buttons in a row. */
struct ThreeButtons
{
    ThreeButtons()
    {
        int x = 0;

        for (auto* button : { &before, &control, &after })
        {
            page.addAndMakeVisible (button);
            button->setBounds (100 * x++, 0, 90, 30);
        }

        page.setSize (300, 30);
        window = std::make_unique<HeadlessWindow> (page);
    }

    HubLook look;
    juce::TextButton before { "before" }, control { "control" }, after { "after" };
    juce::Component page;
    std::unique_ptr<HeadlessWindow> window;
};

juce::Component* focused()    { return juce::Component::getCurrentlyFocusedComponent(); }
}

//==============================================================================
TEST (KeepingFocus, ADisabledControlHandsItToTheOneBefore)
{
    ThreeButtons scene;
    scene.control.grabKeyboardFocus();
    setEnabledKeepingFocus (scene.control, false);
    EXPECT_EQ (focused(), &scene.before);
    EXPECT_FALSE (scene.control.isEnabled());

    setEnabledKeepingFocus (scene.control, true);
    EXPECT_EQ (focused(), &scene.before) << "it is not taken back";

    scene.control.grabKeyboardFocus();
    scene.page.setWantsKeyboardFocus (true);
    setEnabledKeepingFocus (scene.control, false);
    EXPECT_EQ (focused(), &scene.page);
}

TEST (KeepingFocus, AControlThatMayNotHaveItAnyMoreHandsItToTheOneBefore)
{
    ThreeButtons scene;
    scene.control.grabKeyboardFocus();
    setFocusableKeepingFocus (scene.control, true);
    EXPECT_EQ (focused(), &scene.control);

    setFocusableKeepingFocus (scene.control, false);
    EXPECT_EQ (focused(), &scene.before);
    EXPECT_FALSE (scene.control.getWantsKeyboardFocus());
    EXPECT_TRUE (scene.control.isEnabled());

    setFocusableKeepingFocus (scene.before, false);
    EXPECT_EQ (focused(), &scene.after) << "the first hands it to the last";

    setFocusableKeepingFocus (scene.control, true);
    EXPECT_EQ (focused(), &scene.after) << "it is not taken back";
    scene.control.grabKeyboardFocus();
    EXPECT_EQ (focused(), &scene.control);
}

TEST (KeepingFocus, TheDetailsKeepItWhenTheirButtonBeginsToWork)
{
    for (const auto state : { ProductCardState::downloading, ProductCardState::installing })
    {
        PaneScene scene;
        scene.pane.setOnline (true);
        scene.pane.setModel (someModel());
        scene.primary().grabKeyboardFocus();
        ASSERT_EQ (focused(), &scene.primary());

        scene.pane.setModel (someModel (state));
        EXPECT_EQ (focused(), &scene.close());
        scene.window->key (juce::KeyPress::tabKey);
        EXPECT_EQ (focused(), &scene.reveal()) << "Tab goes on from there";
    }
}

TEST (KeepingFocus, TheDetailsKeepItWhenTheConnectionGoes)
{
    PaneScene scene;
    scene.pane.setOnline (true);
    scene.pane.setModel (someModel());
    scene.primary().grabKeyboardFocus();
    scene.pane.setOnline (false);
    EXPECT_EQ (focused(), &scene.close());
}

TEST (KeepingFocus, ACardTakesItFromItsButton)
{
    LibraryScene scene;
    auto& run = *scene.run;
    run.primary ("first").grabKeyboardFocus();
    run.window->key (juce::KeyPress::spaceKey);
    EXPECT_TRUE (pumpUntil ([&] { return focused() != &run.primary ("first"); }));
    EXPECT_EQ (focused(), run.card ("first"));
    run.takeBox();
}

TEST (KeepingFocus, ClosingTheDetailsByTheKeyboardLeadsBackToTheCard)
{
    LibraryScene scene;
    auto& run = *scene.run;
    run.card ("seventh")->grabKeyboardFocus();
    run.window->key (juce::KeyPress::returnKey);
    ASSERT_EQ (run.shownInPane(), "seventh");

    below<juce::Button> (run.pane(), "closeButton").grabKeyboardFocus();
    run.window->key (juce::KeyPress::spaceKey);
    EXPECT_EQ (run.shownInPane(), "(closed)");
    EXPECT_EQ (focused(), run.card ("seventh"));

    const auto place = run.library().getLocalArea (run.card ("seventh"), run.card ("seventh")->getLocalBounds());
    EXPECT_TRUE (run.library().getLocalBounds().contains (place)) << place.toString();
}

TEST (KeepingFocus, ClosingTheDetailsByTheMouseLeavesNoRing)
{
    LibraryScene scene;
    auto& run = *scene.run;
    run.select ("first");
    run.window->click (below (run.pane(), "closeButton"));
    EXPECT_EQ (run.shownInPane(), "(closed)");
    EXPECT_EQ (focused(), nullptr);
}
