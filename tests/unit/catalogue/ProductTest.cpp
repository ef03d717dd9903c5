#include "catalogue/Product.h"
#include "catalogue/ProductCardModel.h"

#include <gtest/gtest.h>

TEST (Product, ADefaultProductIsAnEmptyApplication)
{
    const Product product;

    for (const auto* text : { &product.id, &product.name, &product.vendor, &product.version, &product.description, &product.category,
                              &product.releaseDate, &product.packId, &product.archiveRoot, &product.defaultPatch, &product.licenseFile,
                              &product.licenseId, &product.credit, &product.sourceUrl })
        EXPECT_TRUE (text->isEmpty());

    EXPECT_EQ (product.sizeBytes, 0);
    EXPECT_EQ (product.installType, Product::InstallType::application);
    EXPECT_TRUE (product.releaseNotes.empty());
    EXPECT_TRUE (product.platforms.empty());
    EXPECT_TRUE (product.image.isNull());
}

TEST (Product, InstallTypesKeepTheirNumbers)
{
    EXPECT_EQ ((int) Product::InstallType::application, 0);
    EXPECT_EQ ((int) Product::InstallType::factoryContent, 1);
}

TEST (Product, WindowsPlatformIsTheEntryOfExactlyTheKeyWin)
{
    Product product;
    EXPECT_EQ (product.windowsPlatform(), nullptr);

    for (const char* other : { "mac", "Win", "windows", "win32", " win", "" })
        product.platforms[other] = { "https://other.example/x", "", 1 };

    EXPECT_EQ (product.windowsPlatform(), nullptr);

    product.platforms["win"] = { "https://a.example/x.exe", "abc", 7 };
    ASSERT_NE (product.windowsPlatform(), nullptr);
    EXPECT_EQ (product.windowsPlatform(), &product.platforms.at ("win"));
    EXPECT_EQ (product.windowsPlatform()->sizeBytes, 7);
}

//==============================================================================
TEST (ProductCardModel, ADefaultModelIsNotInstalled)
{
    const ProductCardModel model;

    EXPECT_EQ (model.state, ProductCardState::notInstalled);
    EXPECT_EQ (model.progress, 0.0);
    EXPECT_EQ (model.installedVersion, "");
    EXPECT_EQ (model.latestVersion, "");
    EXPECT_FALSE (model.vaultFile.exists());
    EXPECT_FALSE (model.updateAvailable);
    EXPECT_EQ (model.product.id, "");
}

TEST (ProductCardModel, StatesKeepTheirOrder)
{
    int expected = 0;

    for (const auto state : { ProductCardState::notInstalled, ProductCardState::downloading, ProductCardState::cached,
                              ProductCardState::installing, ProductCardState::installed, ProductCardState::updateAvailable })
        EXPECT_EQ ((int) state, expected++);
}

TEST (ProductCardModel, ACopyKeepsItsProductWhenTheCatalogueChanges)
{
    Product catalogue;
    catalogue.id = "zorva-daw";
    catalogue.releaseNotes = { { "Title", "Summary" } };
    catalogue.platforms["win"] = { "https://a.example/x.exe", "abc", 7 };

    ProductCardModel model;
    model.product = catalogue;
    const auto copy = model;

    catalogue.releaseNotes.clear();
    catalogue.platforms["win"].sizeBytes = 8;
    model.product.id = "other";
    model.product.platforms.clear();

    EXPECT_EQ (copy.product.id, "zorva-daw");
    ASSERT_EQ (copy.product.releaseNotes.size(), 1u);
    EXPECT_EQ (copy.product.releaseNotes.front().title, "Title");
    ASSERT_NE (copy.product.windowsPlatform(), nullptr);
    EXPECT_EQ (copy.product.windowsPlatform()->sizeBytes, 7);
}
