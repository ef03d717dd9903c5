#include "ui/MainHubComponent.h"

#include "app/HubPaths.h"
#include "app/HubSettings.h"
#include "ui/CardModels.h"
#include "ui/HeroPrimary.h"
#include "ui/HubPalette.h"
#include "ui/LibraryBanners.h"
#include "ui/RecoveryNotice.h"
#include "ui/TextPainting.h"

namespace
{
const char* titleOf (Sidebar::Tab tab)
{
    switch (tab)
    {
        case Sidebar::Tab::community:   return "COMMUNITY";
        case Sidebar::Tab::library:     return "LIBRARY";
        case Sidebar::Tab::settings:    return "SETTINGS";
        case Sidebar::Tab::about:       return "ABOUT";
    }

    return "";
}
}

MainHubComponent::MainHubComponent()
{
    setMouseClickGrabsKeyboardFocus (false);    // else a click on the header would focus the first button of the sidebar
    settings = HubSettings::load();
    HubPaths::ensureDirectories();

    if (HubSettings::getClearManifestCacheOnStartup (settings))
        HubPaths::manifestCacheFile().deleteFile();

    manifestService = std::make_unique<ManifestService> (settings);
    downloadService = std::make_unique<DownloadService>();
    vaultStore = std::make_unique<VaultStore>();
    installService = std::make_unique<InstallService>();

    startBroker();

    createSidebar();
    createHeader();
    createLibrary();
    createDetailPane();
    createStatusBar();
    showRecoveryNotice();
    createPages();

    tooltipWindow = std::make_unique<juce::TooltipWindow> (this, 400);
    tooltipWindow->setOpaque (false);    // its corners are round, and would be black
    focusRing = std::make_unique<FocusRing> (*this);
    focusRing->watch (*libraryViewport, -2);

    rebuildModels();
    refreshViews();
    updatePageVisibility();
    setSize (1100, 720);
    refreshCatalogue();
}

MainHubComponent::~MainHubComponent() = default;

void MainHubComponent::startBroker()
{
    credentialStore = makeHubCredentialStore();
    openAiClient = std::make_unique<HubOpenAiClient> (*credentialStore);
    creatorProfileStore = std::make_unique<CreatorProfileStore>();
    previewDraftStore = std::make_unique<PreviewDraftStore>();
    aiBroker = std::make_unique<HubAiBrokerService> (*credentialStore, *openAiClient, *previewDraftStore);

    if (juce::String error; ! aiBroker->start (error))
        juce::Logger::writeToLog ("[HUB.AI] broker startup failed");
}

void MainHubComponent::showRecoveryNotice()
{
    const auto notice = makeRecoveryNotice (vaultStore->getRecoveryNotes(), installService->getRecoveryNotes());

    if (! notice.has_value())
        return;

    statusBar->setStatusMessage (notice->statusLine);

    // Posted, so that the box opens after the window is on the screen.
    juce::MessageManager::callAsync ([safeThis = SafePointer (this), title = notice->title, body = notice->body]
    {
        if (safeThis != nullptr)
            juce::AlertWindow::showMessageBoxAsync (juce::MessageBoxIconType::WarningIcon, title, body);
    });
}

//==============================================================================
void MainHubComponent::rebuildModels()
{
    models = deriveCardModels (manifestService->getProducts(), VaultIndex(), InstalledIndex(), downloadProgress, activeInstalls);

    const auto hero = heroPrimaryFor (models);
    communityPage->setHeroPrimary (hero.text, hero.description);
}

void MainHubComponent::refreshViews()
{
    const bool online = manifestService->isOnline();
    productGrid->setOnline (online);
    productGrid->setModels (models);

    if (currentTab == Sidebar::Tab::library)
        resized();

    if (hasSelection)
    {
        if (const auto* model = findModel (selectedProductId))
        {
            detailPane->setOnline (online);
            detailPane->setModel (*model);
        }
        else
        {
            clearSelection();
        }
    }

    statusBar->setVaultPath (HubPaths::vaultDirectory().getFullPathName());
    statusBar->setFreeBytes (vaultStore->freeBytes());
}

void MainHubComponent::updatePageVisibility()
{
    const bool showsLibrary = currentTab == Sidebar::Tab::library;
    libraryViewport->setVisible (showsLibrary);
    detailPane->setVisible (showsLibrary && hasSelection);
    searchBox->setVisible (showsLibrary);
    communityPage->setVisible (currentTab == Sidebar::Tab::community);
    settingsPage->setVisible (currentTab == Sidebar::Tab::settings);
    aboutPage->setVisible (currentTab == Sidebar::Tab::about);
    repaint();
}

void MainHubComponent::refreshCatalogue()
{
    manifestService->refresh ([safeThis = SafePointer (this)] (const std::vector<Product>&, bool online)
    {
        if (safeThis == nullptr)
            return;

        safeThis->connectionPill->setOnline (online);
        safeThis->rebuildModels();
        safeThis->refreshViews();
    });
}

void MainHubComponent::selectProduct (const juce::String& productId)
{
    selectedProductId = productId;
    hasSelection = true;

    if (const auto* model = findModel (productId))
    {
        detailPane->setOnline (manifestService->isOnline());
        detailPane->setModel (*model);
    }

    updatePageVisibility();
    resized();
}

void MainHubComponent::clearSelection()
{
    // Who closes the pane by the keyboard goes on where it was opened.
    const auto cardToFocus = detailPane->hasKeyboardFocus (true) ? selectedProductId : juce::String();

    hasSelection = false;
    selectedProductId.clear();
    detailPane->clear();
    updatePageVisibility();
    resized();
    productGrid->focusCard (cardToFocus);
}

ProductCardModel* MainHubComponent::findModel (const juce::String& productId)
{
    const auto found = std::find_if (models.begin(), models.end(),
                                     [&] (const ProductCardModel& model) { return model.product.id == productId; });
    return found != models.end() ? &*found : nullptr;
}

juce::String MainHubComponent::displayNameFor (const juce::String& productId)
{
    const auto* model = findModel (productId);
    return model != nullptr ? model->product.name : productId;
}

//==============================================================================
void MainHubComponent::resized()
{
    const auto layout = layoutMainHub (getWidth(), getHeight(), connectionPill->getPreferredWidth(), detailPane->isVisible());

    statusBar->setBounds (layout.statusBar);
    sidebar->setBounds (layout.sidebar);
    releaseNotice->setBounds (layout.releaseNotice);
    searchBox->setBounds (layout.searchBox);
    connectionPill->setBounds (layout.connectionPill);

    for (auto* page : std::initializer_list<juce::Component*> { settingsPage.get(), communityPage.get(), aboutPage.get() })
        page->setBounds (layout.page);

    layoutLibrary (layout);
}

void MainHubComponent::layoutLibrary (const MainHubLayout& layout)
{
    if (detailPane->isVisible())
        detailPane->setBounds (layout.detailPane);

    const int width = layout.libraryContentWidth;
    const auto column = layoutLibraryColumn (width, productGrid->heightForWidth (width), whatsIncludedGallery->heightForWidth (width),
                                             layout.libraryViewport.getHeight());

    libraryViewport->setBounds (layout.libraryViewport);
    libraryContent->setSize (width, column.height);
    productGrid->setBounds (column.productGrid);
    campaignBanner->setBounds (column.campaignBanner);
    soundPacksNotice->setBounds (column.soundPacksNotice);
    galleryHeader->setBounds (column.galleryHeader);
    whatsIncludedGallery->setBounds (column.whatsIncludedGallery);
}

void MainHubComponent::paint (juce::Graphics& g)
{
    constexpr int left = MainHubLayout::sidebarWidth;
    constexpr int header = MainHubLayout::headerHeight;
    constexpr int pageTop = MainHubLayout::pageTop;
    const int width = getWidth();

    g.fillAll (HubPalette::windowBackground);

    g.setColour (HubPalette::surface);
    g.fillRect (left, 0, width - left, header);
    g.setColour (HubPalette::border);
    g.fillRect (left, header - 1, width - left, 1);

    g.setGradientFill ({ juce::Colour (0xff0b2532), (float) left, 83.0f, juce::Colour (0xff241208), (float) width, 83.0f, false });
    g.fillRect (left, header, width - left, MainHubLayout::noticeHeight);
    g.setColour (juce::Colour (0x5546d7ff));
    g.fillRect (left, pageTop - 1, width - left, 1);

    drawTextLine (g, titleOf (currentTab), { 176, 0, juce::jmax (width - 192, 0), header }, boldFont (16.0f),
                  HubPalette::textPrimary);
}

void MainHubComponent::paintOverChildren (juce::Graphics& g)
{
    focusRing->paint (g);
}
