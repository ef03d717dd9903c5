#include "catalogue/ManifestService.h"

#include "BinaryData.h"
#include "app/HubPaths.h"
#include "app/HubSettings.h"
#include "app/PathTrust.h"
#include "catalogue/ManifestParser.h"
#include "support/HttpsStream.h"
#include "support/RecordFile.h"
#include "support/RegularFile.h"
#include "support/Worker.h"

#include <algorithm>

namespace
{
constexpr int connectTimeoutMs = 6000;
constexpr int pieceSize = 64 * 1024;

/** The whole body that the address gives; empty on any failure. */
juce::String fetchManifestText (const juce::String& address)
{
    if (! PathTrust::isHttpsUrl (address))
        return {};

    HttpsStream stream (address, connectTimeoutMs);

    if (! stream.connect())
        return {};

    juce::MemoryOutputStream body;
    std::vector<char> piece ((size_t) pieceSize);

    for (;;)
    {
        const int count = stream.read (piece.data(), pieceSize);

        if (count < 0)
            return {};

        if (count == 0)
            return body.toString();

        body.write (piece.data(), (size_t) count);
    }
}

/** Replaces the cache with what the address gives, if that is a usable manifest. False leaves the cache alone; a usable manifest
    that cannot be stored is no failure. */
bool fetchIntoCache (const juce::String& address)
{
    const auto text = fetchManifestText (address);

    if (parseManifest (text).empty())
        return false;

    HubPaths::ensureDirectories();
    RecordFile::replace (HubPaths::manifestCacheFile(), text);
    return true;
}

std::vector<Product> parseFile (const juce::File& file)
{
    return isRegularFile (file) ? parseManifest (file.loadFileAsString()) : std::vector<Product>();
}

std::vector<Product> builtInProducts()
{
    return parseManifest (juce::String::fromUTF8 (BinaryData::FallbackManifest_json, BinaryData::FallbackManifest_jsonSize));
}
}

//==============================================================================
std::vector<Product> loadProducts()
{
    if (auto own = parseFile (HubPaths::manifestLocalFile()); ! own.empty())
        return own;

    const auto fallback = builtInProducts();
    auto cached = parseFile (HubPaths::manifestCacheFile());
    return cached.empty() ? fallback : mergeProducts (std::move (cached), fallback);
}

std::vector<Product> mergeProducts (std::vector<Product> cached, const std::vector<Product>& fallback)
{
    for (const auto& product : fallback)
    {
        const auto id = normalisedId (product.id);
        const auto known = std::find_if (cached.begin(), cached.end(),
                                         [&id] (const Product& other) { return normalisedId (other.id) == id; });

        if (known == cached.end())
            cached.push_back (product);
        else if (compareVersions (known->version, product.version) < 0)
            *known = product;
    }

    return cached;
}

//==============================================================================
struct ManifestService::Refresh
{
    juce::String address;
    juce::WeakReference<ManifestService> service;    ///< made and looked at on the message thread alone
    ResultCallback callback;
};

ManifestService::ManifestService (const juce::var& settingsToUse) : settings (settingsToUse)
{
    if (HubSettings::getClearManifestCacheOnStartup (settings))
        clearCache();

    products = loadProducts();
}

ManifestService::~ManifestService()
{
    masterReference.clear();
}

void ManifestService::refresh (ResultCallback callback)
{
    const std::shared_ptr<Refresh> job (new Refresh { HubSettings::getManifestUrl (settings), this, std::move (callback) });

    const auto run = [job]
    {
        const bool reached = fetchIntoCache (job->address);
        post (*job, loadProducts(), reached);
    };

    if (! launchWorker (run))
        post (*job, loadProducts(), false);
}

void ManifestService::post (Refresh& job, std::vector<Product> found, bool reached)
{
    juce::MessageManager::callAsync (
        [service = std::move (job.service), callback = std::move (job.callback), list = std::move (found), reached]
        {
            if (auto* target = service.get())
                target->apply (list, reached);

            if (callback != nullptr)
                callback (list, reached);
        });
}

void ManifestService::apply (const std::vector<Product>& list, bool reached)
{
    products = list;
    online = reached;

    if (reached)
        lastRefresh = juce::Time::getCurrentTime();
}

std::vector<Product> ManifestService::getProducts() const
{
    return products;
}

bool ManifestService::isOnline() const
{
    return online;
}

void ManifestService::clearCache()
{
    HubPaths::manifestCacheFile().deleteFile();
}
