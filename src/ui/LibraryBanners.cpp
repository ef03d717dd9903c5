#include "ui/LibraryBanners.h"

#include "support/Text.h"
#include "ui/HubPalette.h"
#include "ui/TextPainting.h"

namespace
{
const juce::Colour plate { 0xff080b0f }, heading { 0xff46d7ff };
constexpr int sideMargin = 20;

void drawOutline (juce::Graphics& g, juce::Rectangle<int> area, float radius)
{
    g.setColour (HubPalette::border);
    g.drawRoundedRectangle (area.toFloat(), radius, 1.0f);
}

void clipToRounded (juce::Graphics& g, juce::Rectangle<int> area, float radius)
{
    juce::Path shape;
    shape.addRoundedRectangle (area.toFloat(), radius);
    g.reduceClipRegion (shape);
}
}

MainHubComponent::CampaignBanner::CampaignBanner()
{
    setInterceptsMouseClicks (false, false);
    setTitle ("ZORVA DAW and ZORVA Stagewell");
    setDescription ("ZORVA DAW mixer and ZORVA Stagewell shown on two studio displays. Display hardware not included.");
}

void MainHubComponent::CampaignBanner::paint (juce::Graphics& g)
{
    const auto banner = getLocalBounds().reduced (sideMargin, 0);

    {
        const juce::Graphics::ScopedSaveState beforeClip (g);
        clipToRounded (g, banner, 12.0f);
        g.setColour (plate);
        g.fillRect (banner);
        picture.drawWhole (g, banner);
    }

    drawOutline (g, banner, 12.0f);

    const int stripHeight = juce::jmin (18, getHeight() - 16);
    const juce::Rectangle<int> strip (30, getHeight() - 8 - stripHeight, juce::jmax (getWidth() - 60, 0), stripHeight);
    g.setColour (juce::Colour (0xb8000000));
    g.fillRoundedRectangle (strip.toFloat(), 4.0f);
    drawTextLine (g, "ZORVA software shown on user-supplied displays. Display hardware not included.",
                  strip.withX (37).withWidth (juce::jmax (getWidth() - 74, 0)), plainFont (9.5f), juce::Colour (0xffc1cad6),
                  juce::Justification::centredRight);
}

//==============================================================================
MainHubComponent::SoundPacksNotice::SoundPacksNotice()
    : packs { Pack { "SYNTHS", { *this, "zorvasynthspack_png" } }, Pack { "HIP HOP", { *this, "zorvahiphoppack_png" } },
              Pack { "DRUM PACK", { *this, "zorvadrumpack_png" } }, Pack { "AFRO BEATS", { *this, "zorvaafrobeatspack_png" } } }
{
    setInterceptsMouseClicks (false, false);
    setTitle ("ZORVA Foundry Staples");
    setDescription ("Optional instrument libraries installed securely by ZORVA Hub.");
}

void MainHubComponent::SoundPacksNotice::paint (juce::Graphics& g)
{
    const auto panel = getLocalBounds().reduced (sideMargin, 4);
    g.setGradientFill ({ juce::Colour (0xff28130d), panel.getTopLeft().toFloat(), juce::Colour (0xff102631),
                         { (float) panel.getRight(), (float) panel.getCentreY() }, false });
    g.fillRoundedRectangle (panel.toFloat(), 10.0f);

    auto content = panel.reduced (18, 10);
    drawTextLine (g, "ZORVA FOUNDRY STAPLES + ORIGINAL PACKS", content.removeFromTop (24), boldFont (13.0f), heading);
    drawTextLine (g,
                  "Foundry Staples remain the verified Hub-installed instrument libraries. Original free and premium ZORVA packs begin "
                  "arriving August 2026.",
                  content.removeFromTop (34), plainFont (11.0f), HubPalette::textPrimary.withAlpha (0.82f));
    content.removeFromTop (6);
    paintPacks (g, content);
    drawOutline (g, panel, 10.0f);
}

void MainHubComponent::SoundPacksNotice::paintPacks (juce::Graphics& g, juce::Rectangle<int> area)
{
    constexpr int gap = 10;
    const int tileWidth = juce::jmax (70, (area.getWidth() - 3 * gap) / 4);
    auto row = area.withHeight (juce::jmax (area.getHeight() - 26, 0));
    const auto captions = area.withTop (area.getBottom() - juce::jmin (22, area.getHeight()));

    for (auto& pack : packs)
    {
        const auto tile = row.removeFromLeft (tileWidth);
        row.removeFromLeft (gap);
        g.setColour (plate);
        g.fillRoundedRectangle (tile.toFloat(), 7.0f);
        pack.picture.drawWhole (g, tile);
        drawOutline (g, tile, 7.0f);
        drawTextLine (g, pack.name + utf8 ("  \xc2\xb7  COMING SOON"), captions.withX (tile.getX()).withWidth (tile.getWidth()), boldFont (9.5f),
                      heading, juce::Justification::centred);
    }
}

//==============================================================================
MainHubComponent::GalleryHeader::GalleryHeader()
{
    setInterceptsMouseClicks (false, false);
}

void MainHubComponent::GalleryHeader::paint (juce::Graphics& g)
{
    drawTextLine (g, utf8 ("EVERYTHING INCLUDED IN ZORVA DAW \xe2\x80\x94 9 Instrument Modules \xc2\xb7 8 Effects"),
                  getLocalBounds().reduced (sideMargin, 0), boldFont (11.0f), HubPalette::textPrimary);
}
