#include "ui/HubLookAndFeel.h"

#include "ui/HubPalette.h"
#include "ui/TextPainting.h"

namespace
{
constexpr float buttonRadius = 3.0f;
constexpr float darkFillLimit = 0.15f;   ///< a fill less bright than this would be lost on a dark page
}

HubLookAndFeel::HubLookAndFeel()
{
    using namespace HubPalette;

    setColour (juce::ResizableWindow::backgroundColourId, windowBackground);
    setColour (juce::DocumentWindow::textColourId, textPrimary);

    setColour (juce::TextButton::buttonColourId, raised);
    setColour (juce::TextButton::buttonOnColourId, accent);
    setColour (juce::TextButton::textColourOffId, textPrimary);
    setColour (juce::TextButton::textColourOnId, inverseText);

    setColour (juce::Label::textColourId, textPrimary);

    setColour (juce::TextEditor::backgroundColourId, panel);
    setColour (juce::TextEditor::textColourId, textPrimary);
    setColour (juce::TextEditor::highlightColourId, accent.withAlpha (0.35f));
    setColour (juce::TextEditor::highlightedTextColourId, textPrimary);
    setColour (juce::TextEditor::outlineColourId, border);
    setColour (juce::TextEditor::focusedOutlineColourId, accent);
    setColour (juce::CaretComponent::caretColourId, accent);

    setColour (juce::ScrollBar::thumbColourId, textSecondary.withAlpha (0.55f));

    setColour (juce::PopupMenu::backgroundColourId, panel);
    setColour (juce::PopupMenu::textColourId, textPrimary);
    setColour (juce::PopupMenu::highlightedBackgroundColourId, raised);
    setColour (juce::PopupMenu::highlightedTextColourId, textPrimary);

    setColour (juce::ToggleButton::textColourId, textPrimary);
    setColour (juce::ToggleButton::tickColourId, accent);
    setColour (juce::ToggleButton::tickDisabledColourId, textSecondary);

    setColour (juce::HyperlinkButton::textColourId, accent);

    setColour (juce::TooltipWindow::backgroundColourId, inverseText);
    setColour (juce::TooltipWindow::textColourId, textPrimary);
    setColour (juce::TooltipWindow::outlineColourId, border);

    setColour (juce::ProgressBar::backgroundColourId, raised);
    setColour (juce::ProgressBar::foregroundColourId, action);

    setColour (juce::ComboBox::backgroundColourId, panel);
    setColour (juce::ComboBox::textColourId, textPrimary);
    setColour (juce::ComboBox::outlineColourId, border);
    setColour (juce::ComboBox::arrowColourId, textSecondary);
}

void HubLookAndFeel::drawScrollbar (juce::Graphics& g, juce::ScrollBar&, int x, int y, int width, int height, bool isVertical,
                                    int thumbStart, int thumbSize, bool isMouseOver, bool isMouseDown)
{
    const auto thumb = isVertical ? juce::Rectangle<int> (x + width / 4, thumbStart, width / 2, thumbSize)
                                  : juce::Rectangle<int> (thumbStart, y + height / 4, thumbSize, height / 2);
    const auto alpha = isMouseDown ? 0.85f : (isMouseOver ? 0.7f : 0.45f);

    g.setColour (HubPalette::textSecondary.withAlpha (alpha));
    g.fillRoundedRectangle (thumb.toFloat(), (float) juce::jmin (thumb.getWidth(), thumb.getHeight()) * 0.5f);
}

void HubLookAndFeel::drawButtonBackground (juce::Graphics& g, juce::Button& button, const juce::Colour& backgroundColour,
                                           bool isHighlighted, bool isDown)
{
    const auto shape = button.getLocalBounds().toFloat().reduced (0.5f);

    const auto drawOutline = [&]
    {
        g.setColour (HubPalette::border);
        g.drawRoundedRectangle (shape, buttonRadius, 1.0f);
    };

    if (! button.isEnabled())
        return drawOutline();

    g.setColour (isDown ? backgroundColour.darker (0.25f) : (isHighlighted ? backgroundColour.brighter (0.1f) : backgroundColour));
    g.fillRoundedRectangle (shape, buttonRadius);

    if (backgroundColour.getBrightness() < darkFillLimit)
        drawOutline();
}

juce::Font HubLookAndFeel::getTextButtonFont (juce::TextButton&, int) { return boldFont (12.0f); }

void HubLookAndFeel::drawTextEditorOutline (juce::Graphics& g, int width, int height, juce::TextEditor& editor)
{
    if (! editor.isEnabled())
        g.setColour (HubPalette::border.withAlpha (0.6f));
    else
        g.setColour (editor.hasKeyboardFocus (true) ? HubPalette::accent : HubPalette::border);

    g.drawRect (0, 0, width, height, 1);
}

void HubLookAndFeel::drawPopupMenuBackground (juce::Graphics& g, int width, int height)
{
    g.fillAll (HubPalette::panel);
    g.setColour (HubPalette::border);
    g.drawRect (0, 0, width, height, 1);
}

void HubLookAndFeel::drawLabel (juce::Graphics& g, juce::Label& label)
{
    g.fillAll (label.findColour (juce::Label::backgroundColourId));

    if (! label.isBeingEdited())
    {
        const auto font = getLabelFont (label);
        const auto area = getLabelBorderSize (label).subtractedFrom (label.getLocalBounds());
        const auto lines = juce::jmax (1, (int) ((float) area.getHeight() / font.getHeight()));

        g.setColour (label.findColour (juce::Label::textColourId).withMultipliedAlpha (label.isEnabled() ? 1.0f : 0.5f));
        g.setFont (font);
        g.drawFittedText (label.getText(), area, label.getJustificationType(), lines, label.getMinimumHorizontalScale());
    }

    if (const auto outline = label.findColour (juce::Label::outlineColourId); ! outline.isTransparent())
    {
        g.setColour (outline);
        g.drawRect (label.getLocalBounds(), 1);
    }
}
