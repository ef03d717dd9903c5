#include "app/HubPaths.h"
#include "platform/Programs.h"
#include "support/Text.h"
#include "ui/MainHubComponent.h"

static void showWarning (const juce::String& title, const juce::String& text)
{
    juce::AlertWindow::showMessageBoxAsync (juce::MessageBoxIconType::WarningIcon, title, text);
}

void MainHubComponent::handleProductAction (const juce::String& productId, const juce::String& action)
{
    const auto* found = findModel (productId);

    if (found == nullptr)
        return;

    // A copy: what an action does rebuilds the models.
    const ProductCardModel model = *found;

    if (action == "download" || action == "update")     startDownload (model);
    else if (action == "install")                       startInstall (model, false);
    else if (action == "reinstall")                     startInstall (model, true);
    else if (action == "open")                          openProduct (model.product);
    else if (action == "cancel")                        downloadService->cancel (model.product.id);
    else if (action == "reveal")                        revealProduct (model);
    else if (action == "delete-vault")                  confirmDeleteFromVault (model.product.id, model.product.name);
}

//==============================================================================
void MainHubComponent::startDownload (const ProductCardModel& model)
{
    const auto product = model.product;
    downloadProgress[product.id] = 0.0;
    rebuildModels();
    refreshViews();
    statusBar->setDownloadProgress (0.0, product.name);

    downloadService->download (
        product,
        [safeThis = SafePointer (this)] (const juce::String& productId, double fraction)
        {
            if (safeThis != nullptr)
                safeThis->onDownloadProgress (productId, fraction);
        },
        [safeThis = SafePointer (this)] (const juce::String& productId, bool success, const juce::String& message)
        {
            if (safeThis != nullptr)
                safeThis->onDownloadFinished (productId, success, message);
        });
}

void MainHubComponent::onDownloadProgress (const juce::String& productId, double fraction)
{
    downloadProgress[productId] = fraction;

    auto* model = findModel (productId);

    if (model == nullptr)
        return;

    model->state = ProductCardState::downloading;
    model->progress = fraction;
    productGrid->updateModel (*model);
    statusBar->setDownloadProgress (fraction, model->product.name);

    if (hasSelection && selectedProductId == productId)
        detailPane->setModel (*model);
}

void MainHubComponent::onDownloadFinished (const juce::String& productId, bool success, const juce::String& message)
{
    downloadProgress.erase (productId);

    if (downloadService->activeCount() < 1)
        statusBar->clearDownloadProgress();

    rebuildModels();
    refreshViews();

    const auto name = displayNameFor (productId);
    const auto detail = message.trim();

    if (success && detail.isNotEmpty())
    {
        statusBar->setStatusMessage ("Download complete - cleanup attention required");
        showWarning ("Download Completed with a Cleanup Warning",
                     name + " downloaded and passed verification, but ZORVA Hub retained a recovery artifact that needs attention."
                         + "\n\n" + detail);
    }
    else if (! success && message != "Cancelled")
    {
        showWarning ("Download Failed",
                     name + " could not be downloaded.\n\n" + message + "\n\nAlready-vaulted installers are unaffected.");
    }
}

//==============================================================================
void MainHubComponent::startInstall (const ProductCardModel& model, bool reinstall)
{
    const auto product = model.product;
    const auto installer = VaultStore::trustedInstallerFor (product.id);

    if (! installer.existsAsFile())
    {
        showWarning ("Not in Vault", "There is no cached installer for " + product.name
                                         + " in the Vault. Download it once, and reinstalls will work offline forever after.");
        return;
    }

    activeInstalls.insert (product.id);
    rebuildModels();
    refreshViews();
    statusBar->setStatusMessage ("Installing " + product.name + utf8 ("\xe2\x80\xa6"));

    auto onDone = [safeThis = SafePointer (this), productId = product.id] (bool success, const juce::String& message)
    {
        if (safeThis != nullptr)
            safeThis->onInstallFinished (productId, success, message);
    };

    if (reinstall)
        installService->reinstall (product, installer, std::move (onDone));
    else
        installService->install (product, installer, std::move (onDone));
}

void MainHubComponent::onInstallFinished (const juce::String& productId, bool success, const juce::String& message)
{
    activeInstalls.erase (productId);
    statusBar->clearStatusMessage();
    rebuildModels();
    refreshViews();

    if (! success)
        showWarning ("Install Failed", displayNameFor (productId) + " could not be installed.\n\n" + message);
    else if (message.isNotEmpty())
        juce::AlertWindow::showMessageBoxAsync (juce::MessageBoxIconType::InfoIcon, "Install Complete", message);
}

//==============================================================================
void MainHubComponent::openProduct (const Product& product)
{
    if (! InstallService::launch (product.id))
        showWarning ("Open Failed", "No installed copy of " + product.name
                                        + " could be found. Use Install (or Reinstall from the Vault) first.");
}

void MainHubComponent::revealProduct (const ProductCardModel& model)
{
    if (model.vaultFile.existsAsFile())
    {
        platform::revealInFileManager (model.vaultFile);
        return;
    }

    if (const auto location = InstallService::installedLocation (model.product); location.exists())
        platform::revealInFileManager (location);
    else
        openVaultFolder();
}

void MainHubComponent::confirmDeleteFromVault (const juce::String& productId, const juce::String& name)
{
    auto onAnswer = [safeThis = SafePointer (this), productId] (int result)
    {
        if (safeThis == nullptr || result != 1)
            return;

        safeThis->vaultStore->deleteFromVault (productId);
        safeThis->rebuildModels();
        safeThis->refreshViews();
    };

    juce::AlertWindow::showOkCancelBox (
        juce::MessageBoxIconType::QuestionIcon, "Delete from Vault",
        "Remove the cached installer for " + name
            + " from the Vault?\n\nInstalled copies are not affected, but you will need to download the installer again before you "
              "can reinstall offline.",
        "Delete", "Cancel", this, juce::ModalCallbackFunction::create (std::move (onAnswer)));
}

void MainHubComponent::openVaultFolder()
{
    platform::openFolder (HubPaths::vaultDirectory());
}

void MainHubComponent::openLibrary()
{
    sidebar->setCurrentTab (Sidebar::Tab::library);
    currentTab = Sidebar::Tab::library;
    updatePageVisibility();
    resized();
    libraryViewport->grabKeyboardFocus();
}

void MainHubComponent::clearCatalogueCache()
{
    manifestService->clearCache();
    rebuildModels();
    refreshViews();

    juce::AlertWindow::showMessageBoxAsync (juce::MessageBoxIconType::InfoIcon, "Cache Cleared",
                                            "The cached manifest was deleted. The library now shows the bundled fallback until the "
                                            "next successful refresh. Your Vault was not touched.");
}
