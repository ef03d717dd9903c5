#pragma once

#include "catalogue/ProductCardModel.h"
#include "ui/ProductCard.h"

#include <juce_gui_basics/juce_gui_basics.h>
#include <functional>
#include <vector>

/** The cards of the library, in rows, with a scroll bar of their own where the grid is lower than its content. Message thread.

    Either callback may change the models and so delete the card it came from. */
class ProductGrid final : public juce::Component
{
public:
    ProductGrid();
    ~ProductGrid() override;

    /** Shows these products, in this order. Cards are made anew only when the list of product ids changes, so that scroll
        position and open menus survive a refresh. */
    void setModels (std::vector<ProductCardModel>);

    /** Replaces the model with the same product id; an unknown id changes nothing. */
    void updateModel (const ProductCardModel&);

    void setOnline (bool);

    /** Gives the keyboard focus to the card of a product and scrolls it into view; an unknown id changes nothing. */
    void focusCard (const juce::String& productId);

    /** The height that shows all cards at this width; 0 without cards. */
    int heightForWidth (int width) const;

    /** May be empty. */
    std::function<void (const juce::String& productId, const juce::String& actionWord)> onProductAction;

    /** May be empty. */
    std::function<void (const juce::String& productId)> onProductSelected;

    void paint (juce::Graphics&) override;
    void resized() override;

private:
    bool showsSameProducts (const std::vector<ProductCardModel>&) const;
    juce::String productWithFocus() const;
    void makeCards();
    void layOutCards();

    std::vector<ProductCardModel> models;
    bool online = false;
    juce::Component content;
    juce::Viewport viewport;
    std::vector<std::unique_ptr<ProductCard>> cards;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ProductGrid)
};
