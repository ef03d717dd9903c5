#pragma once

#include "Children.h"
#include "Painting.h"
#include "support/GuiHarness.h"
#include "ui/AboutPage.h"

namespace zorva::test
{
/** The about page in a window in memory, with the focus nowhere and the mouse away from everything. */
struct AboutScene
{
    static constexpr int width = 940, height = 574;     // the page in a window of 1100 x 720

    explicit AboutScene (int pageWidth = width, int pageHeight = height)
    {
        page.setSize (pageWidth, pageHeight);
        window = std::make_unique<HeadlessWindow> (page);
        juce::Component::unfocusAllComponents();
        window->mouse ({ 2.0f, 2.0f }, 0);
        pump();
    }

    juce::HyperlinkButton& link (const char* id)    { return below<juce::HyperlinkButton> (page, id); }

    HubLook look;
    AboutPage page;
    std::unique_ptr<HeadlessWindow> window;
};

/** The ids of the links, as the page is read. */
inline constexpr const char* aboutLinks[] { "websiteLink", "bugLink", "featureLink", "joinLink" };
}
