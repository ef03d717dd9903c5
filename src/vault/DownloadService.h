#pragma once

#include "catalogue/Product.h"

#include <deque>
#include <functional>

/** Turns a request into a verified installer in the Vault with its record, or into one clear message with nothing half-done left.

    Requests queue first in, first out, and one transfer runs at a time. Size and SHA-256 decide the truth; there is no resume and
    no retry. All public operations belong to the message thread, and every callback comes there. On destruction nothing is called
    back; a promotion that has begun is finished by its worker or by the next start's recovery. */
class DownloadService
{
public:
    /** The product id and a fraction from 0.0 to 1.0. */
    using ProgressCallback = std::function<void (const juce::String&, double)>;

    /** The product id, whether the installer is in the Vault, and a message: empty or a cleanup warning on success. */
    using CompletionCallback = std::function<void (const juce::String&, bool, const juce::String&)>;

    DownloadService();
    ~DownloadService();

    /** Queues a request and returns at once. The same product can be queued twice. onComplete comes exactly once. */
    void download (const Product& product, ProgressCallback onProgress, CompletionCallback onComplete);

    /** Ends every request of this product, queued ones first, each with "Cancelled". A promotion that has begun may still land. */
    void cancel (const juce::String& productId);

    /** Queued requests plus the active one, verification included. */
    int activeCount() const;

private:
    struct DownloadRequest
    {
        juce::String productId;
        Product product;
        ProgressCallback onProgress;
        CompletionCallback onComplete;
    };

    struct ActiveDownload;

    bool popNext (DownloadRequest& next);
    std::vector<DownloadRequest> takeQueued (const juce::String& productId);
    void startNext();
    juce::String start (ActiveDownload& download);
    bool isActive (juce::int64 downloadId) const;
    void onTaskFinished (juce::int64 downloadId, bool success);
    bool startVerification() const;
    void finishActive (juce::int64 downloadId, bool success, const juce::String& message);

    std::deque<DownloadRequest> queue;
    juce::CriticalSection queueLock;
    std::unique_ptr<ActiveDownload> active;
    juce::int64 nextDownloadId = 1;

    JUCE_DECLARE_WEAK_REFERENCEABLE (DownloadService)
    JUCE_DECLARE_NON_COPYABLE (DownloadService)
};
