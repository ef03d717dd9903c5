#pragma once

#include "catalogue/ManifestService.h"
#include "support/GuiHarness.h"

#include <gtest/gtest.h>

namespace zorva::test
{
/** The ids, joined by blanks. */
inline std::string idsOf (const std::vector<Product>& products)
{
    juce::StringArray ids;

    for (const auto& product : products)
        ids.add (product.id);

    return ids.joinIntoString (" ").toStdString();
}

/** Collects what the callbacks of refreshes brought, and checks each on arrival. */
struct Outcomes
{
    ManifestService::ResultCallback collect()
    {
        return [this] (const std::vector<Product>& products, bool online)
        {
            EXPECT_TRUE (juce::MessageManager::existsAndIsCurrentThread());
            texts.push_back (idsOf (products) + (online ? " online" : " offline"));
        };
    }

    std::vector<std::string> texts;
};

/** A service whose address changes from refresh to refresh. */
struct Subject
{
    void refreshFrom (const juce::String& address)
    {
        settings.getDynamicObject()->setProperty ("manifestUrl", address);
        service->refresh (outcomes.collect());
    }

    /** Runs one whole refresh: the ids, and "online" or "offline". */
    std::string outcomeOf (const juce::String& address)
    {
        const auto before = outcomes.texts.size();
        refreshFrom (address);
        EXPECT_EQ (outcomes.texts.size(), before) << "the callback never comes from inside refresh()";
        pumpUntil ([&] { return outcomes.texts.size() > before; }, 20000);
        pump (20);
        EXPECT_EQ (outcomes.texts.size(), before + 1) << "exactly one callback";

        if (outcomes.texts.empty())
            return "(no callback)";

        const auto text = outcomes.texts.back();
        EXPECT_EQ (text, idsOf (service->getProducts()) + (service->isOnline() ? " online" : " offline"));
        return text;
    }

    juce::var settings { new juce::DynamicObject() };
    Outcomes outcomes;
    std::unique_ptr<ManifestService> service = std::make_unique<ManifestService> (settings);
};
}
