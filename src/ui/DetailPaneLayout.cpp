#include "ui/DetailPaneLayout.h"

#include "support/Text.h"
#include "ui/SizeText.h"

namespace
{
constexpr int margin = 16, summaryHeight = 38, mostSummaryLines = 3;

juce::int64 sizeOf (const Product& product)
{
    if (product.sizeBytes >= 1)
        return product.sizeBytes;

    const auto* platform = product.windowsPlatform();
    return platform != nullptr ? platform->sizeBytes : 0;
}
}

std::vector<juce::String> factLinesFor (const ProductCardModel& model)
{
    const auto& product = model.product;
    std::vector<juce::String> lines;

    const auto add = [&] (const juce::String& label, const juce::String& value)
    { lines.push_back (utf8 ("• ") + label + value); };
    const auto addIfKnown = [&] (const juce::String& label, const juce::String& value)
    {
        if (value.isNotEmpty())
            add (label, value);
    };

    add ("Version: ", product.version);
    addIfKnown ("Released: ", product.releaseDate);
    addIfKnown ("Category: ", product.category);

    if (const auto size = sizeOf (product); size > 0)
        add ("Size: ", sizeText (size));

    addIfKnown ("Installed: v", model.installedVersion);

    if (product.installType == Product::InstallType::factoryContent)
    {
        addIfKnown ("Credit: ", product.credit);
        addIfKnown ("License: ", product.licenseId);
        addIfKnown ("Source: ", product.sourceUrl);
    }

    return lines;
}

DetailPaneLayout::DetailPaneLayout (const ProductCardModel& model, int paneWidth)
    : factLines (factLinesFor (model))
{
    const auto at = [paneWidth] (int x, int y, int height)
    { return juce::Rectangle<int> (x, y, juce::jmax (paneWidth - 2 * x, 0), height); };

    pictureWell = at (margin, 48, 140);
    picture     = at (28, 60, 116);
    name        = at (margin, 198, 20);
    vendor      = at (margin, 220, 14);
    upperRule   = at (margin, 240, 1);

    auto y = 250;

    if (model.product.description.isNotEmpty())
    {
        description = at (margin, y, 64);
        y += 72;
    }

    for (size_t i = 0; i < factLines.size(); ++i, y += 17)
        facts.push_back (at (margin, y, 15));

    if (const auto count = (int) model.product.releaseNotes.size(); count > 0)
    {
        notesBox = at (margin, y + 10, count * 62 + 42);
        notesHeading = at (26, y + 19, 16);

        for (int i = 0; i < count; ++i)
            notes.push_back ({ at (30, y + 44 + i * 62, 15), at (30, y + 60 + i * 62, summaryHeight) });

        y += count * 62 + 52;
    }

    lowerRule = at (margin, y + 6, 1);
    galleryHeading = at (margin, y + 15, 18);
    galleryTop = y + 33;
}

int DetailPaneLayout::Note::summaryLinesAbove (int y) const
{
    const int room = juce::jlimit (0, summary.getHeight(), y - summary.getY());
    return room * mostSummaryLines / summaryHeight;
}

DetailPaneButtons::DetailPaneButtons (juce::Rectangle<int> paneBounds, bool showsReinstall)
{
    auto content = paneBounds.reduced (margin);
    close = content.removeFromTop (24).removeFromRight (24);

    const auto takeFromBottom = [&content] (int height)
    {
        const auto taken = content.removeFromBottom (height);
        content.removeFromBottom (8);
        return taken;
    };

    reveal = takeFromBottom (20);

    if (showsReinstall)
        reinstall = takeFromBottom (36);

    primary = takeFromBottom (36);
    detailsBottom = primary.getY() - 8;
}
