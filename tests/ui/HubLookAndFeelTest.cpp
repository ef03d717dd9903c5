#include "Painting.h"
#include "support/GuiHarness.h"
#include "ui/HubPalette.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
const auto someFill = juce::Colour (0xff6030a0);

/** A grey of a brightness in steps of 1/255. */
juce::Colour grey (juce::uint8 level)    { return { level, level, level }; }

/** Half-pixel inset, never below nothing. */
juce::Rectangle<float> shapeOf (int width, int height)
{
    return { 0.5f, 0.5f, (float) std::max (width - 1, 0), (float) std::max (height - 1, 0) };
}

void outline (juce::Graphics& g, int width, int height)
{
    g.setColour (HubPalette::border);
    g.drawRoundedRectangle (shapeOf (width, height), 3.0f, 1.0f);
}

/** What the look draws for an enabled or disabled button. */
juce::Image background (juce::Colour fill, bool highlighted, bool down, bool enabled = true, int width = 120, int height = 36)
{
    HubLookAndFeel look;
    juce::TextButton button;
    button.setSize (width, height);
    button.setEnabled (enabled);

    return painted (width, height, [&] (juce::Graphics& g) { look.drawButtonBackground (g, button, fill, highlighted, down); });
}

juce::Image filled (juce::Colour fill, bool outlined = false)
{
    return painted (120, 36, [&] (juce::Graphics& g)
    {
        g.setColour (fill);
        g.fillRoundedRectangle (shapeOf (120, 36), 3.0f);

        if (outlined)
            outline (g, 120, 36);
    });
}
}

//==============================================================================
TEST (HubPalette, HasTheTwelveColours)
{
    using namespace HubPalette;
    struct Row
    {
        juce::Colour colour;
        juce::uint32 argb;
    };

    for (const auto& row : { Row { windowBackground, 0xff434343 }, { surface, 0xff444444 }, { raised, 0xff4a4a4a }, { panel, 0xff393939 },
                             { inverseText, 0xff141414 }, { border, 0xff3e3e3e }, { accent, 0xff00d4ff }, { action, 0xfff97316 },
                             { textPrimary, 0xfff5f5f5 }, { textSecondary, 0xff888888 }, { success, 0xff4caf50 }, { warning, 0xffff9800 } })
        EXPECT_EQ (hex (row.colour), hex (juce::Colour (row.argb)));

    EXPECT_EQ (hex (actionBright), hex (juce::Colour (0xfff97316).brighter (0.4f)));
}

TEST (HubLookAndFeel, RegistersItsWholeTableOfColours)
{
    struct Row
    {
        int id;
        juce::Colour expected;
    };

    const HubLookAndFeel look;
    using namespace HubPalette;
    const Row rows[] {
        { juce::ResizableWindow::backgroundColourId, windowBackground },
        { juce::DocumentWindow::textColourId, textPrimary },
        { juce::TextButton::buttonColourId, raised },
        { juce::TextButton::buttonOnColourId, accent },
        { juce::TextButton::textColourOffId, textPrimary },
        { juce::TextButton::textColourOnId, inverseText },
        { juce::Label::textColourId, textPrimary },
        { juce::TextEditor::backgroundColourId, panel },
        { juce::TextEditor::textColourId, textPrimary },
        { juce::TextEditor::highlightColourId, accent.withAlpha (0.35f) },
        { juce::TextEditor::highlightedTextColourId, textPrimary },
        { juce::TextEditor::outlineColourId, border },
        { juce::TextEditor::focusedOutlineColourId, accent },
        { juce::CaretComponent::caretColourId, accent },
        { juce::ScrollBar::thumbColourId, textSecondary.withAlpha (0.55f) },
        { juce::PopupMenu::backgroundColourId, panel },
        { juce::PopupMenu::textColourId, textPrimary },
        { juce::PopupMenu::highlightedBackgroundColourId, raised },
        { juce::PopupMenu::highlightedTextColourId, textPrimary },
        { juce::ToggleButton::textColourId, textPrimary },
        { juce::ToggleButton::tickColourId, accent },
        { juce::ToggleButton::tickDisabledColourId, textSecondary },
        { juce::HyperlinkButton::textColourId, accent },
        { juce::TooltipWindow::backgroundColourId, inverseText },
        { juce::TooltipWindow::textColourId, textPrimary },
        { juce::TooltipWindow::outlineColourId, border },
        { juce::ProgressBar::backgroundColourId, raised },
        { juce::ProgressBar::foregroundColourId, action },
        { juce::ComboBox::backgroundColourId, panel },
        { juce::ComboBox::textColourId, textPrimary },
        { juce::ComboBox::outlineColourId, border },
        { juce::ComboBox::arrowColourId, textSecondary },
    };

    EXPECT_EQ (std::size (rows), 32u);

    for (const auto& row : rows)
    {
        EXPECT_TRUE (look.isColourSpecified (row.id)) << std::hex << row.id;
        EXPECT_EQ (hex (look.findColour (row.id)), hex (row.expected)) << std::hex << row.id;
    }
}

//==============================================================================
TEST (HubLookAndFeel, AnEnabledButtonIsFilled)
{
    EXPECT_EQ (difference (background (someFill, false, false), filled (someFill)), "");
    EXPECT_EQ (difference (background (someFill, true, false), filled (someFill.brighter (0.1f))), "");
    EXPECT_EQ (difference (background (someFill, false, true), filled (someFill.darker (0.25f))), "");
}

TEST (HubLookAndFeel, DownWinsOverHighlighted)
{
    EXPECT_EQ (difference (background (someFill, true, true), filled (someFill.darker (0.25f))), "");
}

TEST (HubLookAndFeel, ADisabledButtonIsOnlyAFrame)
{
    const auto frame = painted (120, 36, [] (juce::Graphics& g) { outline (g, 120, 36); });

    for (const auto fill : { HubPalette::action, HubPalette::raised, juce::Colours::black })
        for (const bool highlighted : { false, true })
            for (const bool down : { false, true })
                EXPECT_EQ (difference (background (fill, highlighted, down, false), frame), "");
}

TEST (HubLookAndFeel, AVeryDarkButtonHasAnOutline)
{
    EXPECT_LT (grey (38).getBrightness(), 0.15f);
    EXPECT_GE (grey (39).getBrightness(), 0.15f);

    EXPECT_EQ (difference (background (grey (38), false, false), filled (grey (38), true)), "") << "just below 0.15";
    EXPECT_EQ (difference (background (grey (39), false, false), filled (grey (39), false)), "") << "just above 0.15";
    EXPECT_EQ (difference (background (juce::Colours::black, false, false), filled (juce::Colours::black, true)), "");
}

TEST (HubLookAndFeel, TheGivenColourDecidesAboutTheOutlineNotTheShadedOne)
{
    ASSERT_LT (grey (40).darker (0.25f).getBrightness(), 0.15f);
    EXPECT_EQ (difference (background (grey (40), false, true), filled (grey (40).darker (0.25f), false)), "");

    ASSERT_GE (grey (38).brighter (0.1f).getBrightness(), 0.15f);
    EXPECT_EQ (difference (background (grey (38), true, false), filled (grey (38).brighter (0.1f), true)), "");
}

TEST (HubLookAndFeel, AButtonWithoutAnAreaDrawsNothing)
{
    for (const bool enabled : { false, true })
    {
        HubLookAndFeel look;
        juce::TextButton button;
        button.setEnabled (enabled);
        const auto image = painted (20, 20, [&] (juce::Graphics& g) { look.drawButtonBackground (g, button, someFill, false, false); });
        EXPECT_EQ (pixelsOf (image, someFill, image.getBounds()), 0);
    }
}

TEST (HubLookAndFeel, EveryTextButtonHasTheSameBoldCaption)
{
    HubLookAndFeel look;
    juce::TextButton button;

    for (const int height : { 1, 20, 36, 100 })
    {
        const auto font = look.getTextButtonFont (button, height);
        EXPECT_EQ (font.getHeight(), 12.0f) << height;
        EXPECT_EQ (font.getTypefaceStyle(), "Bold") << height;
    }
}

//==============================================================================
namespace
{
/** What the look draws for a label, and what it should. */
struct LabelScene
{
    explicit LabelScene (const juce::String& text, int width = 160, int height = 30)
    {
        label.setText (text, juce::dontSendNotification);
        label.setFont (plain (14.0f));
        label.setSize (width, height);
    }

    juce::Image actual()
    {
        return painted (label.getWidth(), label.getHeight(), [this] (juce::Graphics& g) { look.lookAndFeel.drawLabel (g, label); });
    }

    juce::Image expected (int lines, juce::Colour text, juce::Colour ground = juce::Colours::transparentBlack,
                          juce::Colour outlineColour = juce::Colours::transparentBlack)
    {
        return paintedOn (ground, label.getWidth(), label.getHeight(), [&] (juce::Graphics& g)
        {
            g.setColour (text);
            g.setFont (plain (14.0f));

            if (lines > 0)
                g.drawFittedText (label.getText(), label.getBorderSize().subtractedFrom (label.getLocalBounds()),
                                  label.getJustificationType(), lines, label.getMinimumHorizontalScale());

            g.setColour (outlineColour);
            g.drawRect (label.getLocalBounds(), 1);
        });
    }

    HubLook look;
    juce::Label label;
};
}

TEST (HubLookAndFeel, ALabelIsDrawnWithItsColours)
{
    LabelScene scene ("Grand Piano");
    EXPECT_EQ (difference (scene.actual(), scene.expected (1, HubPalette::textPrimary)), "");

    scene.label.setColour (juce::Label::textColourId, HubPalette::accent);
    scene.label.setColour (juce::Label::backgroundColourId, HubPalette::panel);
    scene.label.setColour (juce::Label::outlineColourId, HubPalette::border);
    EXPECT_EQ (difference (scene.actual(), scene.expected (1, HubPalette::accent, HubPalette::panel, HubPalette::border)), "");
}

TEST (HubLookAndFeel, ALabelFollowsJustificationAndBorder)
{
    LabelScene scene ("Grand Piano");
    scene.label.setJustificationType (juce::Justification::bottomRight);
    scene.label.setBorderSize ({ 2, 3, 4, 9 });

    EXPECT_EQ (difference (scene.actual(), scene.expected (1, HubPalette::textPrimary)), "");
}

TEST (HubLookAndFeel, ADisabledLabelHasHalfTheStrength)
{
    LabelScene scene ("Grand Piano");
    scene.label.setEnabled (false);

    EXPECT_EQ (difference (scene.actual(), scene.expected (1, HubPalette::textPrimary.withMultipliedAlpha (0.5f))), "");
}

TEST (HubLookAndFeel, ALabelHasAsManyLinesAsFit)
{
    struct Case
    {
        int height, lines;
    };

    // One pixel of border above and below, 14 a line, rounded down, at least one.
    for (const auto& c : { Case { 8, 1 }, { 15, 1 }, { 16, 1 }, { 29, 1 }, { 30, 2 }, { 43, 2 }, { 44, 3 }, { 58, 4 } })
    {
        LabelScene scene ("A label of many words that need more than one line to be read", 120, c.height);
        EXPECT_EQ (difference (scene.actual(), scene.expected (c.lines, HubPalette::textPrimary)), "") << c.height;
    }
}

TEST (HubLookAndFeel, ALabelLowerThanALineStillDrawsOne)
{
    LabelScene scene ("HHHHHHHHHHHH", 160, 8);

    EXPECT_GT (pixelsOf (scene.actual(), HubPalette::textPrimary, { 0, 0, 160, 8 }), 0);
}

TEST (HubLookAndFeel, ALabelThatIsEditedKeepsItsOutlineButNotItsText)
{
    LabelScene scene ("Grand Piano");
    scene.label.setColour (juce::Label::outlineColourId, HubPalette::border);
    HeadlessWindow window (scene.label);
    scene.label.showEditor();
    ASSERT_TRUE (scene.label.isBeingEdited());

    EXPECT_EQ (difference (scene.actual(), scene.expected (0, HubPalette::textPrimary, juce::Colours::transparentBlack,
                                                           scene.label.findColour (juce::Label::outlineColourId))), "");
    scene.label.hideEditor (true);
}

//==============================================================================
namespace
{
juce::Image thumb (bool vertical, bool over, bool down, int x = 4, int y = 2, int width = 9, int height = 60, int start = 20, int size = 25)
{
    HubLookAndFeel look;
    juce::ScrollBar bar (vertical);
    return painted (80, 80, [&] (juce::Graphics& g) { look.drawScrollbar (g, bar, x, y, width, height, vertical, start, size, over, down); });
}

juce::Image pill (juce::Rectangle<float> bounds, float alpha)
{
    return painted (80, 80, [&] (juce::Graphics& g)
    {
        g.setColour (HubPalette::textSecondary.withAlpha (alpha));
        g.fillRoundedRectangle (bounds, std::min (bounds.getWidth(), bounds.getHeight()) / 2.0f);
    });
}
}

TEST (HubLookAndFeel, AScrollBarIsOnlyItsThumb)
{
    EXPECT_EQ (difference (thumb (true, false, false), pill ({ 6.0f, 20.0f, 4.0f, 25.0f }, 0.45f)), "");
    EXPECT_EQ (difference (thumb (false, false, false, 4, 2, 60, 9), pill ({ 20.0f, 4.0f, 25.0f, 4.0f }, 0.45f)), "");
}

TEST (HubLookAndFeel, TheLibrarysThumbIsHalfOfItsBar)
{
    EXPECT_EQ (difference (thumb (true, false, false, 0, 0, 6, 80, 10, 30), pill ({ 1.0f, 10.0f, 3.0f, 30.0f }, 0.45f)), "");
}

TEST (HubLookAndFeel, TheThumbIsStrongerUnderTheMouse)
{
    EXPECT_EQ (difference (thumb (true, true, false), pill ({ 6.0f, 20.0f, 4.0f, 25.0f }, 0.7f)), "");
    EXPECT_EQ (difference (thumb (true, false, true), pill ({ 6.0f, 20.0f, 4.0f, 25.0f }, 0.85f)), "");
    EXPECT_EQ (difference (thumb (true, true, true), pill ({ 6.0f, 20.0f, 4.0f, 25.0f }, 0.85f)), "");
}

TEST (HubLookAndFeel, AShortThumbIsRoundedByItsShorterSide)
{
    EXPECT_EQ (difference (thumb (true, false, false, 0, 0, 40, 60, 20, 6), pill ({ 10.0f, 20.0f, 20.0f, 6.0f }, 0.45f)), "");
}

TEST (HubLookAndFeel, AScrollBarThatNeedsNoThumbDrawsNothing)
{
    EXPECT_EQ (difference (thumb (true, false, false, 0, 0, 6, 60, 0, 0), painted (80, 80, [] (juce::Graphics&) {})), "");
}

//==============================================================================
TEST (HubLookAndFeel, APopupMenuIsAPanelWithABorder)
{
    HubLookAndFeel look;
    const auto actual = painted (120, 90, [&] (juce::Graphics& g) { look.drawPopupMenuBackground (g, 120, 90); });
    const auto expected = paintedOn (HubPalette::panel, 120, 90, [] (juce::Graphics& g)
    {
        g.setColour (HubPalette::border);
        g.drawRect (0, 0, 120, 90, 1);
    });

    EXPECT_EQ (difference (actual, expected), "");
}

TEST (HubLookAndFeel, ATextEditorsOutlineShowsFocusAndWhetherItIsEnabled)
{
    HubLook look;
    juce::TextEditor editor;
    editor.setSize (120, 30);
    HeadlessWindow window (editor);

    const auto outlineOf = [&]
    {
        return painted (120, 30, [&] (juce::Graphics& g) { look.lookAndFeel.drawTextEditorOutline (g, 120, 30, editor); });
    };
    const auto rectangle = [] (juce::Colour colour)
    {
        return painted (120, 30, [&] (juce::Graphics& g)
        {
            g.setColour (colour);
            g.drawRect (0, 0, 120, 30, 1);
        });
    };

    for (const bool readOnly : { false, true })
    {
        editor.setReadOnly (readOnly);
        juce::Component::unfocusAllComponents();
        EXPECT_EQ (difference (outlineOf(), rectangle (HubPalette::border)), "");

        editor.grabKeyboardFocus();
        ASSERT_TRUE (editor.hasKeyboardFocus (true));
        EXPECT_EQ (difference (outlineOf(), rectangle (HubPalette::accent)), "");
    }

    editor.setEnabled (false);
    EXPECT_EQ (difference (outlineOf(), rectangle (HubPalette::border.withAlpha (0.6f))), "");
}
