#include "GalleryScene.h"
#include "HubRun.h"
#include "HubWorld.h"

using namespace zorva::test;

namespace
{
/** The column in a window: what is in it from top to bottom, and its own height. */
struct Case
{
    int width, height;
    bool pane;
    int columnWidth;
    const char *grid, *banner, *notice, *header, *gallery;
    int columnHeight;
};

/** With five products, in one, two or three columns of cards. */
const Case cases[] {
    { 1100, 720, false, 934, "0 0 934 816", "0 824 934 335", "0 1167 934 320", "0 1495 934 28", "0 1531 934 1330", 2861 },
    { 900, 600, false, 734, "0 0 734 1212", "0 1220 734 260", "0 1488 734 320", "0 1816 734 28", "0 1852 734 1078", 2930 },
    { 1600, 1000, false, 1434, "0 0 1434 816", "0 824 1434 360", "0 1192 1434 320", "0 1520 1434 28", "0 1556 1434 1948", 3504 },
    { 1100, 720, true, 614, "0 0 614 1212", "0 1220 614 215", "0 1443 614 320", "0 1771 614 28", "0 1807 614 928", 2735 },
    { 900, 600, true, 414, "0 0 414 2004", "0 2012 414 180", "0 2200 414 320", "0 2528 414 28", "0 2564 414 682", 3246 },
    { 1600, 1000, true, 1114, "0 0 1114 816", "0 824 1114 360", "0 1192 1114 320", "0 1520 1114 28", "0 1556 1114 1552", 3108 },

    // The pane takes all.
    { 480, 600, true, 0, "0 0 0 2004", "0 2012 0 180", "0 2200 0 320", "0 2528 0 28", "0 2564 0 196", 2760 },
};

std::vector<Product> products (int count)
{
    std::vector<Product> result;

    for (int i = 0; i < count; ++i)
        result.push_back (applicationOf ("product-" + juce::String (i), "1.0.0", "setup"));

    return result;
}

/** The Hub with five products on the library page. */
struct Scene
{
    explicit Scene (int count = 5)
    {
        stayOffline();
        putLocalManifest (products (count));
        run = std::make_unique<HubRun>();
    }

    juce::Component& item (const char* id)    { return below (*run->hub, id); }
    juce::Component& content()                { return item ("libraryContent"); }

    void use (const Case& c)
    {
        if (c.pane != run->pane().isVisible())
            run->select ("product-0");

        run->hub->setSize (c.width, c.height);
    }

    std::unique_ptr<HubRun> run;
};

const char* const itemIds[] { "productGrid", "campaignBanner", "soundPacksNotice", "galleryHeader", "whatsIncludedGallery" };

std::string titleOf (const Case& c)    { return std::to_string (c.width) + " x " + std::to_string (c.height) + (c.pane ? " with pane" : ""); }
}

//==============================================================================
TEST (LibraryColumn, PlacesEverythingByTheTable)
{
    for (const auto& c : cases)
    {
        SCOPED_TRACE (titleOf (c));
        const auto heightOf = [] (const char* bounds) { return juce::Rectangle<int>::fromString (bounds).getHeight(); };
        const auto layout = layoutLibraryColumn (c.columnWidth, heightOf (c.grid), heightOf (c.gallery), c.height - 146);

        EXPECT_EQ (layout.productGrid.toString(), c.grid);
        EXPECT_EQ (layout.campaignBanner.toString(), c.banner);
        EXPECT_EQ (layout.soundPacksNotice.toString(), c.notice);
        EXPECT_EQ (layout.galleryHeader.toString(), c.header);
        EXPECT_EQ (layout.whatsIncludedGallery.toString(), c.gallery);
        EXPECT_EQ (layout.height, c.columnHeight);
    }
}

TEST (LibraryColumn, TheBannersHeightIs180UpTo520And360From1000)
{
    const auto heightAt = [] (int width) { return layoutLibraryColumn (width, 100, 100, 0).campaignBanner.getHeight(); };

    for (const int width : { 0, 1, 39, 40, 300, 519, 520, 521 })
        EXPECT_EQ (heightAt (width), 180) << width;

    for (const auto& [width, height] : { std::pair (522, 181), { 524, 182 }, { 614, 215 }, { 734, 260 }, { 934, 335 }, { 994, 358 }, { 998, 359 } })
        EXPECT_EQ (heightAt (width), height) << width;

    for (const int width : { 1000, 1001, 1114, 1434, 3000 })
        EXPECT_EQ (heightAt (width), 360) << width;
}

TEST (LibraryColumn, WithoutProductsTheBannerStandsAtTheTop)
{
    const auto layout = layoutLibraryColumn (934, 0, 1330, 574);
    EXPECT_EQ (layout.campaignBanner.toString(), "0 8 934 335");
    EXPECT_EQ (layout.whatsIncludedGallery.toString(), "0 715 934 1330");
    EXPECT_EQ (layout.height, 2045);
}

TEST (LibraryColumn, IsAtLeastAsHighAsThePage)
{
    EXPECT_EQ (layoutLibraryColumn (0, 0, 196, 755).height, 756) << "the gallery's bottom";
    EXPECT_EQ (layoutLibraryColumn (0, 0, 196, 756).height, 756);
    EXPECT_EQ (layoutLibraryColumn (0, 0, 196, 757).height, 757) << "the page's height";
}

//==============================================================================
TEST (LibraryColumn, StandsInTheWindowByTheTable)
{
    Scene scene;

    for (const auto& c : cases)
    {
        SCOPED_TRACE (titleOf (c));
        scene.use (c);

        const char* const expected[] { c.grid, c.banner, c.notice, c.header, c.gallery };

        for (int i = 0; i < 5; ++i)
            EXPECT_EQ (scene.item (itemIds[i]).getBounds().toString(), expected[i]) << itemIds[i];

        EXPECT_EQ (scene.content().getBounds().withZeroOrigin(), juce::Rectangle<int> (c.columnWidth, c.columnHeight));
    }
}

TEST (LibraryColumn, HoldsItsFiveInTheirOrder)
{
    Scene scene;
    ASSERT_EQ (scene.content().getNumChildComponents(), 5);

    for (int i = 0; i < 5; ++i)
    {
        EXPECT_EQ (scene.content().getChildComponent (i)->getComponentID(), itemIds[i]);
        EXPECT_TRUE (scene.content().getChildComponent (i)->isVisible()) << itemIds[i];
    }

    EXPECT_EQ (scene.run->library().getViewedComponent(), &scene.content());
}

TEST (LibraryColumn, ScrollsToTheLastCaptionAndOnlyUpAndDown)
{
    Scene scene;

    for (const auto& c : cases)
    {
        if (c.columnWidth == 0)
            continue;

        SCOPED_TRACE (titleOf (c));
        scene.use (c);
        auto& library = scene.run->library();
        EXPECT_EQ (library.getScrollBarThickness(), 6);
        EXPECT_TRUE (library.getVerticalScrollBar().isVisible());
        EXPECT_FALSE (library.getHorizontalScrollBar().isVisible());

        library.setViewPosition (500, 100000);
        EXPECT_EQ (library.getViewPosition(), juce::Point<int> (0, c.columnHeight - (c.height - 146)));
        const auto& gallery = scene.item ("whatsIncludedGallery");
        EXPECT_EQ (library.getLocalPoint (&gallery, juce::Point<int> (0, gallery.getHeight())).y, c.height - 146) << "its end is at the page's end";
    }
}

TEST (LibraryColumn, TheGridDoesNotScrollByItself)
{
    Scene scene;
    scene.run->hub->setSize (900, 600);

    for (auto* inner : allBelow<juce::Viewport> (scene.run->grid()))
    {
        EXPECT_EQ (inner->getHeight(), 1212);
        EXPECT_FALSE (inner->getVerticalScrollBar().isVisible());
        inner->setViewPosition (0, 100);
        EXPECT_EQ (inner->getViewPositionY(), 0);
    }

    EXPECT_FALSE (allBelow<juce::Viewport> (scene.run->grid()).empty());
}

TEST (LibraryColumn, TheMouseWheelScrollsItFromEverywhere)
{
    Scene scene;
    auto& library = scene.run->library();

    for (const auto* id : itemIds)
    {
        auto& item = scene.item (id);
        library.setViewPosition (0, std::min (item.getY() + std::min (item.getHeight(), 300) / 2 - 287, 2000));
        const int before = library.getViewPositionY();
        const auto p = scene.run->window->getLocalPoint (&item, juce::Point<int> (300, std::min (item.getHeight(), 300) / 2)).toFloat();
        juce::MouseWheelDetails wheel {};
        wheel.deltaY = -0.5f;

        scene.run->window->mouse (p, 0);
        scene.run->window->peer().handleMouseWheel (juce::MouseInputSource::InputSourceType::mouse, p, juce::Time::currentTimeMillis(), wheel);
        pump();
        EXPECT_GT (library.getViewPositionY(), before) << id;
    }
}

TEST (LibraryColumn, AClickOnTheBannersDoesNothing)
{
    Scene scene;

    for (const auto* id : { "campaignBanner", "soundPacksNotice", "galleryHeader", "whatsIncludedGallery" })
    {
        auto& item = scene.item (id);
        scene.run->click (item);
        EXPECT_EQ (scene.run->shownInPane(), "(closed)") << id;
        EXPECT_TRUE (scene.run->showsNoBox()) << id;

        const auto p = scene.content().getLocalPoint (&item, item.getLocalBounds().getCentre());
        EXPECT_EQ (scene.content().getComponentAt (p), &scene.content()) << "the mouse does not see it: " << id;
    }
}

TEST (LibraryColumn, MovesDownWhenTheCatalogueGrows)
{
    TrustedTestServer server;
    serveCatalogue (server, products (7));
    putCachedManifest (products (1));
    HubRun run;
    ASSERT_TRUE (run.waitUntilOnline());
    pump();

    EXPECT_EQ (allBelow<ProductCard> (*run.hub).size(), (size_t) 8) << "with the built-in one";
    EXPECT_EQ (run.grid().getHeight(), 3 * 396 + 24);
    EXPECT_EQ (below (*run.hub, "campaignBanner").getBounds().toString(), "0 1220 934 335");
    EXPECT_EQ (below (*run.hub, "whatsIncludedGallery").getY(), 1212 + 335 + 380);
}

//==============================================================================
TEST (LibraryColumn, NoPictureOfItIsDecodedBeforeThePageIsShown)
{
    stayOffline();
    putLocalManifest (products (5));
    HubRun run (Sidebar::Tab::settings);
    pictureOf (*run.hub);
    EXPECT_FALSE (AssetPicture::isAnyLoading());
    EXPECT_EQ (AssetPicture::bytesHeld(), (size_t) 0);

    run.open (Sidebar::Tab::library);
    pictureOf (*run.hub);
    waitForPictures();
    EXPECT_EQ (AssetPicture::bytesHeld(), (size_t) 0) << "the cards fill the page";

    run.library().setViewPosition (0, 700);
    pictureOf (*run.hub);
    waitForPictures();
    EXPECT_GT (AssetPicture::bytesHeld(), (size_t) 0) << "the banner came into sight";
}

TEST (LibraryColumn, NothingInItIsRescaledWhenItIsScrolledThrough)
{
    Scene scene;

    for (const auto& c : { cases[0], cases[1], cases[5] })
    {
        SCOPED_TRACE (titleOf (c));
        scene.use (c);
        pictureOf (scene.content());
        waitForPictures();
        size_t pictures = 0;

        for (const auto& drawn : recordOf (scene.content()).images)
            if (drawn.place.getWidth() > 0.0f)
            {
                EXPECT_FALSE (drawn.rescaled) << drawn.place.toString();
                ++pictures;
            }

        EXPECT_GE (pictures, (size_t) (1 + 4 + numPictures)) << "banner, packs and gallery";
    }
}
