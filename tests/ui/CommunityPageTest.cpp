#include "CommunityScene.h"
#include "HubWorld.h"
#include "app/HubPaths.h"
#include "creator/CreatorProfileWizard.h"
#include "support/Files.h"

using namespace zorva::test;
using Scene = CommunityScene;

namespace
{
constexpr auto info = juce::MessageBoxIconType::InfoIcon;

const char* const noDrafts = "No local preview drafts have been saved yet. After a successful WAV render, use Prepare Preview in ZORVA Hub "
                             "from the DAW.";
const char* const aboutDrafts = " saved on this computer. Nothing is uploaded or public. The DAW source WAV remains untouched.\n\n"
                                "The draft folder can be opened for owner-controlled export or deletion.";

void putDrafts (int count)
{
    for (int i = 0; i < count; ++i)
        write (HubPaths::publishDraftsDirectory().getChildFile ("draft-" + juce::String (i) + ".json"), "{}");
}

juce::Component* focused()    { return juce::Component::getCurrentlyFocusedComponent(); }

/** The id of what has the focus, behind that of the section around it. */
std::string focusedPath()
{
    if (focused() == nullptr)
        return "(nothing)";

    const auto section = focused()->getParentComponent()->getComponentID();
    const bool isInSection = dynamic_cast<ActionButton*> (focused()) != nullptr;
    return ((isInSection ? section + "/" : juce::String()) + focused()->getComponentID()).toStdString();
}

/** What the keyboard reaches on the page, in the order in which it is read; the button for playing is disabled. */
const std::vector<std::string> readingOrder {
    "viewport",
    "hero/createYourProfileButton", "hero/submitYourMusicButton", "hero/heroPrimaryButton",
    "featuredTrack/submitATrackButton",
    "producerSpotlight/spotlightButton", "artistSpotlight/spotlightButton",
    "participation/createEditProfileButton", "participation/reviewLocalDraftsButton", "participation/submitMusicButton",
    "resource0/resourceButton", "resource1/resourceButton", "resource2/resourceButton", "resource3/resourceButton",
    "resource4/resourceButton", "resource5/resourceButton", "resource6/resourceButton",
};

const std::pair<int, int> pageSizes[] { { 940, 574 }, { 740, 454 } };     // in windows of 1100 x 720 and 900 x 600
}

//==============================================================================
TEST (CommunityPage, TheContentIsAsWideAsThePageLessTheScrollBar)
{
    struct Case
    {
        int width, height, contentWidth, contentHeight;
    };

    for (const auto& expected : { Case { 940, 574, 934, 2224 }, { 740, 454, 734, 3947 }, { 814, 574, 808, 2224 }, { 813, 574, 807, 3947 },
                                  { 940, 3000, 934, 3000 }, { 940, 2224, 934, 2224 } })
    {
        SCOPED_TRACE (std::to_string (expected.width) + " x " + std::to_string (expected.height));
        Scene scene (expected.width, expected.height);
        EXPECT_EQ (scene.viewport().getBounds(), juce::Rectangle<int> (expected.width, expected.height));
        EXPECT_EQ (scene.child ("wizard").getBounds(), juce::Rectangle<int> (expected.width, expected.height));
        EXPECT_EQ (scene.child ("experience").getBounds(), juce::Rectangle<int> (expected.contentWidth, expected.contentHeight));
    }
}

TEST (CommunityPage, APageWithoutWidthHasContentWithoutWidth)
{
    Scene scene (3, 10);
    EXPECT_EQ (scene.child ("experience").getWidth(), 0);
}

TEST (CommunityPage, TheViewportScrollsUpAndDownOnly)
{
    Scene scene;
    auto& viewport = scene.viewport();

    EXPECT_EQ (viewport.getViewedComponent(), &scene.child ("experience"));
    EXPECT_TRUE (viewport.isVerticalScrollBarShown());
    EXPECT_FALSE (viewport.isHorizontalScrollBarShown());
    EXPECT_EQ (viewport.getScrollBarThickness(), 6);
    EXPECT_EQ (viewport.getVerticalScrollBar().getBounds(), juce::Rectangle<int> (934, 0, 6, 574));
    EXPECT_FALSE (scene.child ("wizard").isVisible());
}

TEST (CommunityPage, TheHerosWordsAreHandedOn)
{
    Scene scene;
    scene.page->setHeroPrimary ("MANAGE ZORVA DAW", "Open Library to manage the installed ZORVA DAW.");

    auto& button = scene.child<juce::TextButton> ("heroPrimaryButton");
    EXPECT_EQ (button.getButtonText(), "MANAGE ZORVA DAW");
    EXPECT_EQ (button.getTitle(), "Manage ZORVA DAW");
    EXPECT_EQ (button.getDescription(), "Open Library to manage the installed ZORVA DAW.");
    EXPECT_EQ (button.getTooltip(), "Open Library to manage the installed ZORVA DAW.");
}

TEST (CommunityPage, TheHerosThirdButtonOpensTheLibrary)
{
    Scene scene;
    scene.click ("hero/heroPrimaryButton");
    EXPECT_EQ (scene.notes.joinIntoString (","), "open library");
}

//==============================================================================
TEST (CommunityPage, TheProfileButtonsOpenTheWizardInItsPlace)
{
    for (const auto* path : { "hero/createYourProfileButton", "participation/createEditProfileButton" })
    {
        SCOPED_TRACE (path);
        Scene scene;
        scene.click (path);

        EXPECT_FALSE (scene.viewport().isVisible());
        EXPECT_TRUE (scene.child ("wizard").isVisible());
        EXPECT_EQ (scene.child ("wizard").getBounds(), scene.page->getLocalBounds());
        EXPECT_TRUE (scene.child ("wizard").hasKeyboardFocus (true));
    }
}

TEST (CommunityPage, ClosingTheWizardBringsThePageBackWithTheFocus)
{
    Scene scene;
    scene.click ("hero/createYourProfileButton");
    auto& wizard = scene.child<CreatorProfileWizard> ("wizard");
    ASSERT_TRUE (wizard.onClose != nullptr);
    wizard.onClose();
    pump();

    EXPECT_FALSE (wizard.isVisible());
    EXPECT_TRUE (scene.viewport().isVisible());
    EXPECT_TRUE (scene.viewport().hasKeyboardFocus (false));
}

TEST (CommunityPage, TheScrollPositionSurvivesTheWizard)
{
    Scene scene;
    scene.click ("participation/createEditProfileButton");
    const auto position = scene.viewport().getViewPosition();
    EXPECT_GT (position.y, 500);

    scene.child<CreatorProfileWizard> ("wizard").onClose();
    pump();
    EXPECT_EQ (scene.viewport().getViewPosition(), position);
}

//==============================================================================
TEST (CommunityPage, TheDraftsDialogTellsHowManyThereAre)
{
    struct Case
    {
        int drafts;
        juce::String message, firstButton;
    };

    const Case cases[] {
        { 0, noDrafts, "OK" },
        { 1, juce::String ("1 private local draft is") + aboutDrafts, "Open Draft Folder" },
        { 2, juce::String ("2 private local drafts are") + aboutDrafts, "Open Draft Folder" },
        { 12, juce::String ("12 private local drafts are") + aboutDrafts, "Open Draft Folder" },
    };

    for (const auto& expected : cases)
    {
        putDrafts (expected.drafts);
        Scene scene;
        scene.click ("participation/reviewLocalDraftsButton");
        EXPECT_EQ (takeBox (info, "Close"), ("Local Preview Drafts | " + expected.message + " | " + expected.firstButton + ", Close").toStdString());
    }
}

TEST (CommunityPage, ExactlyOneDraftReadsInTheSingular)
{
    putDrafts (1);
    Scene scene;
    scene.click ("participation/reviewLocalDraftsButton");
    EXPECT_TRUE (juce::String (takeBox (info, "Close")).contains ("| 1 private local draft is saved on this computer. "));
}

TEST (CommunityPage, TheFirstButtonOpensTheFolderOfTheDrafts)
{
    putDrafts (1);
    FakeFileManager desktop;
    Scene scene;
    scene.click ("participation/reviewLocalDraftsButton");
    takeBox (info, "Open Draft Folder");
    EXPECT_EQ (desktop.openedPath(), HubPaths::publishDraftsDirectory().getFullPathName());
}

TEST (CommunityPage, WithNoDraftsTheFirstButtonReadsOkAndDoesNothingMore)
{
    ASSERT_TRUE (HubPaths::publishDraftsDirectory().createDirectory().wasOk());
    FakeFileManager desktop;
    Scene scene;
    scene.click ("participation/reviewLocalDraftsButton");
    takeBox (info, "OK");
    pump (200);
    EXPECT_FALSE (desktop.wasCalled());
}

TEST (CommunityPage, CloseOpensNothing)
{
    putDrafts (2);
    FakeFileManager desktop;
    Scene scene;
    scene.click ("participation/reviewLocalDraftsButton");
    takeBox (info, "Close");
    pump (200);
    EXPECT_FALSE (desktop.wasCalled());
}

TEST (CommunityPage, AnAnswerAfterThePageIsGoneDoesNothing)
{
    putDrafts (2);
    FakeFileManager desktop;
    {
        Scene scene;
        scene.click ("participation/reviewLocalDraftsButton");
        ASSERT_NE (currentAlert(), nullptr);
    }
    takeBox (info, "Open Draft Folder");
    pump (200);
    EXPECT_FALSE (desktop.wasCalled());
}

//==============================================================================
TEST (CommunityPage, TabGoesDownThePageInReadingOrder)
{
    for (const auto& [width, height] : pageSizes)
    {
        Scene scene (width, height);
        std::vector<std::string> actual;
        scene.window->grabKeyboardFocus();

        for (size_t i = 0; i < readingOrder.size(); ++i)
        {
            actual.push_back (focusedPath());
            scene.window->key (juce::KeyPress::tabKey);
        }

        EXPECT_EQ (actual, readingOrder);
    }
}

TEST (CommunityPage, WhatTheKeyboardReachesScrollsIntoViewWithItsSection)
{
    for (const auto& [width, height] : pageSizes)
    {
        Scene scene (width, height);
        scene.window->grabKeyboardFocus();

        for (size_t i = 1; i < readingOrder.size(); ++i)
        {
            scene.window->key (juce::KeyPress::tabKey);
            SCOPED_TRACE (focusedPath());
            const auto view = scene.page->getLocalBounds();
            const auto section = scene.page->getLocalArea (focused()->getParentComponent(), focused()->getParentComponent()->getLocalBounds());
            EXPECT_TRUE (view.contains (scene.page->getLocalArea (focused(), focused()->getLocalBounds())));
            EXPECT_TRUE (section.getHeight() > height || view.contains (section));
        }
    }
}

TEST (CommunityPage, EachInteractiveWidgetHasTitleDescriptionAndTooltip)
{
    Scene scene;
    auto buttons = allBelow<ActionButton> (*scene.page);
    EXPECT_EQ (buttons.size(), 17u);

    for (auto* button : buttons)
    {
        auto* const handler = button->getAccessibilityHandler();
        ASSERT_NE (handler, nullptr);
        EXPECT_NE (handler->getTitle(), "") << button->getComponentID();
        EXPECT_NE (handler->getDescription(), "") << button->getComponentID();
        EXPECT_NE (button->getTooltip(), "") << button->getComponentID();
    }

    EXPECT_EQ (scene.viewport().getAccessibilityHandler()->getTitle(), "ZORVA Community page");
    EXPECT_EQ (scene.viewport().getAccessibilityHandler()->getDescription(),
               "Creator spotlights, private profiles, local drafts, and resources. Scroll with the arrow keys.");
}

TEST (CommunityPage, TheFocusedOneAloneWearsTheAccentRing)
{
    Scene scene;

    for (auto* button : allBelow<ActionButton> (*scene.page))
    {
        if (! button->isEnabled())
            continue;

        SCOPED_TRACE (button->getParentComponent()->getComponentID().toStdString() + "/" + button->getComponentID().toStdString());
        juce::Component::unfocusAllComponents();
        const auto without = pictureOf (*button);
        button->grabKeyboardFocus();
        const auto expected = painted (button->getWidth(), button->getHeight(), [&] (juce::Graphics& g)
        {
            g.drawImageAt (without, 0, 0);
            g.setColour (HubPalette::accent);
            g.drawRoundedRectangle (button->getLocalBounds().toFloat().reduced (1.5f), 4.0f, 2.0f);
        });

        EXPECT_EQ (difference (pictureOf (*button), expected), "");
        EXPECT_GT (pixelsOf (pictureOf (*button), HubPalette::accent, button->getLocalBounds()), button->getWidth() + button->getHeight());
    }
}

TEST (CommunityPage, TheViewportWearsTheRingInside)
{
    Scene scene;
    const auto edge = [&scene] { return pixelsOf (pictureOf (*scene.page), HubPalette::accent, { 1, 20, 2, 500 }); };
    EXPECT_EQ (edge(), 0);
    scene.viewport().grabKeyboardFocus();
    EXPECT_GT (edge(), 900);
}

TEST (CommunityPage, TheKeyboardScrollsAndClicks)
{
    Scene scene;
    scene.viewport().grabKeyboardFocus();
    scene.window->key (juce::KeyPress::pageDownKey);
    EXPECT_GT (scene.viewport().getViewPositionY(), 300);

    for (const auto key : { juce::KeyPress::spaceKey, juce::KeyPress::returnKey })
    {
        scene.notes.clear();
        scene.child ("heroPrimaryButton").grabKeyboardFocus();
        scene.window->key (key);
        EXPECT_TRUE (pumpUntil ([&] { return scene.notes.size() == 1; }));
        EXPECT_EQ (scene.notes.joinIntoString (","), "open library");
    }
}

TEST (CommunityPage, AClickOfTheMouseLeavesNoRing)
{
    Scene scene;
    scene.click ("hero/heroPrimaryButton");
    EXPECT_FALSE (scene.child ("heroPrimaryButton").hasKeyboardFocus (false));

    scene.window->mouse ({ 300.0f, 60.0f }, juce::ModifierKeys::leftButtonModifier);     // beside the buttons
    scene.window->mouse ({ 300.0f, 60.0f }, 0);
    pump();
    EXPECT_EQ (focusedPath(), "(nothing)");
}
