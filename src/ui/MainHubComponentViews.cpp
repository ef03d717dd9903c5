#include "ui/MainHubComponent.h"

#include "app/HubPaths.h"
#include "support/Text.h"
#include "ui/HubPalette.h"
#include "ui/LibraryBanners.h"
#include "ui/TextPainting.h"

// The views, built and wired once in the order of the window's constructor.

void MainHubComponent::createSidebar()
{
    sidebar = std::make_unique<Sidebar>();
    sidebar->setComponentID ("sidebar");
    sidebar->setCurrentTab (currentTab);
    sidebar->onTabChanged = [this] (Sidebar::Tab tab)
    {
        currentTab = tab;
        updatePageVisibility();
        resized();
    };
    addAndMakeVisible (*sidebar);
}

void MainHubComponent::createHeader()
{
    connectionPill = std::make_unique<ConnectionPill>();
    connectionPill->setComponentID ("connectionPill");
    connectionPill->setOnline (false);
    addAndMakeVisible (*connectionPill);

    searchBox = std::make_unique<juce::TextEditor>();
    searchBox->setComponentID ("searchBox");
    searchBox->setReadOnly (true);
    searchBox->setCaretVisible (false);
    searchBox->setTextToShowWhenEmpty (utf8 ("Search products\xe2\x80\xa6  (planned)"), HubPalette::textSecondary);
    searchBox->setTooltip ("Product search is not available in this release");
    searchBox->setTitle ("Search products");
    searchBox->setDescription ("Product search is not available in this release");
    searchBox->setFont (plainFont (12.0f));
    searchBox->setIndents (8, 6);
    addAndMakeVisible (*searchBox);

    releaseNotice = std::make_unique<juce::Label>();
    releaseNotice->setComponentID ("releaseNotice");
    releaseNotice->setText ("ZORVA FOR WINDOWS   |   FINAL NATIVE VALIDATION UNDERWAY   |   TARGET RELEASE WITHIN DAYS",
                            juce::dontSendNotification);
    releaseNotice->setJustificationType (juce::Justification::centred);
    releaseNotice->setFont (boldFont (12.0f));
    releaseNotice->setColour (juce::Label::textColourId, juce::Colour (0xfff5fbff));
    releaseNotice->setInterceptsMouseClicks (false, false);
    releaseNotice->setTitle ("ZORVA for Windows release notice");
    releaseNotice->setDescription ("ZORVA for Windows is in final native validation, with release targeted within days.");
    addAndMakeVisible (*releaseNotice);
}

void MainHubComponent::createLibrary()
{
    productGrid = std::make_unique<ProductGrid>();
    productGrid->setComponentID ("productGrid");
    productGrid->onProductSelected = [this] (const juce::String& productId) { selectProduct (productId); };
    productGrid->onProductAction = [this] (const juce::String& productId, const juce::String& action)
    {
        handleProductAction (productId, action);
    };

    libraryContent = std::make_unique<juce::Component>();
    libraryContent->setComponentID ("libraryContent");
    libraryContent->addAndMakeVisible (*productGrid);
    createLibraryBanners();

    libraryViewport = std::make_unique<juce::Viewport>();
    libraryViewport->setComponentID ("libraryViewport");
    libraryViewport->setTitle ("Product library");
    libraryViewport->setDescription ("All products. Scroll with the arrow keys.");
    libraryViewport->setViewedComponent (libraryContent.get(), false);
    libraryViewport->setScrollBarsShown (true, false);
    libraryViewport->setScrollBarThickness (MainHubLayout::scrollBarThickness);
    addAndMakeVisible (*libraryViewport);
}

void MainHubComponent::createDetailPane()
{
    detailPane = std::make_unique<DetailPane>();
    detailPane->setComponentID ("detailPane");
    detailPane->onClose = [this] { clearSelection(); };
    detailPane->onAction = [this] (const juce::String& action)
    {
        handleProductAction (detailPane->selectedProductId(), action);
    };
    addChildComponent (*detailPane);
}

void MainHubComponent::createStatusBar()
{
    statusBar = std::make_unique<StatusBar>();
    statusBar->setComponentID ("statusBar");
    statusBar->onVaultClicked = [this] { openVaultFolder(); };
    addAndMakeVisible (*statusBar);
}

void MainHubComponent::createLibraryBanners()
{
    campaignBanner = std::make_unique<CampaignBanner>();
    campaignBanner->setComponentID ("campaignBanner");
    soundPacksNotice = std::make_unique<SoundPacksNotice>();
    soundPacksNotice->setComponentID ("soundPacksNotice");
    galleryHeader = std::make_unique<GalleryHeader>();
    galleryHeader->setComponentID ("galleryHeader");
    whatsIncludedGallery = std::make_unique<WhatsIncludedGallery>();
    whatsIncludedGallery->setComponentID ("whatsIncludedGallery");

    for (auto* child : std::initializer_list<juce::Component*> { campaignBanner.get(), soundPacksNotice.get(), galleryHeader.get(),
                                                                  whatsIncludedGallery.get() })
        libraryContent->addAndMakeVisible (child);
}

void MainHubComponent::createPages()
{
    settingsPage = std::make_unique<SettingsPage> (settings, *credentialStore, *openAiClient);
    settingsPage->setComponentID ("settingsPage");
    settingsPage->onOpenVault = [this] { openVaultFolder(); };
    settingsPage->onClearCache = [this] { clearCatalogueCache(); };
    settingsPage->onCheckForUpdates = [this] { refreshCatalogue(); };
    settingsPage->onSettingsChanged = [] {};    // a changed address takes effect at the next refresh
    addChildComponent (*settingsPage);

    communityPage = std::make_unique<CommunityPage> (*creatorProfileStore, *previewDraftStore, [this] { openLibrary(); });
    communityPage->setComponentID ("communityPage");
    addChildComponent (*communityPage);

    aboutPage = std::make_unique<AboutPage>();
    aboutPage->setComponentID ("aboutPage");
    addChildComponent (*aboutPage);
}
