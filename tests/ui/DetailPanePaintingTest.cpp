#include "DetailPaneScene.h"
#include "ui/HubPalette.h"

using namespace zorva::test;

namespace
{
using State = ProductCardState;
using Scene = PaneScene;
constexpr int width = PaneScene::width, height = PaneScene::height;

void paintNotes (juce::Graphics& g, const Product& product, int y)
{
    const int n = (int) product.releaseNotes.size();
    const juce::Rectangle<float> box (16.0f, (float) y + 10.0f, (float) width - 32.0f, (float) (n * 62 + 42));

    g.setColour (HubPalette::panel);
    g.fillRoundedRectangle (box, 5.0f);
    g.setColour (HubPalette::border);
    g.drawRoundedRectangle (box.reduced (0.5f), 5.0f, 1.0f);
    line (g, utf8 ("WHAT'S NEW  ·  VERSION ") + product.version, { 26, y + 19, width - 52, 16 }, bold (11.0f), HubPalette::accent);

    for (int i = 0; i < n; ++i)
    {
        const int t = y + 44 + i * 62;
        line (g, product.releaseNotes[(size_t) i].title, { 30, t, width - 60, 15 }, bold (11.5f), HubPalette::textPrimary);
        g.setFont (plain (10.5f));
        g.setColour (HubPalette::textSecondary);
        g.drawFittedText (product.releaseNotes[(size_t) i].summary, { 30, t + 16, width - 60, 38 }, juce::Justification::topLeft, 3, 0.9f);
    }
}

/** A pane without its buttons; the facts are given as they stand there. */
juce::Image picture (const ProductCardModel& model, const juce::StringArray& facts)
{
    return paintedOn (HubPalette::surface, width, height, [&] (juce::Graphics& g)
    {
        const auto& product = model.product;
        const int w = width - 32;
        const auto rule = [&] (int y)
        {
            g.setColour (HubPalette::border);
            g.fillRect (16, y, w, 1);
        };

        g.setColour (HubPalette::border);
        g.fillRect (0, 0, 1, height);

        g.setColour (HubPalette::panel);
        g.fillRoundedRectangle (16.0f, 48.0f, (float) w, 140.0f, 4.0f);
        g.setOpacity (1.0f);
        g.drawImageWithin (product.image, 28, 60, width - 56, 116,
                           juce::RectanglePlacement::xMid | juce::RectanglePlacement::yMid | juce::RectanglePlacement::onlyReduceInSize);
        g.setColour (HubPalette::border);
        g.drawRoundedRectangle (16.5f, 48.5f, (float) w - 1.0f, 139.0f, 4.0f, 1.0f);

        line (g, product.name, { 16, 198, w, 20 }, bold (16.0f), HubPalette::textPrimary);
        line (g, product.vendor, { 16, 220, w, 14 }, plain (11.0f), HubPalette::textSecondary);
        rule (240);
        int y = 250;

        if (product.description.isNotEmpty())
        {
            g.setFont (plain (12.0f));
            g.setColour (HubPalette::textPrimary);
            g.drawFittedText (product.description, { 16, y, w, 64 }, juce::Justification::topLeft, 4, 0.0f);
            y = 322;
        }

        for (const auto& fact : facts)
        {
            line (g, utf8 ("• ") + fact, { 16, y, w, 15 }, plain (11.0f), HubPalette::textSecondary);
            y += 17;
        }

        if (! product.releaseNotes.empty())
        {
            paintNotes (g, product, y);
            y += (int) product.releaseNotes.size() * 62 + 52;
        }

        rule (y + 6);
    });
}

/** Where the buttons stand; the pictures are not compared there. */
std::vector<juce::Rectangle<int>> buttonAreas()
{
    return { { width - 40, 16, 24, 24 }, { 16, height - 124, width - 32, 108 } };
}

/** A pane whose details end at a y, and what can then be read of two notes. */
struct LowPane
{
    int bottom, firstLines;
    bool secondTitle;
    int secondLines;
};

const LowPane lowPanes[] {
    { 467, 3, true, 3 },    // everything, with the rule below
    { 466, 3, true, 3 },
    { 460, 3, true, 3 }, { 459, 3, true, 3 }, { 444, 3, true, 3 },
    { 443, 3, true, 2 }, { 432, 3, true, 2 },
    { 431, 3, true, 1 }, { 419, 3, true, 1 },
    { 418, 3, true, 0 }, { 405, 3, true, 0 },
    { 404, 3, false, 0 }, { 382, 3, false, 0 },
    { 381, 2, false, 0 }, { 370, 2, false, 0 },
    { 369, 1, false, 0 }, { 357, 1, false, 0 },
    { 356, 0, false, 0 }, { 343, 0, false, 0 }, { 319, 0, false, 0 }, { 300, 0, false, 0 },     // no panel either
};

/** What stands below the details of a product that is not installed. */
constexpr int buttonsHeight = 88;

ProductCardModel modelWithTwoNotes()
{
    auto model = someModel();
    model.product.releaseNotes = { { "Half-pedalling", "The sustain pedal has a hundred positions now, and each of the dampers follows "
                                                       "it in its own time, so that a note that is let go slowly dies slowly too." },
                                   { "Una corda", "The left pedal moves the hammers to two strings of three, and the softer felt between "
                                                  "the grooves is heard, with all the noises that a real action makes on its way." } };
    return model;
}

/** The notes in a low pane, by hand. The facts of the product end at 284. */
juce::Image lowPicture (const LowPane& low)
{
    return paintedOn (HubPalette::surface, width, low.bottom + 8, [&] (juce::Graphics& g)
    {
        const auto product = modelWithTwoNotes().product;
        g.setColour (HubPalette::border);
        g.fillRect (0, 0, 1, low.bottom);

        if (low.firstLines > 0)
        {
            const auto box = juce::Rectangle<int> (16, 294, width - 32, juce::jmin (460, low.bottom) - 294).toFloat();
            g.setColour (HubPalette::panel);
            g.fillRoundedRectangle (box, 5.0f);
            g.setColour (HubPalette::border);
            g.drawRoundedRectangle (box.reduced (0.5f), 5.0f, 1.0f);
            line (g, utf8 ("WHAT'S NEW  ·  VERSION ") + product.version, { 26, 303, width - 52, 16 }, bold (11.0f), HubPalette::accent);
        }

        const auto note = [&] (const ReleaseNote& text, int y, bool hasTitle, int lines)
        {
            if (hasTitle)
                line (g, text.title, { 30, y, width - 60, 15 }, bold (11.5f), HubPalette::textPrimary);

            g.setFont (plain (10.5f));
            g.setColour (HubPalette::textSecondary);

            if (lines > 0)
                g.drawFittedText (text.summary, { 30, y + 16, width - 60, juce::jmin (38, low.bottom - y - 16) },
                                  juce::Justification::topLeft, lines, 0.9f);
        };

        note (product.releaseNotes[0], 328, low.firstLines > 0, low.firstLines);
        note (product.releaseNotes[1], 390, low.secondTitle, low.secondLines);

        if (low.bottom >= 467)
        {
            g.setColour (HubPalette::border);
            g.fillRect (16, 466, width - 32, 1);
        }
    });
}

ProductCardModel withImage (ProductCardModel model)
{
    model.product.image = someImage();
    return model;
}
}

//==============================================================================
TEST (DetailPane, WithoutAProductItAsksForOne)
{
    Scene scene;
    const auto expected = paintedOn (HubPalette::surface, width, height, [] (juce::Graphics& g)
    {
        g.setColour (HubPalette::border);
        g.fillRect (0, 0, 1, height);
        line (g, "Select a product to see details.", { width, height }, plain (12.0f), HubPalette::textSecondary, juce::Justification::centred);
    });

    EXPECT_EQ (difference (pictureOf (scene.pane), expected, { buttonAreas().front() }), "");
    EXPECT_EQ (scene.pane.selectedProductId(), "");
    EXPECT_FALSE (scene.primary().isVisible());
    EXPECT_FALSE (scene.reinstall().isVisible());
    EXPECT_FALSE (scene.reveal().isVisible());
}

TEST (DetailPane, PaintsWhatIsKnownOfAProduct)
{
    auto model = withImage (someModel (State::updateAvailable));
    auto& product = model.product;
    product.description = "Every string of a concert grand, sampled in a hall by the river, with three microphones, two pedals and a "
                          "lid that opens. It fits on a small disk, and it plays on machines that are ten years old.";
    product.releaseDate = "2026-06-30";
    product.category = "Instruments";
    product.releaseNotes = { { "Half-pedalling", "The sustain pedal has a hundred positions now, and the dampers follow each of them." },
                             { "A title that is much too long for the one line of its own that it has here", "Short." } };

    Scene scene;
    scene.pane.setModel (model);
    EXPECT_EQ (difference (pictureOf (scene.pane),
                           picture (model, { "Version: 2.1", "Released: 2026-06-30", "Category: Instruments", "Size: 50 MB", "Installed: v1.9.3" }),
                           buttonAreas()), "");
    EXPECT_EQ (scene.pane.selectedProductId(), "grand-piano");
}

TEST (DetailPane, PaintsTheFactsOfASoundPack)
{
    auto model = withImage (someModel());
    auto& product = model.product;
    product.installType = Product::InstallType::factoryContent;
    product.credit = "The ZORVA makers";
    product.licenseId = "CC-BY-4.0";
    product.sourceUrl = "https://downloads.example/a/long/address/that/does/not/fit/into/one/line/of/the/pane";

    Scene scene;
    scene.pane.setModel (model);
    EXPECT_EQ (difference (pictureOf (scene.pane),
                           picture (model, { "Version: 2.1", "Size: 50 MB", "Credit: The ZORVA makers", "License: CC-BY-4.0",
                                             "Source: " + product.sourceUrl }), buttonAreas()), "");
}

TEST (DetailPane, ABareProductShowsOnlyItsVersion)
{
    auto model = withImage (someModel());
    model.product.platforms.clear();

    Scene scene;
    scene.pane.setModel (model);
    EXPECT_EQ (difference (pictureOf (scene.pane), picture (model, { "Version: 2.1" }), buttonAreas()), "");
}

TEST (DetailPane, WithoutAPictureItShowsTheLogo)
{
    const juce::SharedResourcePointer<SplashLogo> logo;
    Scene scene;
    scene.pane.setModel (someModel());

    auto withLogo = someModel();
    withLogo.product.image = paintedOn (HubPalette::panel, width - 56, 116, [&] (juce::Graphics& g)
    {
        logo->picture.draw (g, { 0, 0, width - 56, 116 });
    });
    EXPECT_EQ (difference (pictureOf (scene.pane), picture (withLogo, { "Version: 2.1", "Size: 50 MB" }), buttonAreas()), "");
}

TEST (DetailPane, WithoutPictureAndLogoTheWellStaysEmpty)
{
    const juce::SharedResourcePointer<SplashLogo> logo;
    logo->picture = {};
    Scene scene;
    scene.pane.setModel (someModel());

    EXPECT_EQ (difference (pictureOf (scene.pane), picture (someModel(), { "Version: 2.1", "Size: 50 MB" }), buttonAreas()), "");
}

TEST (DetailPane, AnotherProductReplacesAllTextsAtOnce)
{
    auto first = withImage (someModel (State::installed));
    first.product.description = "The first.";
    first.product.releaseNotes = { { "Title", "Summary" } };
    auto second = withImage (someModel (State::notInstalled, someProduct ("drums", "Drums")));

    Scene scene;
    scene.pane.setModel (first);
    pictureOf (scene.pane);
    scene.pane.setModel (second);

    EXPECT_EQ (difference (pictureOf (scene.pane), picture (second, { "Version: 2.1", "Size: 50 MB" }), buttonAreas()), "");
    EXPECT_EQ (scene.pane.selectedProductId(), "drums");
    EXPECT_FALSE (scene.reinstall().isVisible());
}

TEST (DetailPane, ItsModelIsACopy)
{
    auto model = withImage (someModel());
    Scene scene;
    scene.pane.setModel (model);
    const auto before = pictureOf (scene.pane);

    model.product.name = "Renamed";
    EXPECT_EQ (difference (pictureOf (scene.pane), before), "");
}

TEST (DetailPane, ClearingShowsNoProduct)
{
    Scene scene;
    const auto empty = pictureOf (scene.pane);
    scene.pane.setModel (someModel (State::installed));
    scene.pane.clear();

    EXPECT_EQ (difference (pictureOf (scene.pane), empty), "");
    EXPECT_EQ (scene.pane.selectedProductId(), "");
    EXPECT_FALSE (scene.primary().isVisible());
    EXPECT_FALSE (scene.reinstall().isVisible());
    EXPECT_FALSE (scene.reveal().isVisible());
}

TEST (DetailPane, ALowPaneKeepsItsButtonsFreeOfText)
{
    auto model = someModel (State::installed);
    model.product.description = "A piano.";

    for (int i = 0; i < 8; ++i)
        model.product.releaseNotes.push_back ({ "Title of a note", "The summary of a note, long enough for two lines of text in the pane." });

    Scene scene (454);
    scene.pane.setModel (model);
    const auto image = pictureOf (scene.pane);

    // Between and around the buttons there is nothing but the pane's own colour.
    const int primaryBottom = scene.primary().getBottom();
    EXPECT_EQ (pixelsOf (image, HubPalette::surface, { 16, primaryBottom + 1, width - 32, 6 }), (width - 32) * 6);
    EXPECT_EQ (pixelsOf (image, HubPalette::surface, { 100, scene.reveal().getY(), width - 116, 20 }), (width - 116) * 20);
}

TEST (DetailPane, ALowPaneShowsAllOfTheNotesThatCanBeRead)
{
    for (const auto& low : lowPanes)
    {
        SCOPED_TRACE (low.bottom);
        Scene scene (low.bottom + buttonsHeight);
        scene.pane.setModel (modelWithTwoNotes());

        // From above the panel down to the button, which begins 8 pixels below.
        const juce::Rectangle<int> area (0, 284, width, low.bottom + 8 - 284);
        EXPECT_EQ (difference (cut (pictureOf (scene.pane), area), cut (lowPicture (low), area)), "");
    }
}

//==============================================================================
TEST (DetailPane, TheCloseButtonIsACross)
{
    Scene scene;
    EXPECT_EQ (scene.close().getName(), "Close");
    EXPECT_EQ (scene.close().getTooltip(), "Close details");

    const auto cross = [] (juce::Colour ground, juce::Colour text)
    {
        return painted (24, 24, [&] (juce::Graphics& g)
        {
            g.setColour (ground);
            g.fillRoundedRectangle (0.0f, 0.0f, 24.0f, 24.0f, 3.0f);
            line (g, utf8 ("×"), { 24, 24 }, plain (16.0f), text, juce::Justification::centred);
        });
    };

    EXPECT_EQ (difference (pictureOf (scene.close()), cross (juce::Colours::transparentBlack, HubPalette::textSecondary)), "");

    scene.window->moveTo (scene.close());
    EXPECT_EQ (difference (pictureOf (scene.close()), cross (HubPalette::raised, HubPalette::textPrimary)), "");

    scene.window->mouse (scene.close().getBounds().getCentre().toFloat(), juce::ModifierKeys::leftButtonModifier);
    EXPECT_EQ (difference (pictureOf (scene.close()), cross (HubPalette::panel, HubPalette::textPrimary)), "");
    scene.window->mouse (scene.close().getBounds().getCentre().toFloat(), 0);
    pump();
}

TEST (DetailPane, TheRevealLinkIsUnderlinedUnderTheMouse)
{
    Scene scene;
    scene.pane.setModel (someModel());
    EXPECT_EQ (scene.reveal().getButtonText(), "Show in Explorer");

    const auto link = [] (bool underlined)
    {
        return painted (288, 20, [&] (juce::Graphics& g)
        {
            line (g, "Show in Explorer", { 288, 20 }, plain (11.0f), HubPalette::accent);

            if (underlined)
                g.fillRect (0, 17, widthOf (plain (11.0f), "Show in Explorer"), 1);
        });
    };

    EXPECT_EQ (difference (pictureOf (scene.reveal()), link (false)), "");
    scene.window->moveTo (scene.reveal());
    EXPECT_EQ (difference (pictureOf (scene.reveal()), link (true)), "");
}
