#pragma once

#include "app/HubPaths.h"
#include "install/InstallService.h"
#include "support/Files.h"
#include "support/GuiHarness.h"
#include "support/VaultItems.h"

#include <gtest/gtest.h>

namespace zorva::test
{
/** A file of the products directory by its path below it. */
inline juce::File installedFile (const juce::String& relativePath)
{
    return in (HubPaths::productsDirectory(), relativePath);
}

/** An InstallService with a notebook of what it calls back. */
class InstallRun
{
public:
    void install (const Product& product, const juce::File& installer, const std::string& label = "install")
    {
        service->install (product, installer, noteUnder (label));
    }

    /** What an install calls back. */
    InstallService::InstallCallback noteUnder (const std::string& label)
    {
        return [this, label] (bool ok, const juce::String& message)
        {
            EXPECT_TRUE (juce::MessageManager::existsAndIsCurrentThread());
            ended.push_back (label + (ok ? " done: " : " failed: ") + message.toStdString());
        };
    }

    /** Installs and waits for the end, which must be the first. Returns "done: " or "failed: " and the message. */
    std::string finish (const Product& product, const juce::File& installer)
    {
        install (product, installer);
        EXPECT_TRUE (waitForEnds (1));
        return ended.empty() ? std::string ("never ended") : ended.back().substr (8);
    }

    bool waitForEnds (size_t number)    { return pumpUntil ([this, number] { return ended.size() >= number; }, 60000); }

    std::unique_ptr<InstallService> service = std::make_unique<InstallService>();
    std::vector<std::string> ended;    ///< the label, "done: " or "failed: ", and the message, in order
};

/** Puts a file in the Vault and installs it by a service of its own. */
inline std::string putAndInstall (const juce::String& id, const juce::String& fileName, const std::string& installer)
{
    const auto product = applicationOf (id, "1.0.0", installer);
    return InstallRun().finish (product, putInVault (product, fileName, installer));
}

inline std::string installedTo (const juce::String& id)
{
    return ("done: Installed to " + installedFile (id).getFullPathName() + ".").toStdString();
}
}
