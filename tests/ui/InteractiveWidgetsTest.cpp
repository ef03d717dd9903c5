#include "HubRun.h"
#include "HubWorld.h"
#include "support/Text.h"
#include "ui/HubPalette.h"

using namespace zorva::test;

namespace
{
Product app (const juce::String& id)    { return applicationOf (id, "2.0.0", "setup of " + id.toStdString()); }

/** The library with an installed product in the pane, a second one to install, a third that cannot be had offline, and enough
    others to scroll. */
struct Scene
{
    Scene()
    {
        stayOffline();
        std::vector<Product> products { app ("installed"), app ("cached"), app ("absent") };

        for (int i = 0; i < 4; ++i)
            products.push_back (app ("more-" + juce::String (i)));

        putLocalManifest (products);
        putInVault (app ("installed"), "setup.exe", "setup of installed");
        putInVault (app ("cached"), "setup.exe", "setup of cached");
        putInstalled ("installed", programOfVersion (2, 0, 0));

        run = std::make_unique<HubRun>();
        pump (30);   // the first refresh has failed by now, which changes nothing
        run->select ("installed");
        pictureOf (*run->hub);
        juce::Component::unfocusAllComponents();
        run->window->mouse ({ 1.0f, 700.0f }, 0);
    }

    /** The components that Tab reaches, in its order, each once. */
    std::vector<juce::Component*> tabOrder()
    {
        std::vector<juce::Component*> order;

        for (int i = 0; i < 100; ++i)
        {
            if (i == 0)
                run->window->grabKeyboardFocus();   // which goes to the first
            else
                run->window->key (juce::KeyPress::tabKey);

            auto* const focused = juce::Component::getCurrentlyFocusedComponent();

            if (focused == nullptr || (! order.empty() && focused == order.front()))
                break;

            order.push_back (focused);
        }

        return order;
    }

    /** A component by its own id behind that of the card it is on: "cached/primaryButton". */
    juce::String nameOf (const juce::Component& component) const
    {
        juce::String name = component.getComponentID();

        if (auto* tab = dynamic_cast<const Sidebar::TabButton*> (&component))
            name = tab->getName();
        else if (auto* card = dynamic_cast<const ProductCard*> (&component))
            return card->getModel().product.id;

        if (auto* card = component.findParentComponentOfClass<ProductCard>())
            name = card->getModel().product.id + "/" + name;

        if (component.findParentComponentOfClass<DetailPane>() != nullptr)
            name = "detailPane/" + name;

        return name;
    }

    std::unique_ptr<HubRun> run;
};

/** What the keyboard can reach in that scene, in the order in which a page is read. */
const char* const readingOrder[] {
    "Community", "Library", "Settings", "About",
    "searchBox",
    "libraryViewport",
    "installed", "installed/overflowButton", "installed/primaryButton",
    "cached", "cached/overflowButton", "cached/primaryButton",
    "absent", "absent/overflowButton",   // its primary button is disabled
    "more-0", "more-0/overflowButton", "more-1", "more-1/overflowButton", "more-2", "more-2/overflowButton", "more-3", "more-3/overflowButton",
    "detailPane/closeButton", "detailPane/primaryButton", "detailPane/reinstallButton", "detailPane/revealLink",
    "statusBar",
};
}

//==============================================================================
TEST (InteractiveWidgets, TabReachesAllOfThemInReadingOrder)
{
    Scene scene;
    std::vector<std::string> actual, expected (std::begin (readingOrder), std::end (readingOrder));

    for (auto* component : scene.tabOrder())
        actual.push_back (scene.nameOf (*component).toStdString());

    EXPECT_EQ (actual, expected);
}

TEST (InteractiveWidgets, ShiftTabGoesTheSameWayBack)
{
    Scene scene;
    auto order = scene.tabOrder();
    ASSERT_FALSE (order.empty());
    std::reverse (order.begin(), order.end());

    for (auto* expected : order)
    {
        scene.run->window->key (juce::KeyPress (juce::KeyPress::tabKey, juce::ModifierKeys::shiftModifier, 0));
        EXPECT_EQ (scene.nameOf (*juce::Component::getCurrentlyFocusedComponent()), scene.nameOf (*expected));
    }
}

TEST (InteractiveWidgets, EachHasTitleDescriptionAndTooltip)
{
    Scene scene;
    const auto order = scene.tabOrder();
    EXPECT_GE (order.size(), std::size (readingOrder));

    for (auto* component : order)
    {
        SCOPED_TRACE (scene.nameOf (*component).toStdString());
        auto* const handler = component->getAccessibilityHandler();
        ASSERT_NE (handler, nullptr);
        EXPECT_NE (handler->getTitle().trim(), "");
        EXPECT_NE (handler->getDescription().trim(), "");

        auto* const tooltip = dynamic_cast<juce::TooltipClient*> (component);
        auto* const viewport = dynamic_cast<juce::Viewport*> (component);
        EXPECT_TRUE (viewport != nullptr || tooltip != nullptr);

        if (tooltip != nullptr)
            EXPECT_NE (tooltip->getTooltip().trim(), "");
    }
}

TEST (InteractiveWidgets, DisabledButtonsAreDescribedToo)
{
    Scene scene;
    auto& button = scene.run->primary ("absent");
    ASSERT_FALSE (button.isEnabled());
    auto* const handler = button.getAccessibilityHandler();
    ASSERT_NE (handler, nullptr);

    EXPECT_TRUE (handler->getTitle().contains ("Name of absent")) << handler->getTitle();
    EXPECT_NE (handler->getDescription(), "");
    EXPECT_EQ (button.getTooltip(), utf8 ("Offline — downloads unavailable"));
}

TEST (InteractiveWidgets, EachTitleTellsItsProduct)
{
    Scene scene;

    for (auto* component : scene.tabOrder())
        if (auto* card = component->findParentComponentOfClass<ProductCard>())
            EXPECT_TRUE (component->getAccessibilityHandler()->getTitle().contains (card->getModel().product.name))
                << scene.nameOf (*component) << ": " << component->getAccessibilityHandler()->getTitle();
}

TEST (InteractiveWidgets, NoTwoHaveTheSameTitle)
{
    Scene scene;
    std::map<juce::String, juce::String> owners;

    for (auto* component : scene.tabOrder())
    {
        const bool isInPane = component->findParentComponentOfClass<DetailPane>() != nullptr;

        if (isInPane)
            continue;   // the pane repeats what the selected card offers

        const auto title = component->getAccessibilityHandler()->getTitle();
        EXPECT_EQ (owners.count (title), 0u) << title << ": " << owners[title] << " and " << scene.nameOf (*component);
        owners[title] = scene.nameOf (*component);
    }
}

namespace
{
/** How a picture changes when a widget has the focus. */
struct FocusChange
{
    int accentPixels = 0;   ///< new ones in the accent colour, on the widget and close around it
    int elsewhere = 0;      ///< changed ones farther away
};

FocusChange compare (const juce::Image& with, const juce::Image& without, juce::Rectangle<int> around)
{
    const Pixels focused (with), plain (without);
    const auto accent = HubPalette::accent.getPixelARGB().getNativeARGB();
    FocusChange change;

    for (int y = 0; y < with.getHeight(); ++y)
        for (int x = 0; x < with.getWidth(); ++x)
        {
            const auto pixel = focused.at (x, y).getNativeARGB();

            if (pixel == plain.at (x, y).getNativeARGB())
                continue;

            if (! around.contains (x, y))
                ++change.elsewhere;
            else if (pixel == accent)
                ++change.accentPixels;
        }

    return change;
}
}

TEST (InteractiveWidgets, TheFocusedOneIsInViewAndWearsTheAccentRing)
{
    Scene scene;
    auto& hub = *scene.run->hub;
    scene.run->window->grabKeyboardFocus();
    size_t seen = 0;

    for (; seen < std::size (readingOrder); ++seen)
    {
        auto* const component = juce::Component::getCurrentlyFocusedComponent();
        ASSERT_NE (component, nullptr);
        SCOPED_TRACE (scene.nameOf (*component).toStdString());

        const auto with = pictureOf (hub);
        juce::Component::unfocusAllComponents();
        const auto without = pictureOf (hub);

        const auto bounds = hub.getLocalArea (component, component->getLocalBounds());
        EXPECT_TRUE (hub.getLocalBounds().contains (bounds));
        EXPECT_FALSE (scene.run->library().isParentOf (component) && ! scene.run->library().getBounds().contains (bounds))
            << "not scrolled into view: " << bounds.toString();

        // The status bar's ring stands around its link alone; all others go around the whole widget.
        const auto change = compare (with, without, bounds.expanded (5));
        EXPECT_GE (change.accentPixels, component == &scene.run->statusBar() ? 120 : bounds.getWidth() + bounds.getHeight());
        EXPECT_EQ (change.elsewhere, 0);

        component->grabKeyboardFocus();
        scene.run->window->key (juce::KeyPress::tabKey);
    }

    EXPECT_EQ (seen, std::size (readingOrder));
}
