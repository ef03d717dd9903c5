#include "ContrastPairs.h"

#include "ui/HubLookAndFeel.h"
#include "ui/HubPalette.h"

#include <algorithm>
#include <cmath>
#include <juce_gui_basics/juce_gui_basics.h>

namespace zorva::test
{
namespace
{
struct Named
{
    std::string name;
    juce::Colour colour;
};

Named at (const Named& ink, float alpha)
{
    return { ink.name + " at " + juce::String (alpha, 2).toStdString(), ink.colour.withAlpha (alpha) };
}

/** As the framework draws the caption of a button that is disabled. */
Named half (const Named& ink)    { return { ink.name + " at half strength", ink.colour.withMultipliedAlpha (0.5f) }; }

Named over (const Named& ground, const Named& layer)
{
    return { layer.name + " over " + ground.name, ground.colour.overlaidWith (layer.colour) };
}

const char* const ownNumbers = "both colours are the design's own numbers";
const char* const orangeButton = "the design's own numbers; the tooltip says the same in light on dark";
const char* const ringOnFill = "the design's own numbers and place; its outer edge meets the card, on which it has 5.00";

/** The same inks on several grounds, or in several strengths. */
struct Row
{
    const char* where;
    std::vector<Named> inks, grounds;
    ContrastUse use = ContrastUse::words;
    const char* reason = "";
};

std::vector<Row> rows()
{
    using Use = ContrastUse;

    const Named window { "windowBackground", HubPalette::windowBackground }, surface { "surface", HubPalette::surface },
        raised { "raised", HubPalette::raised }, panel { "panel", HubPalette::panel }, dark { "inverseText", HubPalette::inverseText },
        accent { "accent", HubPalette::accent }, action { "action", HubPalette::action }, primary { "textPrimary", HubPalette::textPrimary },
        secondary { "textSecondary", HubPalette::textSecondary }, success { "success", HubPalette::success },
        warning { "warning", HubPalette::warning }, bright { "actionBright", HubPalette::actionBright };

    const Named strong { "accent, 0.52 darker", HubPalette::accent.darker (0.52f) }, library { "action, 0.48 darker", HubPalette::action.darker (0.48f) },
        chip { "action, 0.42 darker", HubPalette::action.darker (0.42f) },
        wizardBody { "textSecondary, 0.25 brighter", HubPalette::textSecondary.brighter (0.25f) };

    // What stands on artwork of its own.
    const Named noticeInk { "#F5FBFF", juce::Colour (0xfff5fbff) }, noticeLeft { "#0B2532, left end", juce::Colour (0xff0b2532) },
        noticeRight { "#241208, right end", juce::Colour (0xff241208) }, heading { "#46D7FF", juce::Colour (0xff46d7ff) },
        packsLeft { "#28130D, left end", juce::Colour (0xff28130d) }, packsRight { "#102631, right end", juce::Colour (0xff102631) },
        stripInk { "#C1CAD6", juce::Colour (0xffc1cad6) },
        stripWorst { "the strip over white", juce::Colours::white.overlaidWith (juce::Colour (0xb8000000)) };

    const auto messageBox = HubLookAndFeel();
    const auto colour = [&messageBox] (int id) { return messageBox.findColour (id); };

    return {
        { "page title", { primary }, { surface } },
        { "sidebar: the current page and Library; the others", { primary, at (primary, 0.7f) }, { panel } },
        { "sidebar, under the mouse", { primary, at (primary, 0.7f) }, { surface } },
        { "sidebar: the chip DAW", { primary }, { chip } },
        { "release notice", { noticeInk }, { noticeLeft, noticeRight } },
        { "connection, online", { primary }, { raised } },
        { "connection, offline", { secondary }, { raised }, Use::words, ownNumbers },
        { "search field, settings' fields: what stands there when they are empty", { secondary }, { panel }, Use::words, ownNumbers },
        { "fields, boxes, menus", { primary }, { panel } },
        { "menus, under the mouse", { primary }, { raised } },
        { "menus: what cannot be chosen", { half (primary) }, { panel }, Use::inactive },
        { "tooltips", { primary }, { dark } },
        { "message boxes", { { "the framework's text", colour (juce::AlertWindow::textColourId) } },
          { { "the framework's ground", colour (juce::AlertWindow::backgroundColourId) } } },

        { "cards: name", { primary }, { surface, raised, panel } },
        { "cards: vendor, version", { secondary }, { surface, raised, panel }, Use::words, ownNumbers },
        { "cards: chip Not Installed", { accent }, { surface, raised, panel } },
        { "cards: chip Cached", { secondary }, { surface, raised, panel }, Use::words, ownNumbers },
        { "cards: chips of what runs or is new; of what is installed", { dark }, { warning, success } },
        { "DOWNLOAD, INSTALL, UPDATE, REINSTALL", { primary }, { action }, Use::words, orangeButton },
        { "Open, REVEAL, Next", { dark }, { accent } },
        { "the same while disabled, and while something runs", { half (secondary), half (primary) }, { surface, raised, panel }, Use::inactive },
        { "library without products", { secondary }, { window }, Use::words, ownNumbers },
        { "gallery: its header", { primary }, { window } },
        { "gallery: section titles", { accent }, { window, surface } },
        { "gallery: captions", { secondary }, { window, surface }, Use::words, ownNumbers },
        { "gallery: the word in drawn tiles", { at (accent, 0.82f) }, { over (panel, at (accent, 0.08f)) }, Use::picture },
        { "gallery: the word in drawn tiles", { at (action, 0.82f) }, { over (panel, at (action, 0.08f)) }, Use::picture },
        { "sound packs: headings", { heading }, { packsLeft, packsRight } },
        { "sound packs: text", { at (primary, 0.82f) }, { packsLeft, packsRight } },
        { "campaign banner: the line at its foot, over a white picture at worst", { stripInk }, { stripWorst } },

        { "details: name, description", { primary }, { surface } },
        { "details: vendor, facts, the cross", { secondary }, { surface }, Use::words, ownNumbers },
        { "details: link", { accent }, { surface } },
        { "details: heading and titles of what is new", { accent, primary }, { panel } },
        { "details: text of what is new", { secondary }, { panel }, Use::words, ownNumbers },

        { "status bar: path; percent", { accent, primary }, { panel } },
        { "status bar: low free space", { warning }, { panel } },
        { "status bar: the rest", { secondary }, { panel }, Use::words, ownNumbers },

        { "settings: texts; warnings", { primary, warning }, { window } },
        { "settings: headings, storage", { secondary }, { window }, Use::words, ownNumbers },
        { "settings: buttons", { primary, accent }, { raised } },
        { "settings: TEST; DELETE, Clear All Cache", { success, warning }, { raised }, Use::words, ownNumbers },
        { "settings: disabled buttons", { half (primary), half (warning) }, { window }, Use::inactive },

        { "community: headings on the page", { accent, primary }, { window } },
        { "community: foot", { at (primary, 0.72f) }, { window } },
        { "community: headings in sections", { accent, primary }, { raised } },
        { "community: small headings in sections", { bright }, { raised }, Use::words, ownNumbers },
        { "community: texts, strongest to faintest",
          { at (primary, 0.8f), at (primary, 0.78f), at (primary, 0.76f), at (primary, 0.74f), at (primary, 0.72f), at (primary, 0.7f), at (primary, 0.68f) },
          { raised } },
        { "community: strong buttons", { primary }, { strong }, Use::words, ownNumbers },
        { "community: the button to the library", { primary }, { library } },
        { "community: quiet buttons", { accent }, { panel } },
        { "community: the player's button", { half (accent) }, { raised }, Use::inactive },
        { "community: words on the badge", { primary, bright }, { dark } },

        { "wizard: eyebrow; headings and names of fields", { accent, primary }, { raised } },
        { "wizard: what a step is about", { wizardBody }, { raised }, Use::words, ownNumbers },
        { "wizard: buttons; Delete Draft", { primary, warning }, { panel } },
        { "wizard: disabled buttons", { half (primary) }, { raised }, Use::inactive },

        { "about: name, account", { primary }, { window } },
        { "about: links, owner", { accent }, { window } },
        { "about: version, role, copyright", { secondary }, { window }, Use::words, ownNumbers },

        { "focus ring", { accent }, { window, surface, raised, panel }, Use::mark },
        { "focus ring on the community's button to the library", { accent }, { library }, Use::mark },
        { "focus ring on the community's strong buttons", { accent }, { strong }, Use::mark, ringOnFill },
    };
}

double luminanceOf (juce::Colour colour)
{
    const auto linear = [] (juce::uint8 channel)
    {
        const double c = channel / 255.0;
        return c <= 0.03928 ? c / 12.92 : std::pow ((c + 0.055) / 1.055, 2.4);
    };

    return 0.2126 * linear (colour.getRed()) + 0.7152 * linear (colour.getGreen()) + 0.0722 * linear (colour.getBlue());
}

std::string inHex (juce::Colour colour)    { return "#" + colour.toDisplayString (false).toStdString(); }

std::string lineOf (const ContrastPair& pair)
{
    const auto ratio = contrastOf (pair.ink, pair.ground), needed = contrastNeeded (pair.use);
    const auto named = [] (const std::string& name, juce::Colour shown)
    { return name.find ('#') == 0 ? name : name + " " + inHex (shown); };

    const auto verdict = [&]() -> std::string
    {
        if (pair.use == ContrastUse::inactive)    return "inactive";
        if (pair.use == ContrastUse::picture)     return "part of a picture";
        return ratio >= needed ? "yes" : "**no**: " + pair.reason;
    };

    return "| " + pair.where + " | " + named (pair.inkName, pair.ground.overlaidWith (pair.ink)) + " | " + named (pair.groundName, pair.ground)
         + " | " + juce::String (std::floor (ratio * 100.0) / 100.0, 2).toStdString() + " | "
         + (needed > 0.0 ? juce::String (needed, 1).toStdString() : "none") + " | " + verdict() + " |\n";
}
}

//==============================================================================
const std::vector<ContrastPair>& contrastPairs()
{
    static const auto pairs = []
    {
        std::vector<ContrastPair> all;

        for (const auto& row : rows())
            for (const auto& ground : row.grounds)
                for (const auto& ink : row.inks)
                    all.push_back ({ row.where, ink.name, ground.name, ink.colour, ground.colour, row.use, row.reason });

        return all;
    }();

    return pairs;
}

double contrastOf (juce::Colour ink, juce::Colour ground)
{
    const auto one = luminanceOf (ground.overlaidWith (ink)), other = luminanceOf (ground);
    return (std::max (one, other) + 0.05) / (std::min (one, other) + 0.05);
}

double contrastNeeded (ContrastUse use)
{
    switch (use)
    {
        case ContrastUse::words:       return 4.5;
        case ContrastUse::mark:        return 3.0;
        case ContrastUse::inactive:
        case ContrastUse::picture:     break;
    }

    return 0.0;
}

std::string contrastTable()
{
    std::string table = "| Where | Colour | Ground | Ratio | Asked | Reached |\n|---|---|---|---|---|---|\n";

    for (const auto& pair : contrastPairs())
        table += lineOf (pair);

    return table;
}
}
