#include "Children.h"
#include "Painting.h"
#include "support/GuiHarness.h"
#include "ui/HubPalette.h"
#include "ui/Sidebar.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
using Tab = Sidebar::Tab;
const Tab tabs[] { Tab::community, Tab::library, Tab::settings, Tab::about };
const char* const captions[] { "COMMUNITY", "LIBRARY", "SETTINGS", "ABOUT" };

/** How a tab button is to look. */
struct Shown
{
    juce::String caption;
    bool daw = false, selected = false, over = false, down = false, focused = false;
};

juce::Image picture (const Shown& s, int width = 160, int height = 34)
{
    return paintedOn (HubPalette::panel, width, height, [&] (juce::Graphics& g)
    {
        const juce::Rectangle<int> bounds (width, height);
        const auto ground = s.down ? HubPalette::panel.darker (0.15f) : s.over ? HubPalette::surface : HubPalette::panel;
        const auto text = s.selected || s.daw ? HubPalette::textPrimary : HubPalette::textPrimary.withAlpha (0.7f);
        juce::Rectangle<int> content (8, 6, std::max (width - 16, 0), std::max (height - 12, 0));

        g.fillAll (ground);

        if (s.daw)
        {
            g.setColour (HubPalette::action.brighter (0.4f));
            g.fillRoundedRectangle (2.0f, (float) (height / 2 - 7), 2.0f, 14.0f, 1.0f);

            const auto chip = content.removeFromRight (std::min (35, content.getWidth())).reduced (0, 2);
            g.setColour (HubPalette::action.darker (0.42f));
            g.fillRoundedRectangle (chip.toFloat(), 4.0f);
            line (g, "DAW", chip, bold (8.5f), HubPalette::textPrimary, juce::Justification::centred);
            content.removeFromRight (std::min (5, content.getWidth()));
        }

        line (g, s.caption, content, bold (11.0f), text);

        if (s.selected)
        {
            g.setColour (HubPalette::accent);
            g.fillRect (8, height - 3, std::max (width - 16, 0), 3);
        }

        if (s.focused)
        {
            g.setColour (HubPalette::accent);
            g.drawRoundedRectangle (bounds.reduced (2).toFloat(), 4.0f, 2.0f);
        }

        // The sidebar's own rule along its right edge lies beneath the buttons.
        if (! s.over && ! s.down)
        {
            g.setColour (HubPalette::border);
            g.fillRect (width - 1, 0, 1, height);
        }
    });
}

/** A sidebar in a window of its own size. */
struct Scene
{
    explicit Scene (int width = 160, int height = 680)
    {
        sidebar.setSize (width, height);
        window = std::make_unique<HeadlessWindow> (sidebar);
        juce::Component::unfocusAllComponents();
        sidebar.onTabChanged = [this] (Tab tab) { changes.push_back (tab); };
    }

    Sidebar::TabButton& button (Tab tab)
    {
        for (auto* candidate : allBelow<Sidebar::TabButton> (sidebar))
            if (candidate->getTab() == tab)
                return *candidate;

        ADD_FAILURE() << "a tab has no button";
        std::abort();
    }

    juce::Image pictureOfButton (Tab tab)    { return cut (pictureOf (sidebar), button (tab).getBounds()); }

    std::string differenceTo (Tab tab, const Shown& shown)
    {
        return difference (pictureOfButton (tab), picture (shown, button (tab).getWidth(), button (tab).getHeight()));
    }

    /** Presses Tab until this button has the focus. */
    void focusOn (Tab tab)
    {
        window->grabKeyboardFocus();

        for (int i = 0; i < 5 && ! button (tab).hasKeyboardFocus (false); ++i)
            window->key (juce::KeyPress::tabKey);

        EXPECT_TRUE (button (tab).hasKeyboardFocus (false));
    }

    HubLook look;
    Sidebar sidebar;
    std::unique_ptr<HeadlessWindow> window;
    std::vector<Tab> changes;
};
}

//==============================================================================
TEST (Sidebar, StartsOnTheCommunityPage)
{
    Scene scene;

    EXPECT_EQ (scene.sidebar.getCurrentTab(), Tab::community);

    for (const auto tab : tabs)
        EXPECT_EQ (scene.button (tab).isSelected(), tab == Tab::community);
}

TEST (Sidebar, ItsButtonsBearTheirNamesTitlesAndDescriptions)
{
    struct Row
    {
        Tab tab;
        const char* name;
        const char* title;
        const char* description;
    };

    Scene scene;

    for (const auto& row : { Row { Tab::community, "Community", "ZORVA Community",
                                   "Open creator spotlights, private profiles, local drafts, and resources." },
                             { Tab::library, "Library", "ZORVA DAW Library",
                               "Open ZORVA DAW downloads, installation, updates, and included products." },
                             { Tab::settings, "Settings", "ZORVA Hub Settings", "Open Hub, Vault, and private AI-key settings." },
                             { Tab::about, "About", "About ZORVA Hub", "Open ZORVA ownership, version, and contact information." } })
    {
        auto& button = scene.button (row.tab);
        EXPECT_EQ (button.getName(), row.name);
        EXPECT_EQ (button.getTitle(), row.title);
        EXPECT_EQ (button.getDescription(), row.description);
        EXPECT_EQ (button.getTooltip(), row.description);
        EXPECT_EQ (button.isDawEntry(), row.tab == Tab::library);
        EXPECT_TRUE (button.getWantsKeyboardFocus());
        EXPECT_FALSE (button.getClickingTogglesState());
    }
}

TEST (Sidebar, TheButtonsStandBelowTheLogoInTheirOrder)
{
    Scene scene;

    EXPECT_EQ (scene.button (Tab::community).getBounds(), juce::Rectangle<int> (0, 84, 160, 34));
    EXPECT_EQ (scene.button (Tab::library).getBounds(), juce::Rectangle<int> (0, 118, 160, 34));
    EXPECT_EQ (scene.button (Tab::settings).getBounds(), juce::Rectangle<int> (0, 152, 160, 34));
    EXPECT_EQ (scene.button (Tab::about).getBounds(), juce::Rectangle<int> (0, 186, 160, 34));
}

TEST (Sidebar, ALowSidebarCutsItsButtonsShort)
{
    Scene scene (160, 140);

    EXPECT_EQ (scene.button (Tab::community).getBounds(), juce::Rectangle<int> (0, 84, 160, 34));
    EXPECT_EQ (scene.button (Tab::library).getBounds(), juce::Rectangle<int> (0, 118, 160, 22));
    EXPECT_EQ (scene.button (Tab::settings).getHeight(), 0);
    EXPECT_EQ (scene.button (Tab::about).getHeight(), 0);

    scene.sidebar.setSize (160, 40);
    for (const auto tab : tabs)
        EXPECT_EQ (scene.button (tab).getHeight(), 0);
}

//==============================================================================
TEST (Sidebar, AClickOnATabSelectsItAndTells)
{
    Scene scene;
    scene.window->click (scene.button (Tab::settings));

    EXPECT_EQ (scene.changes, std::vector<Tab> { Tab::settings });
    EXPECT_EQ (scene.sidebar.getCurrentTab(), Tab::settings);

    for (const auto tab : tabs)
        EXPECT_EQ (scene.button (tab).isSelected(), tab == Tab::settings);

    for (const auto tab : { Tab::library, Tab::about, Tab::community })
        scene.window->click (scene.button (tab));

    EXPECT_EQ (scene.changes, (std::vector<Tab> { Tab::settings, Tab::library, Tab::about, Tab::community }));
}

TEST (Sidebar, TheSelectionHasMovedWhenTheCallbackComes)
{
    Scene scene;
    bool seen = false;
    scene.sidebar.onTabChanged = [&] (Tab tab)
    {
        seen = scene.sidebar.getCurrentTab() == tab && scene.button (tab).isSelected();
    };

    scene.window->click (scene.button (Tab::about));
    EXPECT_TRUE (seen);
}

TEST (Sidebar, AClickOnTheCurrentTabDoesNothing)
{
    Scene scene;
    auto& current = scene.button (Tab::community);
    const RepaintWatch repaints (scene.sidebar);
    scene.window->click (current);

    EXPECT_EQ (scene.changes, std::vector<Tab>());

    for (const auto& area : repaints.areas())
        EXPECT_TRUE (current.getBounds().contains (area)) << "only the button itself, as it is pressed, is painted anew";
}

TEST (Sidebar, ATabWithoutACallbackStillMoves)
{
    Scene scene;
    scene.sidebar.onTabChanged = nullptr;
    scene.window->click (scene.button (Tab::about));

    EXPECT_EQ (scene.sidebar.getCurrentTab(), Tab::about);
}

TEST (Sidebar, TheProgramMovesTheSelectionWithoutACallback)
{
    Scene scene;
    scene.sidebar.setCurrentTab (Tab::library);

    EXPECT_EQ (scene.changes, std::vector<Tab>());
    EXPECT_EQ (scene.sidebar.getCurrentTab(), Tab::library);
    EXPECT_EQ (scene.differenceTo (Tab::library, { .caption = "LIBRARY", .daw = true, .selected = true }), "") << "the underline has come";
    EXPECT_EQ (scene.differenceTo (Tab::community, { .caption = "COMMUNITY" }), "") << "the underline has gone";
}

TEST (Sidebar, AButtonRepaintsOnlyWhenItsSelectionChanged)
{
    Scene scene;
    const RepaintWatch repaints (scene.button (Tab::about));

    scene.button (Tab::about).setSelected (false);
    EXPECT_EQ (repaints.count(), 0);
    scene.button (Tab::about).setSelected (true);
    EXPECT_EQ (repaints.count(), 1);
    scene.button (Tab::about).setSelected (true);
    EXPECT_EQ (repaints.count(), 1);
}

//==============================================================================
TEST (Sidebar, TabMovesAlongTheColumn)
{
    Scene scene;

    scene.window->grabKeyboardFocus();
    EXPECT_TRUE (scene.button (Tab::community).hasKeyboardFocus (false));

    for (const auto tab : { Tab::library, Tab::settings, Tab::about, Tab::community })
    {
        scene.window->key (juce::KeyPress::tabKey);
        EXPECT_TRUE (scene.button (tab).hasKeyboardFocus (false)) << (int) tab;
    }

    scene.window->key (juce::KeyPress (juce::KeyPress::tabKey, juce::ModifierKeys::shiftModifier, 0));
    EXPECT_TRUE (scene.button (Tab::about).hasKeyboardFocus (false));
}

TEST (Sidebar, SpaceAndReturnActivateTheFocusedTab)
{
    Scene scene;
    scene.focusOn (Tab::settings);
    scene.window->key (juce::KeyPress::spaceKey);
    EXPECT_EQ (scene.changes, std::vector<Tab> { Tab::settings });

    scene.focusOn (Tab::about);
    scene.window->key (juce::KeyPress::returnKey);
    EXPECT_EQ (scene.changes, (std::vector<Tab> { Tab::settings, Tab::about }));

    scene.window->key (juce::KeyPress::returnKey);
    scene.window->key (juce::KeyPress::spaceKey);
    EXPECT_EQ (scene.changes.size(), (size_t) 2) << "it is the current one now";
}

//==============================================================================
TEST (Sidebar, PaintsEachTabInEachCondition)
{
    Scene scene;

    for (int i = 0; i < 4; ++i)
    {
        const auto tab = tabs[i];
        const auto other = tab == Tab::community ? Tab::about : Tab::community;
        const bool daw = tab == Tab::library;
        SCOPED_TRACE (captions[i]);

        scene.sidebar.setCurrentTab (other);
        scene.window->mouse ({ 80.0f, 600.0f }, 0);
        EXPECT_EQ (scene.differenceTo (tab, { .caption = captions[i], .daw = daw }), "");

        scene.window->moveTo (scene.button (tab));
        EXPECT_EQ (scene.differenceTo (tab, { .caption = captions[i], .daw = daw, .over = true }), "");

        const auto centre = scene.button (tab).getBounds().getCentre().toFloat();
        scene.window->mouse (centre, juce::ModifierKeys::leftButtonModifier);
        EXPECT_EQ (scene.pictureOfButton (tab).getPixelAt (1, 1), HubPalette::panel.darker (0.15f));
        scene.window->mouse ({ 80.0f, 600.0f }, juce::ModifierKeys::leftButtonModifier);
        scene.window->mouse ({ 80.0f, 600.0f }, 0);

        scene.sidebar.setCurrentTab (tab);
        scene.sidebar.giveAwayKeyboardFocus();
        juce::Component::unfocusAllComponents();
        EXPECT_EQ (scene.differenceTo (tab, { .caption = captions[i], .daw = daw, .selected = true }), "");
    }
}

TEST (Sidebar, TheFocusRingShowsWithAndWithoutTheMouse)
{
    Scene scene;
    scene.focusOn (Tab::settings);
    EXPECT_EQ (scene.differenceTo (Tab::settings, { .caption = "SETTINGS", .focused = true }), "");

    scene.window->moveTo (scene.button (Tab::settings));
    EXPECT_EQ (scene.differenceTo (Tab::settings, { .caption = "SETTINGS", .over = true, .focused = true }), "");
}

TEST (Sidebar, InANarrowColumnTheChipKeepsItsPlaceAndTheCaptionEndsInAnEllipsis)
{
    Scene scene (90, 300);
    EXPECT_EQ (scene.differenceTo (Tab::library, { .caption = "LIBRARY", .daw = true }), "");

    const auto wholeCaption = widthOf (bold (11.0f), "LIBRARY");
    EXPECT_GT (wholeCaption, 90 - 16 - 35 - 5) << "there is not enough room for it";

    for (const int width : { 60, 40, 20, 10 })
    {
        scene.sidebar.setSize (width, 300);
        EXPECT_EQ (scene.differenceTo (Tab::library, { .caption = "LIBRARY", .daw = true }), "") << width;
    }
}

TEST (Sidebar, PaintsPanelRuleAndLogo)
{
    Scene scene;
    const auto image = pictureOf (scene.sidebar);

    EXPECT_EQ (pixel (image, 80, 400), hex (HubPalette::panel));
    EXPECT_EQ (pixel (image, 159, 0), hex (HubPalette::border));
    EXPECT_EQ (pixel (image, 159, 679), hex (HubPalette::border));
    EXPECT_EQ (pixel (image, 158, 400), hex (HubPalette::panel));

    // The logo lies in its box and nowhere else.
    const juce::Rectangle<int> box (12, 12, 136, 60), top (0, 0, 159, 84);
    const int outside = top.getWidth() * top.getHeight() - box.getWidth() * box.getHeight();
    EXPECT_GE (pixelsOf (image, HubPalette::panel, top), outside);
    EXPECT_LT (pixelsOf (image, HubPalette::panel, box), box.getWidth() * box.getHeight()) << "there is a logo";

    const auto logo = juce::SharedResourcePointer<SplashLogo>();
    const auto expected = paintedOn (HubPalette::panel, 160, 84, [&] (juce::Graphics& g)
    {
        g.setColour (HubPalette::border);
        g.fillRect (159, 0, 1, 84);
        logo->picture.draw (g, box);
    });
    EXPECT_EQ (difference (cut (image, { 0, 0, 160, 84 }), expected), "");
}

TEST (Sidebar, WithoutALogoItsTopIsEmpty)
{
    const juce::SharedResourcePointer<SplashLogo> logo;
    logo->picture = {};
    Scene scene;

    EXPECT_EQ (pixelsOf (pictureOf (scene.sidebar), HubPalette::panel, { 0, 0, 159, 84 }), 159 * 84);
    EXPECT_EQ (scene.button (Tab::community).getY(), 84);
}
