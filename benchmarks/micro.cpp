#include "app/HubPaths.h"
#include "catalogue/ManifestParser.h"
#include "support/GuiHarness.h"
#include "ui/AssetPicture.h"
#include "ui/CardModels.h"
#include "ui/HubLookAndFeel.h"
#include "ui/MainHubComponent.h"

#include <benchmark/benchmark.h>
#include <cstdlib>

// Comparisons inside one process. HOME must be a scratch directory: the card benchmarks fill its Vault.

namespace
{
juce::String manifestOf (int count)
{
    juce::Array<juce::var> products;

    for (int i = 0; i < count; ++i)
    {
        auto* platform = new juce::DynamicObject();
        platform->setProperty ("url", "https://downloads.zorvadaw.example/product-" + juce::String (i) + "/Setup.exe");
        platform->setProperty ("sha256", juce::String::repeatedString ("0123456789abcdef", 4));
        platform->setProperty ("sizeBytes", 1000000 + i);
        auto* platforms = new juce::DynamicObject();
        platforms->setProperty ("win", platform);

        auto* note = new juce::DynamicObject();
        note->setProperty ("title", "What is new");
        note->setProperty ("summary", "A line about what this release brings to the people who make music with it.");

        auto* product = new juce::DynamicObject();
        product->setProperty ("id", "product-" + juce::String (i));
        product->setProperty ("name", "Product " + juce::String (i));
        product->setProperty ("vendor", "ZORVA");
        product->setProperty ("version", "1." + juce::String (i % 20) + ".0");
        product->setProperty ("description", "An instrument that sits in the mix and stays there.");
        product->setProperty ("category", "Instrument");
        product->setProperty ("releaseDate", "2026-06-30");
        product->setProperty ("releaseNotes", juce::Array<juce::var> { juce::var (note) });
        product->setProperty ("platforms", platforms);
        products.add (product);
    }

    auto* document = new juce::DynamicObject();
    document->setProperty ("manifestVersion", 1);
    document->setProperty ("products", products);
    return juce::JSON::toString (juce::var (document));
}

void parseManifestWhole (benchmark::State& state)
{
    const auto text = manifestOf (10000);

    for (auto _ : state)
        if (parseManifest (text).size() != 10000)
            state.SkipWithError ("the manifest was refused");
}

void parseJsonAlone (benchmark::State& state)
{
    const auto text = manifestOf (10000);

    for (auto _ : state)
        benchmark::DoNotOptimize (juce::JSON::parse (text));
}

/** Fills the Vault with the first count products of the manifest. */
std::vector<Product> vaultAll (int count)
{
    HubPaths::vaultDirectory().deleteRecursively();
    HubPaths::ensureDirectories();
    auto products = parseManifest (manifestOf (count));

    for (auto& product : products)
    {
        const auto folder = VaultStore::vaultFolderFor (product.id);
        const auto installer = folder.getChildFile ("Setup.exe");
        folder.createDirectory();
        installer.replaceWithText ("MZ");
        product.platforms["win"].sizeBytes = installer.getSize();
        VaultStore::writeVaultRecord (product, "win", installer);
    }

    return products;
}

void rebuildCards (benchmark::State& state)
{
    const auto products = vaultAll ((int) state.range (0));

    for (auto _ : state)
    {
        const auto models = deriveCardModels (products, VaultIndex(), InstalledIndex(), {}, {});

        if (models.size() != products.size() || models.back().state != ProductCardState::cached)
            state.SkipWithError ("the cards are wrong");
    }
}

/** Paints until every picture that is shown has come. */
void paintWithPictures (MainHubComponent& hub, juce::Graphics& g)
{
    do
    {
        hub.paintEntireComponent (g, true);
        zorva::test::pumpUntil ([] { return ! AssetPicture::isAnyLoading(); });
        zorva::test::pump();    // what has been decoded arrives as a message
        hub.paintEntireComponent (g, true);
    }
    while (AssetPicture::isAnyLoading());
}

/** The page of a tab; the figure beside it is the memory of the pictures that this one page shows. */
void paintPage (benchmark::State& state)
{
    MainHubComponent hub;
    juce::Image target (juce::Image::ARGB, hub.getWidth(), hub.getHeight(), true);
    juce::Graphics g (target);
    dynamic_cast<Sidebar&> (*hub.findChildWithID ("sidebar")).onTabChanged ((Sidebar::Tab) state.range (0));
    paintWithPictures (hub, g);

    for (auto _ : state)
        hub.paintEntireComponent (g, true);

    state.counters["pictureBytes"] = (double) AssetPicture::bytesHeld();
}

void drawOneImage (benchmark::State& state)
{
    const juce::Image source (juce::Image::ARGB, 1100, 720, true);
    juce::Image target (juce::Image::ARGB, 1100, 720, true);
    juce::Graphics g (target);

    for (auto _ : state)
        g.drawImageAt (source, 0, 0);
}

BENCHMARK (parseManifestWhole)->Unit (benchmark::kMillisecond);
BENCHMARK (parseJsonAlone)->Unit (benchmark::kMillisecond);
BENCHMARK (rebuildCards)->Arg (200)->Arg (2000)->Unit (benchmark::kMillisecond)->Iterations (5);
BENCHMARK (paintPage)->DenseRange (0, 3)->Unit (benchmark::kMillisecond);
BENCHMARK (drawOneImage)->Unit (benchmark::kMillisecond);
}

int main (int argc, char** argv)
{
    if (std::getenv ("HUB_BENCHMARK_HOME") == nullptr || ::setenv ("HOME", std::getenv ("HUB_BENCHMARK_HOME"), 1) != 0)
        return 2;

    juce::ScopedJuceInitialiser_GUI gui;
    HubLookAndFeel lookAndFeel;
    juce::LookAndFeel::setDefaultLookAndFeel (&lookAndFeel);

    benchmark::Initialize (&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    juce::LookAndFeel::setDefaultLookAndFeel (nullptr);
    return 0;
}
