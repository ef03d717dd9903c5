#include "Painting.h"
#include "support/GuiHarness.h"
#include "support/Text.h"
#include "ui/HubPalette.h"
#include "ui/StatusBar.h"

#include <gtest/gtest.h>
#include <optional>

using namespace zorva::test;

namespace
{
constexpr int width = 1100, height = 40;

/** What the bar is to show, in the words that stand on it. */
struct Shown
{
    juce::String path;
    juce::String free = "Free: 0 B";
    juce::Colour freeColour = HubPalette::textSecondary;
    std::optional<double> progress {};
    juce::String percentage {}, download {}, message {};
    bool underlined = false;
};

juce::Rectangle<int> linkOf (const juce::String& shownPath, int barWidth = width)
{
    const int half = (barWidth - 24) / 2;
    const int prefix = std::min (half, widthOf (plain (11.0f), "Vault: "));
    return { 12 + prefix, 0, std::min (half - prefix, widthOf (plain (11.0f), shownPath)), height };
}

juce::Image picture (const Shown& s, int barWidth = width)
{
    return paintedOn (HubPalette::panel, barWidth, height, [&] (juce::Graphics& g)
    {
        const juce::Rectangle<int> row (12, 0, barWidth - 24, height);
        const auto link = linkOf (s.path, barWidth);
        const auto x = (float) barWidth;

        g.setColour (HubPalette::border);
        g.fillRect (0, 0, barWidth, 1);
        line (g, "Vault: ", row.withRight (link.getX()), plain (11.0f), HubPalette::textSecondary, juce::Justification::centredLeft, false);
        line (g, s.path, link, plain (11.0f), HubPalette::accent);

        if (s.underlined)
            g.fillRect (link.getX(), 28, link.getWidth(), 1);

        line (g, s.free, row, plain (11.0f), s.freeColour, juce::Justification::centred);

        if (s.progress.has_value())
        {
            g.setColour (HubPalette::raised);
            g.fillRoundedRectangle (x - 162.0f, 15.0f, 150.0f, 4.0f, 2.0f);
            g.setColour (HubPalette::action);
            g.fillRoundedRectangle (x - 162.0f, 15.0f, (float) (*s.progress * 150.0), 4.0f, 2.0f);
            line (g, s.percentage, { barWidth - 162, 2, 150, 12 }, plain (10.0f), HubPalette::textPrimary, juce::Justification::centred, false);
            line (g, s.download, { barWidth - 282, 22, 270, 14 }, plain (10.0f), HubPalette::textSecondary, juce::Justification::centredRight);
        }
        else if (s.message.isNotEmpty())
        {
            line (g, s.message, row, plain (11.0f), HubPalette::textSecondary, juce::Justification::centredRight);
        }
    });
}

/** A bar in a window. */
struct Scene
{
    explicit Scene (const juce::String& path = "/home/creator/Vault")
    {
        bar.setSize (width, height);
        bar.setVaultPath (path);
        bar.onVaultClicked = [this] { ++opened; };
        juce::Component::unfocusAllComponents();
    }

    void clickAt (juce::Point<int> place)
    {
        window.mouse (place.toFloat(), 0);
        window.mouse (place.toFloat(), juce::ModifierKeys::leftButtonModifier);
        window.mouse (place.toFloat(), 0);
        pump();
    }

    std::string differenceTo (const Shown& shown)    { return difference (pictureOf (bar), picture (shown, bar.getWidth())); }

    HubLook look;
    StatusBar bar;
    HeadlessWindow window { sized (bar) };
    int opened = 0;

private:
    static StatusBar& sized (StatusBar& bar)
    {
        bar.setSize (width, height);
        return bar;
    }
};
}

//==============================================================================
TEST (StatusBar, StartsWithAnEmptyPathAndNoFreeSpace)
{
    StatusBar bar;
    bar.setSize (width, height);

    EXPECT_EQ (difference (pictureOf (bar), picture ({})), "");
}

TEST (StatusBar, ShowsPathFreeSpaceAndMessage)
{
    Scene scene;
    scene.bar.setFreeBytes (137438953472);
    scene.bar.setStatusMessage (utf8 ("Installing Grand Piano…"));

    EXPECT_EQ (scene.differenceTo ({ .path = "/home/creator/Vault", .free = "Free: 128.0 GB", .message = utf8 ("Installing Grand Piano…") }), "");

    scene.bar.clearStatusMessage();
    EXPECT_EQ (scene.differenceTo ({ .path = "/home/creator/Vault", .free = "Free: 128.0 GB" }), "");
}

TEST (StatusBar, APathOf50CharactersIsShownWhole)
{
    const auto fifty = "/" + juce::String::repeatedString ("a", 49);
    Scene scene (fifty);

    EXPECT_EQ (scene.differenceTo ({ .path = fifty }), "");
}

TEST (StatusBar, APathOf51CharactersIsShownByItsEnd)
{
    const auto path = "/x" + juce::String::repeatedString ("a", 49);
    Scene scene (path);

    EXPECT_EQ (scene.differenceTo ({ .path = utf8 ("…") + juce::String::repeatedString ("a", 49) }), "");
    EXPECT_EQ (scene.bar.getTooltip(), "Vault: " + path) << "the tooltip keeps the whole path";
}

TEST (StatusBar, CharactersOutsideAsciiCountAsOne)
{
    const auto fifty = juce::String::repeatedString (utf8 ("ü"), 50);
    Scene scene (fifty);
    EXPECT_EQ (scene.differenceTo ({ .path = fifty }), "");

    scene.bar.setVaultPath ("x" + fifty);
    EXPECT_EQ (scene.differenceTo ({ .path = utf8 ("…") + fifty.substring (1) }), "");
}

TEST (StatusBar, ALongPathStaysInTheLeftHalf)
{
    const auto path = juce::String::repeatedString ("W", 50);
    Scene scene (path);
    scene.bar.setSize (400, height);

    EXPECT_EQ (linkOf (path, 400).getRight(), 200);
    EXPECT_EQ (scene.differenceTo ({ .path = path }), "");
}

TEST (StatusBar, FreeSpaceBelowFiveGigabytesIsAWarning)
{
    struct Case
    {
        juce::int64 bytes;
        const char* text;
        bool warns;
    };

    Scene scene;

    for (const auto& c : { Case { -1, "Free: 0 B", false },
                           { std::numeric_limits<juce::int64>::min(), "Free: 0 B", false },
                           { 0, "Free: 0 B", false },
                           { 1, "Free: 1 B", true },
                           { 1048576, "Free: 1 MB", true },
                           { 5368709119, "Free: 5.0 GB", true },
                           { 5368709120, "Free: 5.0 GB", false },
                           { 1099511627776, "Free: 1024.0 GB", false } })
    {
        scene.bar.setFreeBytes (c.bytes);
        EXPECT_EQ (scene.differenceTo ({ .path = "/home/creator/Vault", .free = c.text,
                                         .freeColour = c.warns ? HubPalette::warning : HubPalette::textSecondary }), "") << c.bytes;
    }
}

//==============================================================================
TEST (StatusBar, ShowsADownloadWithItsBarAndName)
{
    struct Case
    {
        double given, shown;
        const char* percentage;
    };

    Scene scene;

    for (const auto& c : { Case { 0.0, 0.0, "0%" }, { 0.424, 0.424, "42%" }, { 1.0, 1.0, "100%" }, { 1.7, 1.0, "100%" }, { -0.5, 0.0, "0%" } })
    {
        scene.bar.setDownloadProgress (c.given, "Grand Piano");
        EXPECT_EQ (scene.differenceTo ({ .path = "/home/creator/Vault", .progress = c.shown, .percentage = c.percentage,
                                         .download = utf8 ("Downloading Grand Piano…") }), "") << c.given;
    }
}

TEST (StatusBar, AFractionAboveOneShowsAFullBar)
{
    Scene scene;
    scene.bar.setDownloadProgress (1.7, "Grand Piano");
    const auto image = pictureOf (scene.bar);

    EXPECT_EQ (pixel (image, width - 160, 17), hex (HubPalette::action));
    EXPECT_EQ (pixel (image, width - 15, 17), hex (HubPalette::action));
    EXPECT_EQ (pixel (image, width - 11, 17), hex (HubPalette::panel)) << "not beyond its track";
}

TEST (StatusBar, TheMessageComesBackWhenTheDownloadIsOver)
{
    Scene scene;
    scene.bar.setStatusMessage ("Recovery attention required");
    scene.bar.setDownloadProgress (0.5, "Grand Piano");
    EXPECT_EQ (scene.differenceTo ({ .path = "/home/creator/Vault", .progress = 0.5, .percentage = "50%",
                                     .download = utf8 ("Downloading Grand Piano…") }), "");

    scene.bar.clearDownloadProgress();
    EXPECT_EQ (scene.differenceTo ({ .path = "/home/creator/Vault", .message = "Recovery attention required" }), "");
}

TEST (StatusBar, EveryValueIsRepainted)
{
    StatusBar bar;
    bar.setSize (width, height);
    bar.setVisible (true);
    const RepaintWatch repaints (bar);
    int expected = 0;

    for (const auto& change : std::vector<std::function<void()>> { [&] { bar.setVaultPath ("/x"); }, [&] { bar.setFreeBytes (5); },
                                                                   [&] { bar.setDownloadProgress (0.5, "A"); }, [&] { bar.clearDownloadProgress(); },
                                                                   [&] { bar.setStatusMessage ("B"); }, [&] { bar.clearStatusMessage(); } })
    {
        change();
        EXPECT_GT (repaints.count(), expected);
        expected = repaints.count();
    }
}

//==============================================================================
TEST (StatusBar, TheLinkOpensTheVault)
{
    Scene scene;
    pictureOf (scene.bar);
    const auto link = linkOf ("/home/creator/Vault");

    scene.clickAt (link.getCentre());
    EXPECT_EQ (scene.opened, 1);

    for (const auto beside : { link.getCentre().withX (link.getX() - 2), link.getCentre().withX (link.getRight() + 2), juce::Point<int> (600, 20) })
        scene.clickAt (beside);

    EXPECT_EQ (scene.opened, 1) << "only the link itself";
}

TEST (StatusBar, ClicksBeforeTheFirstPaintDoNothing)
{
    Scene scene;
    scene.clickAt (linkOf ("/home/creator/Vault").getCentre());
    scene.clickAt ({ 0, 0 });

    EXPECT_EQ (scene.opened, 0);
}

TEST (StatusBar, AClickWithoutACallbackDoesNothing)
{
    Scene scene;
    scene.bar.onVaultClicked = nullptr;
    pictureOf (scene.bar);

    scene.clickAt (linkOf ("/home/creator/Vault").getCentre());
    EXPECT_EQ (scene.opened, 0);
}

TEST (StatusBar, TheLinkIsUnderlinedWhileTheMouseIsOverIt)
{
    Scene scene;
    pictureOf (scene.bar);
    const auto link = linkOf ("/home/creator/Vault").getCentre().toFloat();

    scene.window.mouse (link, 0);
    EXPECT_EQ (scene.bar.getMouseCursor(), juce::MouseCursor::PointingHandCursor);
    EXPECT_EQ (scene.differenceTo ({ .path = "/home/creator/Vault", .underlined = true }), "");

    scene.window.mouse ({ 600.0f, 20.0f }, 0);
    EXPECT_EQ (scene.bar.getMouseCursor(), juce::MouseCursor::NormalCursor);
    EXPECT_EQ (scene.differenceTo ({ .path = "/home/creator/Vault" }), "");
}

TEST (StatusBar, LeavingTheBarEndsTheUnderline)
{
    Scene scene;
    pictureOf (scene.bar);
    scene.window.setSize (width, 200);
    scene.window.mouse (linkOf ("/home/creator/Vault").getCentre().toFloat(), 0);
    ASSERT_EQ (scene.bar.getMouseCursor(), juce::MouseCursor::PointingHandCursor);

    scene.window.mouse ({ 500.0f, 150.0f }, 0);
    EXPECT_EQ (scene.bar.getMouseCursor(), juce::MouseCursor::NormalCursor);
    EXPECT_EQ (scene.differenceTo ({ .path = "/home/creator/Vault" }), "");
}

TEST (StatusBar, ReturnAndSpaceOpenTheVault)
{
    Scene scene;
    pictureOf (scene.bar);
    scene.window.grabKeyboardFocus();
    ASSERT_TRUE (scene.bar.hasKeyboardFocus (false));

    scene.window.key (juce::KeyPress::returnKey);
    EXPECT_EQ (scene.opened, 1);
    scene.window.key (juce::KeyPress::spaceKey);
    EXPECT_EQ (scene.opened, 2);
    EXPECT_FALSE (scene.window.key (juce::KeyPress ('x', {}, 'x')));
    EXPECT_EQ (scene.opened, 2);
}
