#include "HubWorld.h"
#include "MenusInTheWindow.h"
#include "PaintRecorder.h"
#include "WidgetWalk.h"
#include "creator/CreatorProfileStore.h"
#include "ui/FocusRing.h"
#include "ui/HubPalette.h"

#include <algorithm>

using namespace zorva::test;

namespace
{
/** A page as it is shown in a window of this size. */
struct Page
{
    std::string name;
    int width, height;
    Sidebar::Tab tab;
    size_t numWidgets;      ///< with those of the window around it, and with disabled ones
    std::function<void (HubRun&)> prepare;
};

void PrintTo (const Page& page, std::ostream* out)    { *out << page.name; }

void openAdvanced (HubRun& run)    { run.window->click (below (*run.hub, "advancedButton")); }

void openWizard (HubRun& run)
{
    run.window->click (below (*run.hub, "createYourProfileButton"));
    EXPECT_TRUE (below (*run.hub, "wizard").isShowing());
}

/** Puts a draft on disk that the wizard opens at this step. */
void putDraftAt (int step)
{
    CreatorProfile profile;
    profile.displayName = "Ann";
    profile.primaryRole = "Artist";
    profile.currentStep = step;
    juce::String error;
    EXPECT_TRUE (CreatorProfileStore().save (profile, error)) << error;
}

std::vector<Page> allPages()
{
    using Tab = Sidebar::Tab;
    const auto nothing = [] (HubRun&) {};
    const auto select = [] (HubRun& run) { run.select ("zorva-daw"); };

    std::vector<Page> pages { { "Community", 1100, 720, Tab::community, 23, nothing },
                              { "CommunityNarrow", 900, 600, Tab::community, 23, nothing },
                              { "Library", 1100, 720, Tab::library, 16, nothing },
                              { "LibraryWithDetails", 1100, 720, Tab::library, 20, select },
                              { "LibraryWithGallery", 1600, 1000, Tab::library, 21, select },
                              { "Settings", 1100, 720, Tab::settings, 14, nothing },
                              { "SettingsAdvanced", 1100, 720, Tab::settings, 17, openAdvanced },
                              { "SettingsLow", 900, 600, Tab::settings, 13, nothing },
                              { "About", 1100, 720, Tab::about, 9, nothing },
                              { "AboutLow", 900, 600, Tab::about, 7, nothing } };

    // Thirteen around the fields: the sidebar's four, the wizard's eight buttons, the status bar.
    constexpr size_t numFields[] { 0, 1, 2, 1, 1, 2, 1, 1, 1, 1 };

    for (size_t step = 0; step < std::size (numFields); ++step)
        pages.push_back ({ "WizardStep" + std::to_string (step + 1), 1100, 720, Tab::community, 13 + numFields[step], openWizard });

    return pages;
}

/** What may have no tooltip, and why. */
bool needsNoTooltip (const juce::Component& widget)
{
    // Scrolling pages: one over all that they show would come up wherever the mouse rests, and the framework's class has none.
    if (dynamic_cast<const juce::Viewport*> (&widget) != nullptr)
        return true;

    // Says why it is disabled, and while it is not, nothing.
    return widget.getComponentID() == "resetManifestButton" && widget.isEnabled();
}

/** The window with one page, with products in every state that has a widget of its own. */
class EveryWidget : public testing::TestWithParam<Page>
{
protected:
    void SetUp() override
    {
        stayOffline();
        const auto daw = applicationOf ("zorva-daw", "2.0.0", "setup of zorva-daw");
        const auto cached = applicationOf ("cached", "2.0.0", "setup of cached");
        putLocalManifest ({ daw, cached, applicationOf ("absent", "2.0.0", "setup of absent") });
        putInVault (daw, "setup.exe", "setup of zorva-daw");
        putInVault (cached, "setup.exe", "setup of cached");
        putInstalled ("zorva-daw", programOfVersion (2, 0, 0));

        const auto& page = GetParam();
        const juce::String name (page.name);

        if (name.startsWith ("WizardStep"))
            putDraftAt (name.getTrailingIntValue() - 1);

        run = std::make_unique<HubRun> (page.tab);
        pump (30);      // the first refresh has failed by now, which changes nothing
        run->window->setSize (page.width, page.height);
        run->hub->setSize (page.width, page.height);
        page.prepare (*run);
        pictureOf (*run->hub);
        waitForPictures();
        juce::Component::unfocusAllComponents();
        run->window->mouse ({ 1.0f, (float) page.height - 1.0f }, 0);
        walk = std::make_unique<WidgetWalk> (*run);
    }

    /** Each has what a screen reader says, and a tooltip. */
    void expectNames() const
    {
        const auto widgets = walk->widgets();
        EXPECT_EQ (widgets.size(), GetParam().numWidgets);

        for (auto* widget : widgets)
        {
            SCOPED_TRACE (GetParam().name + ": " + WidgetWalk::nameOf (*widget) + " at " + walk->placeOf (*widget).toString().toStdString());
            EXPECT_NE (widget->getComponentID(), "");
            auto* const handler = widget->getAccessibilityHandler();
            ASSERT_NE (handler, nullptr);
            EXPECT_NE (handler->getTitle().trim(), "");
            EXPECT_NE (handler->getDescription().trim(), "");

            auto* const tooltip = dynamic_cast<juce::TooltipClient*> (widget);

            if (! needsNoTooltip (*widget))
                EXPECT_TRUE (tooltip != nullptr && tooltip->getTooltip().trim().isNotEmpty()) << "no tooltip";
        }
    }

    /** Tab stops at all that are enabled and nowhere else, as one reads, and leaves the page only at its end. */
    void expectReading() const
    {
        const auto stops = walk->tabStops();
        auto usable = WidgetWalk::namesOf (walk->usable()), reached = WidgetWalk::namesOf (stops);
        std::sort (usable.begin(), usable.end());
        std::sort (reached.begin(), reached.end());
        EXPECT_EQ (reached, usable) << GetParam().name;

        for (size_t i = 0; i < stops.size(); ++i)
            for (size_t later = i + 1; later < stops.size(); ++later)
                EXPECT_TRUE (walk->isReadBefore (*stops[i], *stops[later]))
                    << GetParam().name << ": " << WidgetWalk::nameOf (*stops[i]) << " before " << WidgetWalk::nameOf (*stops[later]);

        const auto outside = [this] (const juce::Component* c) { return run->sidebar().isParentOf (c) || c == &run->statusBar(); };
        const auto first = std::find_if_not (stops.begin(), stops.end(), outside);
        const auto end = std::find_if (first, stops.end(), outside);
        EXPECT_NE (first, stops.end()) << GetParam().name << " has no widget";
        EXPECT_EQ (std::count_if (end, stops.end(), [&] (const auto* c) { return ! outside (c); }), 0) << GetParam().name;
    }

    /** Tab brings each into view, with the ring around it. */
    void expectRings() const
    {
        constexpr int margin = 6;
        const auto stops = walk->tabStops();
        run->window->grabKeyboardFocus();

        for (auto* widget : stops)
        {
            SCOPED_TRACE (GetParam().name + ": " + WidgetWalk::nameOf (*widget));
            ASSERT_EQ (juce::Component::getCurrentlyFocusedComponent(), widget);
            const auto place = walk->placeOf (*widget);
            EXPECT_EQ (walk->seenPartOf (*widget).toString(), place.toString()) << "not all of it is in view";

            const auto focused = run->hub->createComponentSnapshot (place.expanded (margin), false, 1.0f);
            juce::Component::unfocusAllComponents();
            const auto plain = run->hub->createComponentSnapshot (place.expanded (margin), false, 1.0f);
            const auto ring = ringAround (focused, plain, margin);

            // The status bar's ring stands around its link alone.
            if (widget == &run->statusBar())
                EXPECT_GE (ring.newPixels, 120);
            else
                EXPECT_TRUE (ring.gaps.empty() && ring.newPixels >= place.getWidth() + place.getHeight())
                    << ring.gaps << "; " << ring.newPixels << " new pixels";

            widget->grabKeyboardFocus();
            run->window->key (juce::KeyPress::tabKey);
        }
    }

    std::unique_ptr<HubRun> run;
    std::unique_ptr<WidgetWalk> walk;
};
}

//==============================================================================
TEST_P (EveryWidget, IsNamedReachedInReadingOrderAndShowsItsFocus)
{
    expectNames();
    expectReading();
    expectRings();
}

INSTANTIATE_TEST_SUITE_P (On, EveryWidget, testing::ValuesIn (allPages()), [] (const auto& param) { return param.param.name; });

TEST (EveryEntryOfTheOverflowMenu, SaysWhatItIs)
{
    stayOffline();
    const auto cached = applicationOf ("cached", "2.0.0", "setup of cached");
    putLocalManifest ({ cached });
    putInVault (cached, "setup.exe", "setup of cached");
    HubRun run;
    const MenusInTheWindow menus (*run.window);
    menus.open (below<juce::Button> (*run.card ("cached"), "overflowButton"));
    std::vector<std::string> titles;

    for (auto* item : allBelow<juce::Component> (*juce::Component::getCurrentlyModalComponent()))
        if (auto* const handler = item->getAccessibilityHandler(); handler != nullptr && handler->getRole() == juce::AccessibilityRole::menuItem)
            titles.push_back (handler->getTitle().toStdString());

    // The framework passes over what cannot be chosen.
    EXPECT_EQ (titles, (std::vector<std::string> { "Show in Explorer", "Delete from Vault" }));
    menus.choose (0);
}

//==============================================================================
TEST (WidgetWalk, SeesWhichSideOfARingIsMissing)
{
    const auto ring = [] (juce::Rectangle<int> gap)
    {
        return paintedOn (HubPalette::raised, 112, 62, [gap] (juce::Graphics& g)
        {
            g.excludeClipRegion (gap);
            drawFocusRing (g, { 4, 4, 104, 54 });
        });
    };

    const auto none = ring ({ 112, 62 });
    EXPECT_EQ (ringAround (ring ({}), none, 6).gaps, "");
    EXPECT_GE (ringAround (ring ({}), none, 6).newPixels, 300);
    EXPECT_EQ (ringAround (ring ({ 0, 0, 112, 6 }), none, 6).gaps, "top lacks 84");
    EXPECT_EQ (ringAround (ring ({ 40, 56, 5, 6 }), none, 6).gaps, "bottom lacks 5");
    EXPECT_EQ (ringAround (ring ({ 0, 20, 8, 1 }), none, 6).gaps, "left lacks 1");
    EXPECT_EQ (ringAround (ring ({ 100, 0, 12, 62 }), none, 6).gaps, "right lacks 34");
    EXPECT_EQ (ringAround (none, none, 6).newPixels, 0);
}
