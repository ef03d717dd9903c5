#include "ui/CardModels.h"

#include "catalogue/ManifestParser.h"
#include "install/InstallService.h"

#include <unordered_set>

namespace
{
juce::String installedVersionOf (const Product& product, const juce::File& location)
{
    return product.installType == Product::InstallType::factoryContent ? product.version
                                                                       : InstallService::installedVersion (location);
}

/** The state that disk alone gives, with no download or install running. */
void setRestingState (ProductCardModel& model, bool isInstalled)
{
    if (isInstalled && model.installedVersion.isNotEmpty()
        && compareVersions (model.installedVersion, model.product.version) < 0)
    {
        model.state = ProductCardState::updateAvailable;
        model.updateAvailable = true;
        model.latestVersion = model.product.version;
    }
    else if (isInstalled)
    {
        model.state = ProductCardState::installed;
    }
    else if (model.vaultFile.existsAsFile())
    {
        model.state = ProductCardState::cached;
    }
}

ProductCardModel catalogueModel (const Product& product, const VaultIndex& vault, const InstalledIndex& installed,
                                 const std::map<juce::String, double>& downloadProgress,
                                 const std::set<juce::String>& activeInstalls)
{
    ProductCardModel model;
    model.product = product;
    model.vaultFile = vault.trustedInstallerFor (product.id);

    const auto location = installed.installedLocation (product);
    const bool isInstalled = location.exists();

    if (isInstalled)
        model.installedVersion = installedVersionOf (product, location);

    if (const auto download = downloadProgress.find (product.id); download != downloadProgress.end())
    {
        model.state = ProductCardState::downloading;
        model.progress = download->second;
    }
    else if (activeInstalls.contains (product.id))
    {
        model.state = ProductCardState::installing;
    }
    else
    {
        setRestingState (model, isInstalled);
    }

    return model;
}

ProductCardModel vaultOnlyModel (ProductCardModel model, const InstalledIndex& installed,
                                 const std::set<juce::String>& activeInstalls)
{
    if (const auto location = installed.installedLocation (model.product); location.exists())
    {
        model.installedVersion = installedVersionOf (model.product, location);
        model.state = ProductCardState::installed;
    }

    if (activeInstalls.contains (model.product.id))
        model.state = ProductCardState::installing;

    return model;
}
}

std::vector<ProductCardModel> deriveCardModels (const std::vector<Product>& catalogue, const VaultIndex& vault,
                                                const InstalledIndex& installed,
                                                const std::map<juce::String, double>& downloadProgress,
                                                const std::set<juce::String>& activeInstalls)
{
    std::vector<ProductCardModel> models;
    models.reserve (catalogue.size() + vault.items().size());
    std::unordered_set<juce::String> listed;

    for (const auto& product : catalogue)
    {
        models.push_back (catalogueModel (product, vault, installed, downloadProgress, activeInstalls));
        listed.insert (product.id);
    }

    for (const auto& item : vault.items())
        if (! listed.contains (item.product.id))
            models.push_back (vaultOnlyModel (item, installed, activeInstalls));

    return models;
}
