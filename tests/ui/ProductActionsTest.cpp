#include "Painting.h"
#include "support/Text.h"
#include "ui/HubPalette.h"
#include "ui/ProductActions.h"

#include <gtest/gtest.h>
#include <optional>

using namespace zorva::test;

namespace
{
using State = ProductCardState;
using Type = Product::InstallType;

const State outsideOfTheEnumeration = static_cast<State> (99);

/** One row of the truth table; what is not set matches anything. The rows stand in the order in which they are tried. */
struct Row
{
    State state;
    std::optional<bool> online, hasDownload;
    std::optional<Type> type;
    const char* label;
    const char* action;
    const char* tooltip;
    juce::Colour fill, text;
    bool enabled;
};

std::vector<Row> truthTable()
{
    using namespace HubPalette;
    const std::nullopt_t any = std::nullopt;

    return {
        { State::notInstalled, true, true, any, "DOWNLOAD", "download", "Download the installer to the Vault", action, textPrimary, true },
        { State::notInstalled, false, any, any, "DOWNLOAD", "download", "Offline — downloads unavailable", action, textSecondary, false },
        { State::notInstalled, true, false, any, "DOWNLOAD", "download", "No download available for this platform", action, textSecondary, false },
        { State::downloading, any, any, any, "42%", "", "Download in progress", raised, textSecondary, false },
        { State::cached, any, any, any, "INSTALL", "install", "Install from the Vault (works offline)", action, textPrimary, true },
        { State::installing, any, any, any, "INSTALLING…", "", "Install in progress", raised, textSecondary, false },
        { State::installed, any, any, Type::factoryContent, "REVEAL", "reveal", "Show the installed sound pack", accent, inverseText, true },
        { State::installed, any, any, Type::application, "Open", "open", "Launch Grand Piano", accent, inverseText, true },
        { State::updateAvailable, true, true, any, "UPDATE", "update", "Download version 2.1 to the Vault", action, textPrimary, true },
        { State::updateAvailable, false, any, any, "UPDATE", "update", "Offline — updates unavailable", action, textSecondary, false },
        { State::updateAvailable, true, false, any, "UPDATE", "update", "No download available for this platform", action, textSecondary, false },
        { outsideOfTheEnumeration, true, true, any, "DOWNLOAD", "download", "Download the installer to the Vault", action, textPrimary, true },
        { outsideOfTheEnumeration, false, any, any, "DOWNLOAD", "download", "Offline — downloads unavailable", action, textSecondary, false },
        { outsideOfTheEnumeration, true, false, any, "DOWNLOAD", "download", "No download available for this platform", action, textSecondary, false },
    };
}

Product productWith (const juce::String& key, const juce::String& url, Type type = Type::application)
{
    Product product;
    product.id = "grand-piano";
    product.name = "Grand Piano";
    product.version = "2.1";
    product.installType = type;

    if (key.isNotEmpty())
        product.platforms[key.toStdString()] = { url, {}, 1 };

    return product;
}

ProductCardModel modelOf (State state, Product product = productWith ("win", "https://downloads.example/setup.exe"))
{
    ProductCardModel model;
    model.product = std::move (product);
    model.state = state;
    model.progress = 0.42;
    model.updateAvailable = state == State::updateAvailable;

    if (model.updateAvailable)
        model.latestVersion = "2.1";

    return model;
}

/** All six answers of an action in one line. */
std::string textOf (const ProductCardAction& a)
{
    return (a.label + " | " + a.action + " | " + a.tooltip + " | ").toStdString() + hex (a.fill) + " | " + hex (a.text)
           + (a.enabled ? " | enabled" : " | disabled");
}

std::string textOf (const Row& row)
{
    return textOf (ProductCardAction { utf8 (row.label), row.action, utf8 (row.tooltip), row.fill, row.text, row.enabled });
}
}

//==============================================================================
TEST (ProductActions, ThePrimaryActionFollowsTheWholeTruthTable)
{
    for (const auto state : { State::notInstalled, State::downloading, State::cached, State::installing, State::installed,
                              State::updateAvailable, outsideOfTheEnumeration })
        for (const bool online : { false, true })
            for (const bool hasDownload : { false, true })
                for (const auto type : { Type::application, Type::factoryContent })
                {
                    const auto rows = truthTable();
                    const auto row = std::find_if (rows.begin(), rows.end(), [&] (const Row& r)
                    {
                        return r.state == state && r.online.value_or (online) == online
                               && r.hasDownload.value_or (hasDownload) == hasDownload && r.type.value_or (type) == type;
                    });
                    ASSERT_NE (row, rows.end());

                    const auto model = modelOf (state, productWith (hasDownload ? "win" : "mac", "https://downloads.example/setup", type));
                    EXPECT_EQ (textOf (primaryActionFor (model, online)), textOf (*row))
                        << "state " << (int) state << (online ? " online" : " offline") << (hasDownload ? "" : " without download");
                }
}

TEST (ProductActions, OfflineAProductWithAnAddressShowsADisabledOrangeDownload)
{
    const auto action = primaryActionFor (modelOf (State::notInstalled), false);

    EXPECT_EQ (textOf (action), utf8 ("DOWNLOAD | download | Offline — downloads unavailable | #fff97316 | #ff888888 | disabled").toStdString());
}

TEST (ProductActions, AProductForAnotherSystemOnlyHasNoDownloadHere)
{
    const auto action = primaryActionFor (modelOf (State::notInstalled, productWith ("mac", "https://downloads.example/setup.dmg")), true);

    EXPECT_EQ (action.label, "DOWNLOAD");
    EXPECT_EQ (action.tooltip, "No download available for this platform");
    EXPECT_FALSE (action.enabled);
}

TEST (ProductActions, OfflineWinsOverNoDownloadInTheWording)
{
    const auto nowhere = productWith ({}, {});

    EXPECT_EQ (primaryActionFor (modelOf (State::notInstalled, nowhere), false).tooltip, utf8 ("Offline — downloads unavailable"));
    EXPECT_EQ (primaryActionFor (modelOf (State::updateAvailable, nowhere), false).tooltip, utf8 ("Offline — updates unavailable"));
}

TEST (ProductActions, ACachedProductInstallsWhileOffline)
{
    const auto action = primaryActionFor (modelOf (State::cached), false);

    EXPECT_EQ (action.action, "install");
    EXPECT_TRUE (action.enabled);
}

TEST (ProductActions, AnUpdateOfflineIsDisabledButItsChipStays)
{
    const auto model = modelOf (State::updateAvailable);

    EXPECT_FALSE (primaryActionFor (model, false).enabled);
    EXPECT_EQ (stateChipTextFor (model), utf8 ("NEW UPDATE AVAILABLE  ·  2.1"));
}

TEST (ProductActions, OnlyTheBeginningOfTheWindowsAddressDecidesWhetherThereIsADownload)
{
    struct Case
    {
        const char* key;
        const char* url;
        bool expected;
    };

    for (const auto& c : { Case { "win", "https://downloads.example/setup.exe", true },
                           { "win", "http://downloads.example/setup.exe", true },   // refused later, by the download
                           { "win", "http", true },
                           { "win", "httpsomething", true },
                           { "win", "HTTPS://downloads.example/setup.exe", false },
                           { "win", " https://downloads.example/setup.exe", false },
                           { "win", "ftp://downloads.example/setup.exe", false },
                           { "win", "", false },
                           { "Win", "https://downloads.example/setup.exe", false },
                           { "mac", "https://downloads.example/setup.dmg", false } })
        EXPECT_EQ (canDownload (productWith (c.key, c.url)), c.expected) << c.key << " " << c.url;

    EXPECT_FALSE (canDownload (productWith ({}, {})));
}

//==============================================================================
TEST (ProductActions, TheChipSaysTheState)
{
    EXPECT_EQ (stateChipTextFor (modelOf (State::notInstalled)), "Not Installed");
    EXPECT_EQ (stateChipTextFor (modelOf (State::downloading)), "Downloading 42%");
    EXPECT_EQ (stateChipTextFor (modelOf (State::cached)), "Cached");
    EXPECT_EQ (stateChipTextFor (modelOf (State::installing)), utf8 ("Installing…"));
    EXPECT_EQ (stateChipTextFor (modelOf (State::updateAvailable)), utf8 ("NEW UPDATE AVAILABLE  ·  2.1"));
    EXPECT_EQ (stateChipTextFor (modelOf (outsideOfTheEnumeration)), "Not Installed");
}

TEST (ProductActions, TheChipOfAnInstalledProductNamesTheVersionIfItIsKnown)
{
    auto model = modelOf (State::installed);
    EXPECT_EQ (stateChipTextFor (model), utf8 ("✓ Installed"));

    model.installedVersion = "2.0.5";
    EXPECT_EQ (stateChipTextFor (model), utf8 ("✓ Installed v2.0.5"));
}

TEST (ProductActions, FractionsBecomeWholePercentages)
{
    struct Case
    {
        double fraction;
        const char* expected;
    };

    for (const auto& c : { Case { 0.0, "0%" }, { 0.004, "0%" }, { 0.006, "1%" }, { 0.424, "42%" }, { 0.426, "43%" }, { 0.994, "99%" },
                           { 0.996, "100%" }, { 1.0, "100%" } })
    {
        auto model = modelOf (State::downloading);
        model.progress = c.fraction;
        EXPECT_EQ (percentText (c.fraction), c.expected);
        EXPECT_EQ (primaryActionFor (model, true).label, c.expected);
        EXPECT_EQ (stateChipTextFor (model), juce::String ("Downloading ") + c.expected);
    }
}

//==============================================================================
TEST (ProductCardModel, StartsAsNothing)
{
    const ProductCardModel model;

    EXPECT_EQ (model.state, State::notInstalled);
    EXPECT_EQ (model.progress, 0.0);
    EXPECT_EQ (model.installedVersion, "");
    EXPECT_EQ (model.latestVersion, "");
    EXPECT_FALSE (model.vaultFile.exists());
    EXPECT_FALSE (model.updateAvailable);
}

TEST (ProductCardModel, TheStatesStandInTheirOrder)
{
    EXPECT_EQ ((int) State::notInstalled, 0);
    EXPECT_EQ ((int) State::downloading, 1);
    EXPECT_EQ ((int) State::cached, 2);
    EXPECT_EQ ((int) State::installing, 3);
    EXPECT_EQ ((int) State::installed, 4);
    EXPECT_EQ ((int) State::updateAvailable, 5);
}

TEST (ProductCardModel, ACopyDoesNotFollowTheCatalogue)
{
    auto product = productWith ("win", "https://downloads.example/setup.exe");
    product.releaseNotes = { { "Title", "Summary" } };
    const auto copy = modelOf (State::cached, product);

    product.name = "Renamed";
    product.platforms.clear();
    product.releaseNotes[0].title = "Changed";

    EXPECT_EQ (copy.product.name, "Grand Piano");
    ASSERT_NE (copy.product.windowsPlatform(), nullptr);
    EXPECT_EQ (copy.product.windowsPlatform()->url, "https://downloads.example/setup.exe");
    EXPECT_EQ (copy.product.releaseNotes.at (0).title, "Title");
}
