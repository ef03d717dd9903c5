#include "ui/StatusBar.h"

#include "support/Text.h"
#include "ui/ConnectionPill.h"
#include "ui/FocusRing.h"
#include "ui/HubPalette.h"
#include "ui/ProductActions.h"
#include "ui/SizeText.h"
#include "ui/TextPainting.h"

namespace
{
constexpr juce::int64 lowFreeSpace = 5368709120;   ///< below this the free space is shown as a warning: 5 GiB
constexpr int longestPath = 50;

/** The end of a long path says more than its beginning. */
juce::String shortened (const juce::String& path)
{
    return path.length() <= longestPath ? path : utf8 ("…") + path.getLastCharacters (longestPath - 1);
}
}

StatusBar::StatusBar()
{
    setOpaque (true);
    setWantsKeyboardFocus (true);
    setMouseClickGrabsKeyboardFocus (false);
    setTitle ("Vault folder");
    setVaultPath ({});
}

void StatusBar::setVaultPath (const juce::String& path)
{
    vaultPath = path;
    setTooltip ("Vault: " + path);
    setDescription ("Open the Vault folder " + path);
    repaint();
}

void StatusBar::setFreeBytes (juce::int64 bytes)
{
    freeBytes = bytes;
    repaint();
}

void StatusBar::setDownloadProgress (double fraction, const juce::String& name)
{
    downloadProgress = juce::jlimit (0.0, 1.0, fraction);
    downloadName = name;
    repaint();
}

void StatusBar::clearDownloadProgress()
{
    downloadProgress = -1.0;
    downloadName.clear();
    repaint();
}

void StatusBar::setStatusMessage (const juce::String& text)
{
    statusMessage = text;
    repaint();
}

void StatusBar::clearStatusMessage() { setStatusMessage ({}); }

//==============================================================================
void StatusBar::paint (juce::Graphics& g)
{
    const auto row = getLocalBounds().reduced (12, 0);

    g.fillAll (HubPalette::panel);
    g.setColour (HubPalette::border);
    g.fillRect (0, 0, getWidth(), 1);

    paintVaultLink (g, row);
    paintFreeSpace (g, row);

    if (downloadProgress >= 0.0)
        paintDownload (g);
    else if (statusMessage.isNotEmpty())
        drawTextLine (g, statusMessage, row, plainFont (11.0f), HubPalette::textSecondary, juce::Justification::centredRight);
}

void StatusBar::paintVaultLink (juce::Graphics& g, juce::Rectangle<int> row)
{
    const auto font = plainFont (11.0f);
    const juce::String prefix ("Vault: ");
    const auto path = shortened (vaultPath);

    auto leftHalf = row.withWidth (row.getWidth() / 2);
    const auto prefixArea = leftHalf.removeFromLeft (connectionPillTextWidth (font, prefix));
    vaultLinkBounds = leftHalf.removeFromLeft (connectionPillTextWidth (font, path));

    drawTextLine (g, prefix, prefixArea, font, HubPalette::textSecondary, juce::Justification::centredLeft, Overflow::clip);
    drawTextLine (g, path, vaultLinkBounds, font, HubPalette::accent);

    if (hoveringVaultLink)
        g.fillRect (vaultLinkBounds.getX(), getHeight() / 2 + 8, vaultLinkBounds.getWidth(), 1);

    if (hasKeyboardFocus (false))
        drawFocusRing (g, vaultLinkBounds.withSizeKeepingCentre (vaultLinkBounds.getWidth() + 4, 24));
}

void StatusBar::paintFreeSpace (juce::Graphics& g, juce::Rectangle<int> row) const
{
    const auto isLow = freeBytes >= 1 && freeBytes < lowFreeSpace;

    drawTextLine (g, "Free: " + sizeText (juce::jmax ((juce::int64) 0, freeBytes)), row, plainFont (11.0f),
                  isLow ? HubPalette::warning : HubPalette::textSecondary, juce::Justification::centred);
}

void StatusBar::paintDownload (juce::Graphics& g) const
{
    const auto left = getWidth() - 162;
    const juce::Rectangle<float> track ((float) left, 15.0f, 150.0f, 4.0f);

    g.setColour (HubPalette::raised);
    g.fillRoundedRectangle (track, 2.0f);
    g.setColour (HubPalette::action);
    g.fillRoundedRectangle (track.withWidth ((float) downloadProgress * track.getWidth()), 2.0f);

    drawTextLine (g, percentText (downloadProgress), { left, 2, 150, 12 }, plainFont (10.0f), HubPalette::textPrimary,
                  juce::Justification::centred, Overflow::clip);
    drawTextLine (g, "Downloading " + downloadName + utf8 ("…"), { getWidth() - 282, 22, 270, 14 }, plainFont (10.0f),
                  HubPalette::textSecondary, juce::Justification::centredRight);
}

//==============================================================================
void StatusBar::mouseMove (const juce::MouseEvent& event) { setHovering (vaultLinkBounds.contains (event.getPosition())); }

void StatusBar::mouseExit (const juce::MouseEvent&) { setHovering (false); }

void StatusBar::setHovering (bool overLink)
{
    if (hoveringVaultLink == overLink)
        return;

    hoveringVaultLink = overLink;
    setMouseCursor (overLink ? juce::MouseCursor::PointingHandCursor : juce::MouseCursor::NormalCursor);
    repaint();
}

void StatusBar::mouseUp (const juce::MouseEvent& event)
{
    if (vaultLinkBounds.contains (event.getPosition()))
        openVault();
}

bool StatusBar::keyPressed (const juce::KeyPress& key)
{
    if (! key.isKeyCode (juce::KeyPress::returnKey) && ! key.isKeyCode (juce::KeyPress::spaceKey))
        return false;

    openVault();
    return true;
}

void StatusBar::openVault()
{
    if (const auto callback = onVaultClicked)
        callback();
}

void StatusBar::focusGained (FocusChangeType) { repaint(); }

void StatusBar::focusLost (FocusChangeType) { repaint(); }

std::unique_ptr<juce::AccessibilityHandler> StatusBar::createAccessibilityHandler()
{
    return std::make_unique<juce::AccessibilityHandler> (
        *this, juce::AccessibilityRole::hyperlink,
        juce::AccessibilityActions().addAction (juce::AccessibilityActionType::press, [this] { openVault(); }));
}
