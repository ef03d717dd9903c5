#include "ui/HeroPrimary.h"

#include <algorithm>

HeroPrimary heroPrimaryFor (const std::vector<ProductCardModel>& models)
{
    const auto daw = std::find_if (models.begin(), models.end(),
                                   [] (const ProductCardModel& model) { return model.product.id.equalsIgnoreCase ("zorva-daw"); });

    if (daw == models.end())
        return { "GET ZORVA DAW", "Open Library to find ZORVA DAW." };

    switch (daw->state)
    {
        case ProductCardState::notInstalled:    return { "GET ZORVA DAW", "Open Library to download or install ZORVA DAW." };
        case ProductCardState::downloading:     return { "GET ZORVA DAW", "Open Library to view the current ZORVA DAW download." };
        case ProductCardState::cached:          return { "GET ZORVA DAW", "Open Library to install the ZORVA DAW copy saved in your Vault." };
        case ProductCardState::installing:      return { "GET ZORVA DAW", "Open Library to view the current ZORVA DAW installation." };
        case ProductCardState::installed:       return { "MANAGE ZORVA DAW", "Open Library to manage the installed ZORVA DAW." };
        case ProductCardState::updateAvailable: return { "UPDATE ZORVA DAW", "Open Library to review the verified ZORVA DAW update." };
    }

    return {};
}
