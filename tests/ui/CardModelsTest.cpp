#include "app/HubPaths.h"
#include "HubWorld.h"
#include "support/Files.h"
#include "support/FolderWatch.h"
#include "ui/CardModels.h"

#include <ctime>
#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
using State = ProductCardState;

const char* nameOf (State state)
{
    switch (state)
    {
        case State::notInstalled:       return "not installed";
        case State::downloading:        return "downloading";
        case State::cached:             return "cached";
        case State::installing:         return "installing";
        case State::installed:          return "installed";
        case State::updateAvailable:    return "update available";
        default:                        return "?";
    }
}

/** What a model says of its product in one line, files by their names. */
std::string textOf (const ProductCardModel& m)
{
    return (m.product.id + ": " + nameOf (m.state)
            + (m.state == State::downloading ? " " + juce::String (m.progress) : juce::String())
            + (m.installedVersion.isNotEmpty() ? " v" + m.installedVersion : juce::String())
            + (m.updateAvailable ? " to " + m.latestVersion : m.latestVersion)
            + (m.vaultFile != juce::File() ? ", " + m.vaultFile.getFileName() : juce::String())).toStdString();
}

using Texts = std::vector<std::string>;

/** The models of a catalogue on this disk. */
Texts derive (const std::vector<Product>& catalogue, const std::map<juce::String, double>& downloads = {},
              const std::set<juce::String>& installs = {})
{
    Texts texts;

    for (const auto& model : deriveCardModels (catalogue, VaultIndex(), InstalledIndex(), downloads, installs))
        texts.push_back (textOf (model));

    return texts;
}

Product app (const juce::String& id, const juce::String& version = "2.0.0")    { return applicationOf (id, version, "setup of " + id.toStdString()); }
Product pack (const juce::String& id, const juce::String& version = "2.0.0")   { return packOf (id, version, "archive of " + id.toStdString()); }

void vault (const Product& product)    { putInVault (product, "setup.exe", "setup of " + product.id.toStdString()); }
}

//==============================================================================
TEST (CardModels, AProductOfWhichNothingIsHereIsNotInstalled)
{
    EXPECT_EQ (derive ({ app ("a"), pack ("b") }), (Texts { "a: not installed", "b: not installed" }));
}

TEST (CardModels, AnInstallerInTheVaultIsCached)
{
    vault (app ("a"));
    EXPECT_EQ (derive ({ app ("a") }), (Texts { "a: cached, setup.exe" }));
}

TEST (CardModels, AnInstalledProgramTellsItsVersion)
{
    struct Case
    {
        const char* id;
        std::string program;
        const char* expected;
    };

    const Case cases[] {
        { "older", programOfVersion (1, 9, 9), "older: update available v1.9.9 to 2.0.0" },
        { "same", programOfVersion (2, 0, 0), "same: installed v2.0.0" },
        { "newer", programOfVersion (2, 0, 1), "newer: installed v2.0.1" },
        { "unknown", "no version in here", "unknown: installed" },   // never an update
        { "zero", programOfVersion (0, 0, 0), "zero: update available v0.0.0 to 2.0.0" },
    };

    for (const auto& c : cases)
    {
        putInstalled (c.id, c.program);
        EXPECT_EQ (derive ({ app (c.id) }), Texts { c.expected });
    }
}

TEST (CardModels, VersionsAreComparedAsVersions)
{
    putInstalled ("a", programOfVersion (1, 10, 0));

    EXPECT_EQ (derive ({ app ("a", "1.9") }), Texts { "a: installed v1.10.0" });
    EXPECT_EQ (derive ({ app ("a", "1.10") }), Texts { "a: installed v1.10.0" });
    EXPECT_EQ (derive ({ app ("a", "1.11") }), Texts { "a: update available v1.10.0 to 1.11" });
}

TEST (CardModels, AnInstalledSoundPackHasTheCataloguesVersion)
{
    putPackInstalled (pack ("sounds", "2.0.0"));

    EXPECT_EQ (derive ({ pack ("sounds", "2.0.0") }), Texts { "sounds: installed v2.0.0" });
    EXPECT_EQ (derive ({ pack ("sounds", "2.0.1") }), Texts { "sounds: not installed" }) << "another version is another install";
}

TEST (CardModels, WhatIsBothInstalledAndCachedIsInstalled)
{
    vault (app ("a"));
    putInstalled ("a", programOfVersion (2, 0, 0));
    EXPECT_EQ (derive ({ app ("a") }), Texts { "a: installed v2.0.0, setup.exe" });

    vault (pack ("b"));
    putPackInstalled (pack ("b"));
    EXPECT_EQ (derive ({ app ("a"), pack ("b") }), (Texts { "a: installed v2.0.0, setup.exe", "b: installed v2.0.0, setup.exe" }));
}

TEST (CardModels, AnUpdateInTheVaultIsStillAnUpdate)
{
    vault (app ("a"));
    putInstalled ("a", programOfVersion (1, 0, 0));

    EXPECT_EQ (derive ({ app ("a") }), Texts { "a: update available v1.0.0 to 2.0.0, setup.exe" });
}

TEST (CardModels, AnActiveDownloadHidesAllElse)
{
    putInstalled ("older", programOfVersion (1, 0, 0));
    putInstalled ("same", programOfVersion (2, 0, 0));
    vault (app ("cached"));

    for (const char* id : { "older", "same", "cached", "nothing" })
    {
        const auto models = deriveCardModels ({ app (id) }, VaultIndex(), InstalledIndex(), { { id, 0.25 } }, { id });
        ASSERT_FALSE (models.empty());   // what only the Vault knows comes behind it
        EXPECT_EQ (models[0].state, State::downloading) << id;
        EXPECT_EQ (models[0].progress, 0.25) << id;
        EXPECT_FALSE (models[0].updateAvailable) << id;
        EXPECT_EQ (models[0].latestVersion, "") << id;
    }
}

TEST (CardModels, AnActiveInstallHidesAllButADownload)
{
    putInstalled ("older", programOfVersion (1, 0, 0));
    putInstalled ("same", programOfVersion (2, 0, 0));
    vault (app ("cached"));

    for (const char* id : { "older", "same", "cached", "nothing" })
    {
        const auto models = deriveCardModels ({ app (id) }, VaultIndex(), InstalledIndex(), { { "other", 0.5 } }, { id });
        ASSERT_FALSE (models.empty());   // what only the Vault knows comes behind it
        EXPECT_EQ (models[0].state, State::installing) << id;
        EXPECT_FALSE (models[0].updateAvailable) << id;
        EXPECT_EQ (models[0].latestVersion, "") << id;
    }
}

TEST (CardModels, TheTablesAreReadByTheExactId)
{
    EXPECT_EQ (derive ({ app ("a") }, { { "A", 0.5 }, { "a ", 0.5 } }, { "A", "" }), Texts { "a: not installed" });
}

TEST (CardModels, TheCataloguesOrderIsKept)
{
    vault (app ("c"));
    putInstalled ("b", programOfVersion (1, 0, 0));

    EXPECT_EQ (derive ({ app ("c"), app ("a"), app ("b") }),
               (Texts { "c: cached, setup.exe", "a: not installed", "b: update available v1.0.0 to 2.0.0" }));
}

TEST (CardModels, AModelHoldsTheCataloguesProductWhole)
{
    auto product = app ("a");
    product.releaseNotes = { { "Title", "Summary" } };
    vault (app ("a", "1.0.0"));

    const auto models = deriveCardModels ({ product }, VaultIndex(), InstalledIndex(), {}, {});
    ASSERT_EQ (models.size(), (size_t) 1);
    EXPECT_EQ (models[0].product.version, "2.0.0") << "not the version in the Vault";
    EXPECT_EQ (models[0].product.releaseNotes.size(), (size_t) 1);
    ASSERT_NE (models[0].product.windowsPlatform(), nullptr);
    EXPECT_EQ (models[0].product.windowsPlatform()->url, product.windowsPlatform()->url);
}

//==============================================================================
TEST (CardModels, WhatOnlyTheVaultKnowsComesBehindTheCatalogue)
{
    vault (app ("a"));
    vault (app ("old"));

    EXPECT_EQ (derive ({ app ("z"), app ("a") }), (Texts { "z: not installed", "a: cached, setup.exe", "old: cached, setup.exe" }));
    EXPECT_EQ (derive ({}, {}, {}).size(), (size_t) 2);
}

TEST (CardModels, AVaultedProductOffTheCatalogueIsWhatItsRecordSays)
{
    vault (app ("old", "1.2.3"));

    const auto models = deriveCardModels ({}, VaultIndex(), InstalledIndex(), {}, {});
    ASSERT_EQ (models.size(), (size_t) 1);
    EXPECT_EQ (models[0].product.name, "Name of old");
    EXPECT_EQ (models[0].product.version, "1.2.3");
    EXPECT_EQ (models[0].product.sizeBytes, (juce::int64) 12);
    EXPECT_TRUE (models[0].product.releaseNotes.empty());
}

TEST (CardModels, AVaultedProductOffTheCatalogueKnowsThatItIsInstalled)
{
    vault (app ("old", "1.0.0"));
    putInstalled ("old", programOfVersion (0, 9, 0));
    EXPECT_EQ (derive ({}), Texts { "old: installed v0.9.0, setup.exe" }) << "there is no update without a catalogue";

    vault (pack ("sounds", "1.0.0"));
    putPackInstalled (pack ("sounds", "1.0.0"));
    auto texts = derive ({});
    std::sort (texts.begin(), texts.end());
    EXPECT_EQ (texts, (Texts { "old: installed v0.9.0, setup.exe", "sounds: installed v1.0.0, setup.exe" }));
}

TEST (CardModels, AVaultedProductOffTheCatalogueCanBeInstalling)
{
    vault (app ("old"));
    EXPECT_EQ (derive ({}, {}, { "old" }), Texts { "old: installing, setup.exe" });

    putInstalled ("old", programOfVersion (1, 0, 0));
    EXPECT_EQ (derive ({}, {}, { "old" }), Texts { "old: installing v1.0.0, setup.exe" });
}

TEST (CardModels, AnotherSpellingOfAnIdIsAnotherProduct)
{
    vault (app ("Studio"));
    EXPECT_EQ (derive ({ app ("studio") }), (Texts { "studio: not installed", "Studio: cached, setup.exe" }));
}

//==============================================================================
namespace
{
std::vector<Product> manyVaulted (int count)
{
    std::vector<Product> products;

    for (int i = 0; i < count; ++i)
    {
        products.push_back (app ("product-" + juce::String (i)));
        vault (products.back());
    }

    return products;
}

/** The processor time of this thread, which other programs on the machine don't lengthen. */
double processorMilliseconds()
{
    timespec time {};
    ::clock_gettime (CLOCK_THREAD_CPUTIME_ID, &time);
    return (double) time.tv_sec * 1.0e3 + (double) time.tv_nsec * 1.0e-6;
}

/** The best of several whole derivations, the indexes included. */
double bestTimeOf (const std::vector<Product>& products, int rounds)
{
    double best = 1.0e9;

    for (int i = 0; i < rounds; ++i)
    {
        const auto start = processorMilliseconds();
        const auto count = deriveCardModels (products, VaultIndex(), InstalledIndex(), {}, {}).size();
        best = std::min (best, processorMilliseconds() - start);
        EXPECT_EQ (count, products.size());
    }

    return best;
}
}

TEST (CardModels, OneDerivationReadsEachRecordOnce)
{
    const auto products = manyVaulted (20);
    putInstalled ("product-3", programOfVersion (1, 0, 0));
    FolderWatch root (HubPaths::root()), vaultRoot (HubPaths::vaultDirectory()), folder (vaultFile ("product-7"));

    EXPECT_EQ (deriveCardModels (products, VaultIndex(), InstalledIndex(), {}, {}).size(), products.size());
    EXPECT_EQ (root.count ("read installed.json"), 1);
    EXPECT_EQ (root.count ("read Vault"), 1) << "the Vault is listed once";
    EXPECT_EQ (folder.count ("read vault.json"), 1);
    EXPECT_EQ (folder.count ("read setup.exe"), 0) << "installers are never read";
}

// Ten times the products take about ten times the time; a square law would take a hundred. A busy machine takes what it likes, so
// the limit lies between; the benchmarks hold the exact bar.
TEST (CardModels, TimeGrowsInProportionToTheProducts)
{
    const auto products = manyVaulted (2000);
    const auto large = bestTimeOf (products, 3);

    for (size_t i = 200; i < products.size(); ++i)
        vaultFile (products[i].id).deleteRecursively (false);

    const auto small = bestTimeOf ({ products.begin(), products.begin() + 200 }, 10);
    EXPECT_LE (large / small, 30.0) << large << " ms for 2,000 products, " << small << " ms for 200";
}
