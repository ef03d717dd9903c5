#pragma once

#include "catalogue/ProductCardModel.h"
#include "support/Text.h"

#include <vector>

/** Products and models as the views get them. */
namespace zorva::test
{
/** A picture of one colour, smaller than every box it is shown in. */
inline juce::Image someImage (juce::Colour colour = juce::Colour (0xff2060c0))
{
    juce::Image image (juce::Image::ARGB, 100, 60, true);
    image.clear (image.getBounds(), colour);
    return image;
}

/** An application with a download, and nothing else that is optional. */
inline Product someProduct (const juce::String& id = "grand-piano", const juce::String& name = "Grand Piano")
{
    Product product;
    product.id = id;
    product.name = name;
    product.vendor = "ZORVA Instruments";
    product.version = "2.1";
    product.platforms["win"] = { "https://downloads.example/setup.exe", {}, 52428800 };
    return product;
}

inline ProductCardModel someModel (ProductCardState state = ProductCardState::notInstalled, Product product = someProduct())
{
    ProductCardModel model;
    model.product = std::move (product);
    model.state = state;

    if (state == ProductCardState::downloading)
        model.progress = 0.42;

    if (state == ProductCardState::installed)
        model.installedVersion = model.product.version;

    if (state == ProductCardState::updateAvailable)
    {
        model.installedVersion = "1.9.3";
        model.updateAvailable = true;
        model.latestVersion = model.product.version;
    }

    return model;
}

/** All states, in their order. */
inline const std::vector<ProductCardState>& allStates()
{
    static const std::vector<ProductCardState> states { ProductCardState::notInstalled, ProductCardState::downloading,
                                                        ProductCardState::cached, ProductCardState::installing,
                                                        ProductCardState::installed, ProductCardState::updateAvailable };
    return states;
}
}
