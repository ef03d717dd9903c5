#pragma once

#include "support/GuiHarness.h"
#include "support/TrustedTestServer.h"
#include "support/VaultItems.h"
#include "vault/DownloadService.h"

#include <gtest/gtest.h>
#include <map>

namespace zorva::test
{
/** A DownloadService with a notebook of everything that it calls back. */
class DownloadRun
{
public:
    /** Queues a product; its lines in the notebook begin with this name, or else with its id. */
    void download (const Product& product, const juce::String& name = {})
    {
        const auto label = (name.isNotEmpty() ? name : product.id).toStdString();

        service->download (product,
                           [this, label, id = product.id] (const juce::String& reportedId, double fraction)
                           {
                               EXPECT_TRUE (juce::MessageManager::existsAndIsCurrentThread());
                               EXPECT_EQ (reportedId, id);
                               progress[label].push_back (fraction);

                               if (onProgress != nullptr)
                                   onProgress (label);
                           },
                           [this, label, id = product.id] (const juce::String& reportedId, bool ok, const juce::String& message)
                           {
                               EXPECT_TRUE (juce::MessageManager::existsAndIsCurrentThread());
                               EXPECT_EQ (reportedId, id);
                               ended.push_back (label + (ok ? " done: " : " failed: ") + message.toStdString());

                               if (onEnded != nullptr)
                                   onEnded (label);
                           });
    }

    /** Queues a product and waits for its end, which must be the first. Returns the line in the notebook. */
    std::string finish (const Product& product)
    {
        download (product);
        EXPECT_TRUE (waitForEnds (1));
        return ended.empty() ? std::string ("never ended") : ended.back();
    }

    /** Runs the message loop until so many downloads have ended. */
    bool waitForEnds (size_t number)    { return pumpUntil ([this, number] { return ended.size() >= number; }, 30000); }

    /** Runs the message loop until this download's transfer has begun. */
    bool waitForStart (const std::string& label)    { return pumpUntil ([this, label] { return ! progress[label].empty(); }, 30000); }

    std::unique_ptr<DownloadService> service = std::make_unique<DownloadService>();
    std::vector<std::string> ended;                             ///< "app done: " or "app failed: Cancelled", in order
    std::map<std::string, std::vector<double>> progress;        ///< by label
    std::function<void (const std::string&)> onProgress, onEnded;
};

/** Makes the server serve these bytes under the path; the product's address leads there. */
inline Product serveApplication (TrustedTestServer& server, const juce::String& id, const std::string& installer,
                                 const juce::String& path = "/files/setup.exe")
{
    TrustedTestServer::Answer answer;
    answer.body.append (installer.data(), installer.size());
    server.serve (path, answer);
    return applicationOf (id, "1.0.0", installer, server.url (path));
}

/** Bytes that do not repeat themselves soon. */
inline std::string someBytes (size_t size)
{
    std::string bytes (size, 0);
    juce::Random random (7);
    random.fillBitsRandomly (bytes.data(), size);
    return bytes;
}

/** An application whose transfer waits for the server's release half way. */
inline Product serveHeld (TrustedTestServer& server, const juce::String& id)
{
    const auto bytes = someBytes (200000);
    TrustedTestServer::Answer answer;
    answer.body.append (bytes.data(), bytes.size());
    server.serve ("/" + id + ".exe", answer.heldAfter (100000));
    return applicationOf (id, "1.0.0", bytes, server.url ("/" + id + ".exe"));
}

inline const char* const transferFailed = "Download failed \xe2\x80\x94 check your connection and try again.";
inline const char* const wrongSize = "Integrity check failed (size mismatch) \xe2\x80\x94 the download was discarded. Please try again.";
inline const char* const wrongHash = "Integrity check failed (SHA-256 mismatch) \xe2\x80\x94 the download was discarded. Please try again.";
inline const char* const couldNotStart = "Could not start the download \xe2\x80\x94 you may be offline.";
}
