#pragma once

#include "ai/HubAiBrokerService.h"
#include "catalogue/ManifestService.h"
#include "creator/CreatorProfileStore.h"
#include "install/InstallService.h"
#include "ui/AboutPage.h"
#include "ui/CommunityPage.h"
#include "ui/ConnectionPill.h"
#include "ui/DetailPane.h"
#include "ui/FocusRing.h"
#include "ui/MainHubLayout.h"
#include "ui/ProductGrid.h"
#include "ui/SettingsPage.h"
#include "ui/Sidebar.h"
#include "ui/StatusBar.h"
#include "ui/WhatsIncludedGallery.h"
#include "vault/DownloadService.h"
#include "vault/VaultStore.h"

#include <map>
#include <set>

/** The content of the main window and the one place where services and pages meet.

    It owns them all for the life of the window, keeps the table of what is running, turns each action of the user into a call on a
    service, and each result into a refresh of the views and, where the user must know, an asynchronous message box. It holds no
    business rules of its own. Message thread only; the services call back there. */
class MainHubComponent final : public juce::Component
{
public:
    class CampaignBanner;
    class SoundPacksNotice;
    class GalleryHeader;

    /** Does all of the start-up work, recovery included, on the calling thread, and begins the first refresh of the catalogue. */
    MainHubComponent();
    ~MainHubComponent() override;

    void paint (juce::Graphics& g) override;
    void paintOverChildren (juce::Graphics& g) override;
    void resized() override;

private:
    void startBroker();
    void createSidebar();
    void createHeader();
    void createLibrary();
    void createDetailPane();
    void createStatusBar();
    void showRecoveryNotice();
    void createLibraryBanners();
    void createPages();
    void openLibrary();

    void rebuildModels();
    void refreshViews();
    void updatePageVisibility();
    void layoutLibrary (const MainHubLayout& layout);
    void refreshCatalogue();

    void handleProductAction (const juce::String& productId, const juce::String& action);
    void selectProduct (const juce::String& productId);
    void clearSelection();

    void startDownload (const ProductCardModel& model);
    void onDownloadProgress (const juce::String& productId, double fraction);
    void onDownloadFinished (const juce::String& productId, bool success, const juce::String& message);

    void startInstall (const ProductCardModel& model, bool reinstall);
    void onInstallFinished (const juce::String& productId, bool success, const juce::String& message);

    void openProduct (const Product& product);
    void revealProduct (const ProductCardModel& model);
    void confirmDeleteFromVault (const juce::String& productId, const juce::String& name);
    void openVaultFolder();
    void clearCatalogueCache();

    ProductCardModel* findModel (const juce::String& productId);
    juce::String displayNameFor (const juce::String& productId);

    Sidebar::Tab currentTab = Sidebar::Tab::community;
    juce::var settings;
    std::unique_ptr<ManifestService> manifestService;
    std::unique_ptr<DownloadService> downloadService;
    std::unique_ptr<VaultStore> vaultStore;
    std::unique_ptr<InstallService> installService;
    std::unique_ptr<HubCredentialStore> credentialStore;
    std::unique_ptr<HubOpenAiClient> openAiClient;
    std::unique_ptr<CreatorProfileStore> creatorProfileStore;
    std::unique_ptr<PreviewDraftStore> previewDraftStore;
    std::unique_ptr<HubAiBrokerService> aiBroker;
    std::unique_ptr<Sidebar> sidebar;
    std::unique_ptr<ConnectionPill> connectionPill;
    std::unique_ptr<juce::TextEditor> searchBox;
    std::unique_ptr<juce::Label> releaseNotice;
    std::unique_ptr<ProductGrid> productGrid;
    std::unique_ptr<DetailPane> detailPane;
    std::unique_ptr<juce::Viewport> libraryViewport;
    std::unique_ptr<juce::Component> libraryContent;
    std::unique_ptr<CampaignBanner> campaignBanner;
    std::unique_ptr<SoundPacksNotice> soundPacksNotice;
    std::unique_ptr<GalleryHeader> galleryHeader;
    std::unique_ptr<WhatsIncludedGallery> whatsIncludedGallery;
    std::unique_ptr<StatusBar> statusBar;
    std::unique_ptr<SettingsPage> settingsPage;
    std::unique_ptr<AboutPage> aboutPage;
    std::unique_ptr<CommunityPage> communityPage;
    std::unique_ptr<juce::TooltipWindow> tooltipWindow;
    std::vector<ProductCardModel> models;
    std::map<juce::String, double> downloadProgress;
    std::set<juce::String> activeInstalls;
    juce::String selectedProductId;
    bool hasSelection = false;
    std::unique_ptr<FocusRing> focusRing;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (MainHubComponent)
};
