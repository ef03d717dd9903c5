#include "CreatorProfileWizardScene.h"

using namespace zorva::test;
using Scene = WizardScene;

namespace
{
using Ids = std::vector<std::string>;

std::string focused()
{
    auto* const component = juce::Component::getCurrentlyFocusedComponent();
    return component != nullptr ? component->getComponentID().toStdString() : std::string ("nothing");
}

/** What Tab reaches on a step, from the top. */
Ids orderOn (int step)
{
    Ids order;

    if (step == 2)
        order = { "roleCombo", "secondaryEditor" };
    else if (step == 5)
        order = { "primaryEditor", "themeCombo" };
    else if (step == 6 || step == 7)
        order = { "chooseImageButton" };
    else if (step == 9)
        order = { "websiteToggle" };
    else if (step > 0)
        order = { "primaryEditor" };

    for (const auto* id : { "deleteButton", "exportButton", "backButton", "skipButton", "saveDraftButton", "previewButton", "editLaterButton",
                            "nextButton" })
        if (! ((step == 0 && id == std::string ("backButton")) || (step < 3 && id == std::string ("skipButton"))))
            order.push_back (id);

    return order;
}

/** A window with a button above the wizard and one below it. */
struct InAPage
{
    InAPage()
    {
        before.setComponentID ("before");
        after.setComponentID ("after");
        before.setBounds (0, 0, 100, 20);
        after.setBounds (0, 600, 100, 20);
        scene.window.reset();
        scene.wizard->setTopLeftPosition (0, 22);
        page.setSize (934, 620);

        for (auto* child : std::initializer_list<juce::Component*> { &before, scene.wizard.get(), &after })
            page.addAndMakeVisible (child);

        holder.addAndMakeVisible (page);
        window = std::make_unique<HeadlessWindow> (holder);
    }

    void tab()        { window->key (juce::KeyPress::tabKey); }
    void backTab()    { window->key (juce::KeyPress (juce::KeyPress::tabKey, juce::ModifierKeys::shiftModifier, 0)); }

    Scene scene;
    juce::TextButton before, after;
    juce::Component page;
    struct Holder : juce::Component { Holder() { setSize (934, 620); } } holder;
    std::unique_ptr<HeadlessWindow> window;
};
}

//==============================================================================
TEST (CreatorProfileWizardKeyboard, TabGoesThroughEveryStepInReadingOrder)
{
    for (int step = 0; step < 10; ++step)
    {
        SCOPED_TRACE (step);
        Scene::putAt (step);
        Scene scene;
        const auto expected = orderOn (step);
        scene.child (expected.front().c_str()).grabKeyboardFocus();
        Ids actual;

        for (size_t i = 0; i < expected.size(); ++i)
        {
            actual.push_back (focused());
            scene.window->key (juce::KeyPress::tabKey);
        }

        EXPECT_EQ (actual, expected);
        EXPECT_EQ (focused(), expected.front()) << "and round again, with nothing else in the window";

        for (size_t i = expected.size(); i-- > 0;)
        {
            scene.window->key (juce::KeyPress (juce::KeyPress::tabKey, juce::ModifierKeys::shiftModifier, 0));
            EXPECT_EQ (focused(), expected[i]);
        }
    }
}

TEST (CreatorProfileWizardKeyboard, TheFocusOfTheWizardIsThatOfTheStepsControl)
{
    const char* const main[] { "nextButton", "primaryEditor", "roleCombo", "primaryEditor", "primaryEditor", "primaryEditor",
                               "chooseImageButton", "chooseImageButton", "primaryEditor", "websiteToggle" };

    for (int step = 0; step < 10; ++step)
    {
        Scene::putAt (step);
        Scene scene;
        scene.wizard->grabKeyboardFocus();
        EXPECT_EQ (focused(), main[step]) << step;
        EXPECT_TRUE (scene.wizard->hasKeyboardFocus (true));
    }
}

TEST (CreatorProfileWizardKeyboard, TabFindsItsWayInAndOut)
{
    InAPage page;
    page.before.grabKeyboardFocus();
    page.tab();
    EXPECT_EQ (focused(), "deleteButton");

    for (size_t i = 1; i < orderOn (0).size(); ++i)
        page.tab();

    EXPECT_EQ (focused(), "nextButton");
    page.tab();
    EXPECT_EQ (focused(), "after");
    page.backTab();
    EXPECT_EQ (focused(), "nextButton");

    for (size_t i = 1; i < orderOn (0).size(); ++i)
        page.backTab();

    EXPECT_EQ (focused(), "deleteButton");
    page.backTab();
    EXPECT_EQ (focused(), "before");
    page.backTab();
    EXPECT_EQ (focused(), "after") << "round the window";
}

TEST (CreatorProfileWizardKeyboard, TabGoesRoundTheWindowWhenTheWizardIsItsEnd)
{
    InAPage page;
    page.after.setVisible (false);
    page.scene.child ("nextButton").grabKeyboardFocus();
    page.tab();
    EXPECT_EQ (focused(), "before");

    page.after.setVisible (true);
    page.before.setVisible (false);
    page.scene.child ("deleteButton").grabKeyboardFocus();
    page.backTab();
    EXPECT_EQ (focused(), "after");
}

TEST (CreatorProfileWizardKeyboard, AClickBesideTheControlsLeavesTheFocus)
{
    Scene::putAt (1);
    Scene scene;
    scene.primary().grabKeyboardFocus();
    scene.click ("titleLabel");
    EXPECT_EQ (focused(), "primaryEditor");
}

TEST (CreatorProfileWizardKeyboard, SpaceAndReturnPressTheFocusedButton)
{
    for (const int key : { juce::KeyPress::spaceKey, juce::KeyPress::returnKey })
    {
        Scene scene;
        scene.button ("nextButton").grabKeyboardFocus();
        scene.window->key (key);
        EXPECT_TRUE (pumpUntil ([&] { return scene.step() == 1; }));
    }

    Scene::putAt (9);
    Scene scene;
    scene.child ("websiteToggle").grabKeyboardFocus();
    scene.window->key (juce::KeyPress::spaceKey);
    EXPECT_TRUE (pumpUntil ([&] { return scene.child<juce::ToggleButton> ("websiteToggle").getToggleState(); }));
}

TEST (CreatorProfileWizardKeyboard, AButtonThatIsDisabledHandsTheFocusOn)
{
    Scene::putAt (1);
    Scene scene;
    scene.button ("backButton").grabKeyboardFocus();
    scene.window->key (juce::KeyPress::spaceKey);
    EXPECT_TRUE (pumpUntil ([&] { return scene.step() == 0; }));
    EXPECT_EQ (focused(), "nextButton");
}

//==============================================================================
TEST (CreatorProfileWizardKeyboard, EverythingInteractiveHasTitleDescriptionAndTooltip)
{
    for (int step = 0; step < 10; ++step)
    {
        Scene::putAt (step);
        Scene scene;
        std::map<juce::String, std::string> owners;

        for (const auto& id : orderOn (step))
        {
            SCOPED_TRACE (id + " on step " + std::to_string (step));
            auto& control = scene.child (id.c_str());
            auto* const handler = control.getAccessibilityHandler();
            ASSERT_NE (handler, nullptr);
            EXPECT_NE (handler->getTitle().trim(), "");
            EXPECT_NE (handler->getDescription().trim(), "");
            EXPECT_NE (dynamic_cast<juce::TooltipClient&> (control).getTooltip(), "");
            EXPECT_EQ (owners.count (handler->getTitle()), 0u) << owners[handler->getTitle()];
            owners[handler->getTitle()] = id;
        }
    }
}

TEST (CreatorProfileWizardKeyboard, WhatHasTheFocusWearsTheAccent)
{
    // Between them these steps show every control.
    for (const int step : { 2, 5, 6, 9 })
    {
        Scene::putAt (step);
        Scene scene;
        const auto without = pictureOf (*scene.wizard);

        for (const auto& id : orderOn (step))
        {
            auto& control = scene.child (id.c_str());

            if (step != 2 && id.ends_with ("Button") && id != "chooseImageButton" && id != "skipButton")
                continue;

            const auto area = control.getBounds().expanded (5);
            control.grabKeyboardFocus();
            EXPECT_GE (pixelsOf (pictureOf (*scene.wizard), HubPalette::accent, area) - pixelsOf (without, HubPalette::accent, area),
                       control.getWidth() + control.getHeight()) << id << " on step " << step;
        }
    }
}
