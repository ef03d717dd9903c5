#pragma once

#include "Children.h"
#include "Models.h"
#include "Painting.h"
#include "support/GuiHarness.h"
#include "ui/ProductCard.h"

namespace zorva::test
{
/** A card amid a window, with a notebook of what it reports. */
struct CardScene
{
    static constexpr int width = 252, height = 380;

    explicit CardScene (ProductCardModel model = someModel(), bool online = true)
        : card (std::make_unique<ProductCard> (std::move (model), online))
    {
        room.setSize (600, 480);
        room.addAndMakeVisible (*card);
        card->setBounds (40, 40, width, height);
        card->onAction = [this] (const juce::String& word) { notes.add (word); };
        card->onSelected = [this] { notes.add ("selected"); };
        window = std::make_unique<HeadlessWindow> (room);
        juce::Component::unfocusAllComponents();
        window->mouse ({ 590.0f, 470.0f }, 0);
    }

    juce::TextButton& primary()    { return below<juce::TextButton> (*card, "primaryButton"); }
    juce::Button& more()           { return below<juce::Button> (*card, "overflowButton"); }

    juce::Point<float> at (int x, int y) const    { return card->getPosition().translated (x, y).toFloat(); }

    void press (juce::Point<float> from, juce::Point<float> to)
    {
        window->mouse (from, 0);
        window->mouse (from, juce::ModifierKeys::leftButtonModifier);
        window->mouse (to, juce::ModifierKeys::leftButtonModifier);
        window->mouse (to, 0);
        pump();
    }

    std::string noted() const    { return notes.joinIntoString (", ").toStdString(); }

    HubLook look;
    juce::Component room;
    std::unique_ptr<ProductCard> card;
    std::unique_ptr<HeadlessWindow> window;
    juce::StringArray notes;
};
}
