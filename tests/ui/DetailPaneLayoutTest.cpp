#include "Models.h"
#include "ui/DetailPaneLayout.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
std::string textOf (juce::Rectangle<int> bounds)    { return bounds.toString().toStdString(); }

/** A model with only the one fact that is always there. */
ProductCardModel bare()
{
    auto model = someModel();
    model.product.platforms.clear();
    return model;
}

ProductCardModel pack()
{
    auto model = bare();
    model.product.installType = Product::InstallType::factoryContent;
    return model;
}

ProductCardModel withEverything()
{
    auto model = pack();
    auto& product = model.product;
    product.description = "A piano.";
    product.releaseDate = "2026-06-30";
    product.category = "Instruments";
    product.sizeBytes = 1073741824;
    product.credit = "The ZORVA makers";
    product.licenseId = "CC-BY-4.0";
    product.sourceUrl = "https://downloads.example/source";
    product.releaseNotes = { { "First", "One." }, { "Second", "Two." } };
    model.installedVersion = "2.0";
    return model;
}

using Lines = std::vector<std::string>;

Lines linesOf (const ProductCardModel& model)
{
    Lines lines;

    for (const auto& line : factLinesFor (model))
        lines.push_back (line.toStdString());

    return lines;
}

std::string bullet (const char* text)    { return "• " + std::string (text); }
}

//==============================================================================
TEST (DetailPaneFacts, ListsThemInTheirOrder)
{
    EXPECT_EQ (linesOf (withEverything()),
               (Lines { bullet ("Version: 2.1"), bullet ("Released: 2026-06-30"), bullet ("Category: Instruments"),
                                    bullet ("Size: 1.0 GB"), bullet ("Installed: v2.0"), bullet ("Credit: The ZORVA makers"),
                                    bullet ("License: CC-BY-4.0"), bullet ("Source: https://downloads.example/source") }));
}

TEST (DetailPaneFacts, TheVersionIsAlwaysThere)
{
    EXPECT_EQ (linesOf (bare()), (Lines { bullet ("Version: 2.1") }));
    EXPECT_EQ (linesOf (pack()), (Lines { bullet ("Version: 2.1") }));
}

TEST (DetailPaneFacts, EachOtherFactStandsAloneWhenItIsKnown)
{
    using Change = void (*) (ProductCardModel&);
    struct Case
    {
        Change change;
        const char* line;
    };

    for (const auto& c : { Case { [] (auto& m) { m.product.releaseDate = "soon"; }, "Released: soon" },
                           { [] (auto& m) { m.product.category = "Drums"; }, "Category: Drums" },
                           { [] (auto& m) { m.product.sizeBytes = 1; }, "Size: 1 B" },
                           { [] (auto& m) { m.installedVersion = "1"; }, "Installed: v1" },
                           { [] (auto& m) { m.product.credit = "Me"; }, "Credit: Me" },
                           { [] (auto& m) { m.product.licenseId = "MIT"; }, "License: MIT" },
                           { [] (auto& m) { m.product.sourceUrl = "x"; }, "Source: x" } })
    {
        auto model = pack();
        c.change (model);
        EXPECT_EQ (linesOf (model), (Lines { bullet ("Version: 2.1"), bullet (c.line) }));
    }
}

TEST (DetailPaneFacts, CreditLicenceAndSourceBelongToSoundPacks)
{
    auto model = withEverything();
    model.product.installType = Product::InstallType::application;

    EXPECT_EQ (linesOf (model),
               (Lines { bullet ("Version: 2.1"), bullet ("Released: 2026-06-30"), bullet ("Category: Instruments"),
                                    bullet ("Size: 1.0 GB"), bullet ("Installed: v2.0") }));
}

TEST (DetailPaneFacts, TheSizeComesFromTheProductOrElseFromItsDownload)
{
    struct Case
    {
        juce::int64 own, platform;
        const char* key;
        Lines expected;
    };

    for (const auto& c : { Case { 1024, 4096, "win", { bullet ("Version: 2.1"), bullet ("Size: 1 KB") } },
                           { 0, 4096, "win", { bullet ("Version: 2.1"), bullet ("Size: 4 KB") } },
                           { -7, 4096, "win", { bullet ("Version: 2.1"), bullet ("Size: 4 KB") } },
                           { 0, 4096, "mac", { bullet ("Version: 2.1") } },
                           { 0, 0, "win", { bullet ("Version: 2.1") } },
                           { 0, -1, "win", { bullet ("Version: 2.1") } } })
    {
        auto model = bare();
        model.product.sizeBytes = c.own;
        model.product.platforms[c.key] = { "https://downloads.example/setup.exe", {}, c.platform };
        EXPECT_EQ (linesOf (model), c.expected) << c.own << " " << c.platform << " " << c.key;
    }
}

//==============================================================================
TEST (DetailPaneLayout, PlacesTheHeadOfThePane)
{
    const DetailPaneLayout layout (bare(), 320);

    EXPECT_EQ (textOf (layout.pictureWell), "16 48 288 140");
    EXPECT_EQ (textOf (layout.picture), "28 60 264 116");
    EXPECT_EQ (textOf (layout.name), "16 198 288 20");
    EXPECT_EQ (textOf (layout.vendor), "16 220 288 14");
    EXPECT_EQ (textOf (layout.upperRule), "16 240 288 1");
}

TEST (DetailPaneLayout, WithoutDescriptionAndNotesTheFactsFollowTheRule)
{
    const DetailPaneLayout layout (bare(), 320);

    EXPECT_TRUE (layout.description.isEmpty());
    ASSERT_EQ (layout.facts.size(), (size_t) 1);
    EXPECT_EQ (textOf (layout.facts[0]), "16 250 288 15");
    EXPECT_TRUE (layout.notesBox.isEmpty());
    EXPECT_TRUE (layout.notes.empty());
    EXPECT_EQ (textOf (layout.lowerRule), "16 273 288 1");        // y is 267 after one fact
    EXPECT_EQ (textOf (layout.galleryHeading), "16 282 288 18");
    EXPECT_EQ (layout.galleryTop, 300);
}

TEST (DetailPaneLayout, PlacesDescriptionFactsAndNotes)
{
    const DetailPaneLayout layout (withEverything(), 320);

    EXPECT_EQ (textOf (layout.description), "16 250 288 64");
    ASSERT_EQ (layout.facts.size(), (size_t) 8);
    EXPECT_EQ (textOf (layout.facts[0]), "16 322 288 15");
    EXPECT_EQ (textOf (layout.facts[1]), "16 339 288 15");
    EXPECT_EQ (textOf (layout.facts[7]), "16 441 288 15");

    // y is 322 + 8 * 17 = 458 here.
    EXPECT_EQ (textOf (layout.notesBox), "16 468 288 166");
    EXPECT_EQ (textOf (layout.notesHeading), "26 477 268 16");
    ASSERT_EQ (layout.notes.size(), (size_t) 2);
    EXPECT_EQ (textOf (layout.notes[0].title), "30 502 260 15");
    EXPECT_EQ (textOf (layout.notes[0].summary), "30 518 260 38");
    EXPECT_EQ (textOf (layout.notes[1].title), "30 564 260 15");
    EXPECT_EQ (textOf (layout.notes[1].summary), "30 580 260 38");

    // y is 458 + 2 * 62 + 52 = 634 here.
    EXPECT_EQ (textOf (layout.lowerRule), "16 640 288 1");
    EXPECT_EQ (textOf (layout.galleryHeading), "16 649 288 18");
    EXPECT_EQ (layout.galleryTop, 667);
}

TEST (DetailPaneLayout, EveryFactMovesWhatFollowsByItsLine)
{
    using Change = void (*) (ProductCardModel&);
    const Change changes[] { [] (auto& m) { m.product.releaseDate = "soon"; }, [] (auto& m) { m.product.category = "Drums"; },
                             [] (auto& m) { m.product.sizeBytes = 1; },        [] (auto& m) { m.installedVersion = "1"; },
                             [] (auto& m) { m.product.credit = "Me"; },        [] (auto& m) { m.product.licenseId = "MIT"; },
                             [] (auto& m) { m.product.sourceUrl = "x"; } };
    auto model = pack();
    int expected = 300;

    for (const auto change : changes)
    {
        change (model);
        expected += 17;
        const DetailPaneLayout layout (model, 320);
        EXPECT_EQ (layout.galleryTop, expected);
        EXPECT_EQ (layout.factLines.size(), layout.facts.size());
        EXPECT_EQ (linesOf (model).size(), layout.facts.size());
    }

    model.product.installType = Product::InstallType::application;
    EXPECT_EQ (DetailPaneLayout (model, 320).galleryTop, 300 + 4 * 17);
}

TEST (DetailPaneLayout, DescriptionAndNotesMoveWhatFollows)
{
    auto model = bare();
    model.product.description = "x";
    EXPECT_EQ (DetailPaneLayout (model, 320).galleryTop, 300 + 72);

    for (int n = 1; n <= 8; ++n)
    {
        model.product.releaseNotes.push_back ({ "Title", "Summary" });
        EXPECT_EQ (DetailPaneLayout (model, 320).galleryTop, 300 + 72 + n * 62 + 52);
    }
}

TEST (DetailPaneLayout, FollowsTheWidthOfThePane)
{
    const DetailPaneLayout layout (withEverything(), 200);

    EXPECT_EQ (textOf (layout.pictureWell), "16 48 168 140");
    EXPECT_EQ (textOf (layout.picture), "28 60 144 116");
    EXPECT_EQ (textOf (layout.facts[0]), "16 322 168 15");
    EXPECT_EQ (textOf (layout.notesHeading), "26 477 148 16");
    EXPECT_EQ (textOf (layout.notes[0].summary), "30 518 140 38");
    EXPECT_EQ (layout.galleryTop, 667) << "heights don't follow it";
}

TEST (DetailPaneLayout, ANarrowPaneHasNoNegativeWidths)
{
    for (const int width : { 0, 1, 20, 32, 52, 56, 60 })
    {
        const DetailPaneLayout layout (withEverything(), width);

        for (const auto& bounds : { layout.pictureWell, layout.picture, layout.name, layout.facts[0], layout.notesBox, layout.notesHeading,
                                    layout.notes[0].title, layout.lowerRule })
            EXPECT_GE (bounds.getWidth(), 0) << width;
    }
}

//==============================================================================
TEST (DetailPaneButtons, StandAtTheBottomOfThePane)
{
    const DetailPaneButtons buttons ({ 320, 574 }, true);

    EXPECT_EQ (textOf (buttons.close), "280 16 24 24");
    EXPECT_EQ (textOf (buttons.reveal), "16 538 288 20");
    EXPECT_EQ (textOf (buttons.reinstall), "16 494 288 36");
    EXPECT_EQ (textOf (buttons.primary), "16 450 288 36");
    EXPECT_LE (buttons.detailsBottom, 450);
}

TEST (DetailPaneButtons, WithoutReinstallThePrimaryButtonStandsAboveTheLink)
{
    const DetailPaneButtons buttons ({ 320, 574 }, false);

    EXPECT_EQ (textOf (buttons.reveal), "16 538 288 20");
    EXPECT_EQ (textOf (buttons.primary), "16 494 288 36");
    EXPECT_EQ (buttons.reveal.getY() - buttons.primary.getBottom(), 8);
    EXPECT_TRUE (buttons.reinstall.isEmpty());
}

TEST (DetailPaneButtons, NoPaneIsTooSmall)
{
    for (const int side : { 0, 10, 32, 40, 60, 100 })
        for (const bool showsReinstall : { false, true })
        {
            const DetailPaneButtons buttons ({ side, side }, showsReinstall);

            for (const auto& bounds : { buttons.close, buttons.primary, buttons.reinstall, buttons.reveal })
            {
                EXPECT_GE (bounds.getWidth(), 0) << side;
                EXPECT_GE (bounds.getHeight(), 0) << side;
            }
        }
}
