#pragma once

#include "Children.h"
#include "Painting.h"
#include "support/GuiHarness.h"
#include "ui/MainHubComponent.h"

namespace zorva::test
{
/** The whole content of the main window, in a window in memory, driven as a user drives it. Make the world first: the constructor
    does all of the Hub's start-up work. */
class HubRun
{
public:
    /** Opens a page, as a click on its tab does; the Hub itself starts on the community page. */
    explicit HubRun (Sidebar::Tab page = Sidebar::Tab::library);
    ~HubRun();

    void open (Sidebar::Tab page);

    Sidebar& sidebar()               { return below<Sidebar> (*hub, "sidebar"); }
    ConnectionPill& pill()           { return below<ConnectionPill> (*hub, "connectionPill"); }
    ProductGrid& grid()              { return below<ProductGrid> (*hub, "productGrid"); }
    DetailPane& pane()               { return below<DetailPane> (*hub, "detailPane"); }
    StatusBar& statusBar()           { return below<StatusBar> (*hub, "statusBar"); }
    juce::Viewport& library()        { return below<juce::Viewport> (*hub, "libraryViewport"); }
    juce::TextEditor& searchBox()    { return below<juce::TextEditor> (*hub, "searchBox"); }

    /** The card of a product, or null. */
    ProductCard* card (const juce::String& id);

    /** The primary button of a product's card. */
    juce::TextButton& primary (const juce::String& id);

    /** Every card with its button and chip: "a: INSTALL, Cached | b: Open, ✓ Installed". */
    std::string cards();

    /** Scrolls the library until a component in it can be seen, and clicks it. */
    void click (juce::Component&);

    void clickPrimary (const juce::String& id)    { click (primary (id)); }
    void select (const juce::String& id);

    /** Sends an action word as a card would. */
    void send (const juce::String& id, const juce::String& word);

    /** The id of the product in the pane; "(closed)" while the pane is hidden. */
    juce::String shownInPane();

    /** Waits until a card's button has this text; false on time-out. */
    bool waitForButton (const juce::String& id, const juce::String& text);

    /** Waits until the catalogue server was reached. */
    bool waitUntilOnline();

    /** Waits for a message box and answers it by a button: "warning | Title | Text | OK, Cancel" or "(no box)". */
    std::string takeBox (const juce::String& button = "OK");

    /** Runs everything that is queued; true when no message box came of it. */
    bool showsNoBox();

    /** Empty when the status bar looks like one with these values; path and free space are set to the same on both. */
    std::string statusDifference (const std::function<void (StatusBar&)>& values);

    /** Ends the hub as closing the window does. */
    void close();

    HubLook look;
    std::unique_ptr<MainHubComponent> hub;
    std::unique_ptr<HeadlessWindow> window;

private:
    JUCE_DECLARE_NON_COPYABLE (HubRun)
};
}
