#pragma once

#include "catalogue/Product.h"

#include <functional>

/** Knows which products exist and whether the last attempt to reach the network worked.

    Offline first: from construction on there is a list, from disk or built in, and a refresh only ever improves on it. There is no
    timer, no retry and no back-off. Message thread only; the network and the parsing of a response run on a worker. */
class ManifestService
{
public:
    /** Gets the list and whether the refresh reached a usable catalogue. */
    using ResultCallback = std::function<void (const std::vector<Product>&, bool)>;

    /** Loads the list from disk, synchronously. The settings are not owned and must outlive the service. */
    explicit ManifestService (const juce::var& settings);
    ~ManifestService();

    /** Fetches the catalogue on a worker of its own; returns at once. The callback, if set, comes on the message thread exactly
        once for each call, also when the service has gone by then, so it must guard what it touches. Overlapping refreshes are
        allowed: the later result wins. */
    void refresh (ResultCallback callback);

    /** The current list. */
    std::vector<Product> getProducts() const;

    /** False until a refresh succeeds, and again after each one that fails. */
    bool isOnline() const;

    /** Deletes the cached catalogue; the list in memory stays until the next refresh. */
    void clearCache();

private:
    struct Refresh;

    /** Sends a result to the message thread; the job gives up its service and callback. Any thread. */
    static void post (Refresh& job, std::vector<Product> found, bool reached);
    void apply (const std::vector<Product>& list, bool reached);

    juce::WeakReference<ManifestService>::Master masterReference;
    friend class juce::WeakReference<ManifestService>;

    const juce::var& settings;
    std::vector<Product> products;
    juce::Time lastRefresh;
    bool online = false;

    JUCE_DECLARE_NON_COPYABLE (ManifestService)
};

/** The list that disk and program give together: the user's own manifest alone if it is usable, else the cached one merged with
    the built-in one, else the built-in one. Reads files; any thread. */
std::vector<Product> loadProducts();

/** The cached list, in its order, with each built-in product added or, where the cached version is lower, put in its place. */
std::vector<Product> mergeProducts (std::vector<Product> cached, const std::vector<Product>& fallback);
