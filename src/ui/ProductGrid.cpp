#include "ui/ProductGrid.h"

#include "ui/HubPalette.h"
#include "ui/ProductGridLayout.h"
#include "ui/ScrollIntoView.h"
#include "ui/TextPainting.h"

#include <algorithm>

ProductGrid::ProductGrid()
{
    setOpaque (true);

    content.setComponentID ("content");
    viewport.setComponentID ("viewport");
    viewport.setWantsKeyboardFocus (false);
    viewport.setScrollBarsShown (true, false);
    viewport.setViewedComponent (&content, false);
    addAndMakeVisible (viewport);
}

ProductGrid::~ProductGrid() = default;

void ProductGrid::setModels (std::vector<ProductCardModel> newModels)
{
    const auto sameProducts = showsSameProducts (newModels);
    models = std::move (newModels);

    if (! sameProducts)
        return makeCards();

    for (size_t i = 0; i < cards.size(); ++i)
        cards[i]->setModel (models[i]);
}

void ProductGrid::updateModel (const ProductCardModel& model)
{
    const auto found = std::find_if (models.begin(), models.end(),
                                     [&] (const ProductCardModel& known) { return known.product.id == model.product.id; });

    if (found == models.end())
        return;

    *found = model;
    cards[(size_t) std::distance (models.begin(), found)]->setModel (model);
}

void ProductGrid::setOnline (bool shouldBeOnline)
{
    online = shouldBeOnline;

    for (auto& card : cards)
        card->setOnline (online);
}

void ProductGrid::focusCard (const juce::String& productId)
{
    if (auto* const card = content.findChildWithID (productId))
    {
        card->grabKeyboardFocus();
        scrollIntoView (*card);
    }
}

int ProductGrid::heightForWidth (int width) const { return ProductGridLayout (width).contentHeight ((int) cards.size()); }

void ProductGrid::paint (juce::Graphics& g)
{
    g.fillAll (HubPalette::windowBackground);

    if (models.empty())
        drawTextLine (g, "No products available.", getLocalBounds(), plainFont (13.0f), HubPalette::textSecondary,
                      juce::Justification::centred);
}

void ProductGrid::resized()
{
    viewport.setBounds (getLocalBounds());
    layOutCards();
}

bool ProductGrid::showsSameProducts (const std::vector<ProductCardModel>& others) const
{
    return std::equal (cards.begin(), cards.end(), others.begin(), others.end(),
                       [] (const auto& card, const ProductCardModel& other)
                       { return card->getModel().product.id == other.product.id; });
}

juce::String ProductGrid::productWithFocus() const
{
    const auto found = std::find_if (cards.begin(), cards.end(), [] (const auto& card) { return card->hasKeyboardFocus (true); });
    return found != cards.end() ? (*found)->getModel().product.id : juce::String();
}

void ProductGrid::makeCards()
{
    const auto focused = productWithFocus();
    cards.clear();

    for (const auto& model : models)
    {
        auto card = std::make_unique<ProductCard> (model, online);
        const auto id = model.product.id;

        // The callbacks may change the models: what they need is copied before they run.
        card->onAction = [this, id] (const juce::String& word)
        {
            if (const auto callback = onProductAction)
                callback (id, word);
        };

        card->onSelected = [this, id]
        {
            if (const auto callback = onProductSelected)
                callback (id);
        };

        card->setComponentID (id);
        content.addAndMakeVisible (*card);
        cards.push_back (std::move (card));
    }

    layOutCards();
    repaint();

    // A person at the keyboard keeps their place in a catalogue that has changed.
    if (auto* const card = focused.isNotEmpty() ? content.findChildWithID (focused) : nullptr)
        card->grabKeyboardFocus();
}

void ProductGrid::layOutCards()
{
    // While it is resized the viewport may show a scroll bar for the height of before: once more if the width has changed.
    for (int pass = 0; pass < 3; ++pass)
    {
        const auto visibleWidth = viewport.getMaximumVisibleWidth();

        if (visibleWidth <= 0)
            return;

        const ProductGridLayout layout (visibleWidth);

        for (size_t i = 0; i < cards.size(); ++i)
            cards[i]->setBounds (layout.cardBounds ((int) i));

        content.setSize (visibleWidth, juce::jmax (layout.contentHeight ((int) cards.size()), viewport.getMaximumVisibleHeight()));

        if (viewport.getMaximumVisibleWidth() == visibleWidth)
            return;
    }
}
