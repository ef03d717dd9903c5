#pragma once

#include "Children.h"
#include "Models.h"
#include "Painting.h"
#include "support/GuiHarness.h"
#include "ui/DetailPane.h"

namespace zorva::test
{
/** A pane in a window, with a notebook of what it reports. */
struct PaneScene
{
    static constexpr int width = 320, height = 860;   // high enough for everything a test shows

    explicit PaneScene (int paneHeight = height)
    {
        pane.setSize (width, paneHeight);
        pane.onAction = [this] (const juce::String& word) { notes.add (word); };
        pane.onClose = [this] { notes.add ("closed"); };
        window = std::make_unique<HeadlessWindow> (pane);
        juce::Component::unfocusAllComponents();
        window->mouse ({ 5.0f, 5.0f }, 0);
    }

    juce::TextButton& primary()      { return below<juce::TextButton> (pane, "primaryButton"); }
    juce::TextButton& reinstall()    { return below<juce::TextButton> (pane, "reinstallButton"); }
    juce::Button& reveal()           { return below<juce::Button> (pane, "revealLink"); }
    juce::Button& close()            { return below<juce::Button> (pane, "closeButton"); }

    std::string noted() const    { return notes.joinIntoString (", ").toStdString(); }

    HubLook look;
    DetailPane pane;
    std::unique_ptr<HeadlessWindow> window;
    juce::StringArray notes;
};
}
