#include "ui/ProductActions.h"

#include "support/Text.h"
#include "ui/HubPalette.h"

namespace
{
constexpr auto noDownloadTooltip = "No download available for this platform";

/** A busy product: its button only tells what is going on. */
ProductCardAction busy (const juce::String& label, const juce::String& tooltip)
{
    return { label, {}, tooltip, HubPalette::raised, HubPalette::textSecondary, false };
}

/** An action that needs the network and a download for this platform. */
ProductCardAction fetching (const ProductCardModel& model, bool online, const juce::String& label, const juce::String& action,
                            const juce::String& tooltip, const juce::String& offlineTooltip)
{
    if (online && canDownload (model.product))
        return { label, action, tooltip, HubPalette::action, HubPalette::textPrimary, true };

    return { label, action, online ? juce::String (noDownloadTooltip) : offlineTooltip, HubPalette::action,
             HubPalette::textSecondary, false };
}

ProductCardAction opening (const Product& product)
{
    const auto isPack = product.installType == Product::InstallType::factoryContent;

    return { isPack ? "REVEAL" : "Open", isPack ? "reveal" : "open",
             isPack ? juce::String ("Show the installed sound pack") : "Launch " + product.name,
             HubPalette::accent, HubPalette::inverseText, true };
}
}

ProductCardAction primaryActionFor (const ProductCardModel& model, bool online)
{
    switch (model.state)
    {
        case ProductCardState::downloading:
            return busy (percentText (model.progress), "Download in progress");

        case ProductCardState::cached:
            return { "INSTALL", "install", "Install from the Vault (works offline)", HubPalette::action, HubPalette::textPrimary,
                     true };

        case ProductCardState::installing:
            return busy (utf8 ("INSTALLING…"), "Install in progress");

        case ProductCardState::installed:
            return opening (model.product);

        case ProductCardState::updateAvailable:
            return fetching (model, online, "UPDATE", "update", "Download version " + model.latestVersion + " to the Vault",
                             utf8 ("Offline — updates unavailable"));

        case ProductCardState::notInstalled:
            break;
    }

    return fetching (model, online, "DOWNLOAD", "download", "Download the installer to the Vault",
                     utf8 ("Offline — downloads unavailable"));
}

juce::String stateChipTextFor (const ProductCardModel& model)
{
    switch (model.state)
    {
        case ProductCardState::downloading:      return "Downloading " + percentText (model.progress);
        case ProductCardState::cached:           return "Cached";
        case ProductCardState::installing:       return utf8 ("Installing…");
        case ProductCardState::updateAvailable:  return utf8 ("NEW UPDATE AVAILABLE  ·  ") + model.latestVersion;
        case ProductCardState::notInstalled:     break;

        case ProductCardState::installed:
            return utf8 ("✓ Installed") + (model.installedVersion.isEmpty() ? juce::String() : " v" + model.installedVersion);
    }

    return "Not Installed";
}

bool canDownload (const Product& product)
{
    const auto* platform = product.windowsPlatform();
    return platform != nullptr && platform->url.startsWith ("http");
}

juce::String percentText (double fraction) { return juce::String (juce::roundToInt (fraction * 100.0)) + "%"; }
