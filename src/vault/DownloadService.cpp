#include "vault/DownloadService.h"

#include "app/PathTrust.h"
#include "support/ChildFile.h"
#include "support/Text.h"
#include "support/Worker.h"
#include "vault/DownloadVerification.h"
#include "vault/HttpsDownloadTask.h"
#include "vault/PromotionTransaction.h"
#include "vault/VaultStore.h"

namespace
{
constexpr const char* platformKeyOfThisBuild = "win";
constexpr double smallestProgressStep = 0.002;    // so at most about 500 events a download reach the message thread

/** Why the request can't be downloaded as published; empty when it can. */
juce::String refusalOf (const juce::String& productId, const Product& product)
{
    if (! PathTrust::isSafeIdentity (productId) || productId != product.id)
        return "The product identity is invalid.";

    const auto* const entry = product.windowsPlatform();

    if (entry == nullptr || entry->url.trim().isEmpty())
        return "No download is published for this platform yet.";

    if (! PathTrust::isValidDownloadSource (entry->url, entry->sha256, entry->sizeBytes))
        return "The published download identity is incomplete or invalid.";

    return {};
}

/** The installer's file name in the Vault: the address's own, where that is a safe one and not that of the record beside it. */
juce::String fileNameFor (const juce::String& address, const juce::String& productId, const juce::String& platformKey)
{
    // What follows the path has no part in the name, and the framework takes quadratic time for it.
    const juce::URL path (address.initialSectionNotContaining ("?#"));
    const auto name = juce::File::createLegalFileName (path.getFileName());

    if (PathTrust::isSafeFileName (name) && ! name.equalsIgnoreCase (VaultStore::vaultRecordFileFor (productId).getFileName()))
        return name;

    return productId + (platformKey == "mac" ? ".dmg" : ".exe");
}
}

//==============================================================================
/** The one request whose transfer or verification is running. The transfer's thread calls finished() and progress(), and touches
    nothing else here but lastProgress. */
struct DownloadService::ActiveDownload final : public juce::URL::DownloadTaskListener
{
    ActiveDownload (DownloadService& owner, DownloadRequest requestToServe)
        : weakOwner (&owner), request (std::move (requestToServe)) {}

    ~ActiveDownload() override
    {
        task.reset();
    }

    void finished (juce::URL::DownloadTask*, bool success) override
    {
        juce::MessageManager::callAsync ([service = weakOwner, id = downloadId, success]
        {
            if (service != nullptr)
                service->onTaskFinished (id, success);
        });
    }

    void progress (juce::URL::DownloadTask*, juce::int64 bytesDownloaded, juce::int64 totalLength) override
    {
        const double ratio = totalLength < 1 ? 0.0 : (double) bytesDownloaded / (double) totalLength;
        const double fraction = juce::jlimit (0.0, 1.0, ratio);

        if (fraction - lastProgress < smallestProgressStep && fraction < 1.0)
            return;

        lastProgress = fraction;

        juce::MessageManager::callAsync ([service = weakOwner, id = downloadId, fraction]
        {
            if (service != nullptr && service->isActive (id))
                service->active->reportProgress (fraction);
        });
    }

    /** Message thread. The callback may cancel this download, so it gets copies. */
    void reportProgress (double fraction) const
    {
        const auto id = request.productId;

        if (const auto onProgress = request.onProgress)
            onProgress (id, fraction);
    }

    const juce::WeakReference<DownloadService> weakOwner;
    DownloadRequest request;
    juce::int64 downloadId = 0;
    double lastProgress = -1.0;
    juce::File partFile, targetFile;
    juce::String expectedSha256;
    juce::int64 expectedSize = 0;
    juce::String platformKey;
    juce::File previousInstaller;
    std::unique_ptr<juce::URL::DownloadTask> task;    // last, so that its events end before anything they use
};

//==============================================================================
DownloadService::DownloadService() = default;

DownloadService::~DownloadService()
{
    masterReference.clear();
    active.reset();
}

void DownloadService::download (const Product& product, ProgressCallback onProgress, CompletionCallback onComplete)
{
    {
        const juce::ScopedLock lock (queueLock);
        queue.push_back ({ product.id, product, std::move (onProgress), std::move (onComplete) });
    }

    juce::MessageManager::callAsync ([service = juce::WeakReference<DownloadService> (this)]
    {
        if (service != nullptr)
            service->startNext();
    });
}

void DownloadService::cancel (const juce::String& productId)
{
    const juce::WeakReference<DownloadService> self (this);
    const juce::String id (productId);    // the caller's own may go with what a callback destroys

    for (const auto& request : takeQueued (id))
    {
        if (self == nullptr)
            return;

        if (request.onComplete)
            request.onComplete (id, false, "Cancelled");
    }

    if (self == nullptr || active == nullptr || active->request.productId != id)
        return;

    const auto onComplete = std::move (active->request.onComplete);
    const auto partFile = active->partFile;

    active.reset();
    partFile.deleteFile();

    if (onComplete)
        onComplete (id, false, "Cancelled");

    if (self != nullptr)
        startNext();
}

int DownloadService::activeCount() const
{
    const juce::ScopedLock lock (queueLock);
    return (int) queue.size() + (active != nullptr ? 1 : 0);
}

//==============================================================================
bool DownloadService::popNext (DownloadRequest& next)
{
    const juce::ScopedLock lock (queueLock);

    if (queue.empty())
        return false;

    next = std::move (queue.front());
    queue.pop_front();
    return true;
}

/** The queued requests of a product, in their order; the others stay in theirs. */
std::vector<DownloadService::DownloadRequest> DownloadService::takeQueued (const juce::String& productId)
{
    const juce::ScopedLock lock (queueLock);
    std::vector<DownloadRequest> taken;
    std::deque<DownloadRequest> kept;

    for (auto& request : queue)
    {
        if (request.productId == productId)
            taken.push_back (std::move (request));
        else
            kept.push_back (std::move (request));
    }

    queue.swap (kept);
    return taken;
}

/** Serves the queue until a transfer runs or nothing is left: a request that cannot be started is reported and the next one
    follows at once. A callback may cancel, start or destroy anything. */
void DownloadService::startNext()
{
    const juce::WeakReference<DownloadService> self (this);
    DownloadRequest request;

    while (self != nullptr && active == nullptr && popNext (request))
    {
        auto next = std::make_unique<ActiveDownload> (*this, std::move (request));

        if (const auto error = start (*next); error.isNotEmpty())
        {
            const auto failed = std::move (next->request);
            next.reset();

            if (failed.onComplete)
                failed.onComplete (failed.productId, false, error);
        }
        else
        {
            active = std::move (next);
            active->reportProgress (0.0);
        }
    }
}

/** Checks the request, names its files and starts the transfer. Empty when it runs, else what to tell the user. */
juce::String DownloadService::start (ActiveDownload& download)
{
    const auto& id = download.request.productId;
    const auto& product = download.request.product;

    if (const auto refusal = refusalOf (id, product); refusal.isNotEmpty())
        return refusal;

    const auto& entry = *product.windowsPlatform();
    const auto address = entry.url.trim();
    const auto fileName = fileNameFor (address, id, platformKeyOfThisBuild);
    const auto folder = VaultStore::vaultFolderFor (id);

    if (folder == juce::File() || folder.createDirectory().failed() || PathTrust::isReparseOrSymlink (folder))
        return "Could not create the vault folder: " + folder.getFullPathName();

    download.downloadId = nextDownloadId++;
    download.targetFile = childOf (folder, fileName);
    download.partFile = childOf (folder, fileName + ".part");
    download.expectedSha256 = entry.sha256.trim().toLowerCase();
    download.expectedSize = entry.sizeBytes;
    download.platformKey = platformKeyOfThisBuild;

    const VaultStore recoveredStore;    // before a transfer leaves anything new, what an earlier one left is settled
    download.previousInstaller = VaultStore::trustedInstallerFor (id);

    if (! PathTrust::isTrustedPathUnder (folder, download.targetFile, true)
        || ! PathTrust::isTrustedPathUnder (folder, download.partFile, true))
        return "The vault destination failed canonical containment checks.";

    if (! PromotionTransaction::removePath (download.partFile))
        return "A stale partial download could not be removed safely.";

    download.task = HttpsDownloadTask::start (address, download.partFile, download.expectedSize, download);

    if (download.task == nullptr)
        return utf8 ("Could not start the download — you may be offline.");

    return {};
}

//==============================================================================
bool DownloadService::isActive (juce::int64 downloadId) const
{
    return active != nullptr && active->downloadId == downloadId;
}

void DownloadService::onTaskFinished (juce::int64 downloadId, bool success)
{
    if (! isActive (downloadId) || (success && startVerification()))
        return;

    active->partFile.deleteFile();
    finishActive (downloadId, false, utf8 ("Download failed — check your connection and try again."));
}

/** False when there is no thread to verify on. */
bool DownloadService::startVerification() const
{
    const DownloadVerification verification { active->partFile, active->targetFile, active->expectedSha256, active->expectedSize,
                                              active->platformKey, active->request.product, active->previousInstaller };

    return launchWorker ([verification, service = active->weakOwner, id = active->downloadId]
    {
        juce::MessageManager::callAsync ([service, id, outcome = verification.run()]
        {
            if (service != nullptr)
                service->finishActive (id, outcome.success, outcome.message);
        });
    });
}

void DownloadService::finishActive (juce::int64 downloadId, bool success, const juce::String& message)
{
    if (! isActive (downloadId))
        return;

    const juce::WeakReference<DownloadService> self (this);
    const auto request = std::move (active->request);
    active.reset();

    if (request.onComplete)
        request.onComplete (request.productId, success, message);

    if (self != nullptr)
        startNext();
}
