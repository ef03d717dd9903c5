#include "ui/CommunityResource.h"

#include "ui/CommunityLayout.h"
#include "ui/CommunityStyle.h"
#include "ui/CommunityTexts.h"
#include "ui/HubPalette.h"
#include "ui/TextPainting.h"

CommunityExperience::Resource::Resource (const CommunityResourceTexts& texts, std::function<void()> actionToUse)
    : CommunitySection (texts.title, texts.body), category (texts.category), title (texts.title), body (texts.body), tag (texts.tag),
      action (std::move (actionToUse)),
      resourceButton ("resourceButton", texts.button, ActionButton::Style::quiet, texts.button, texts.whatItDoes)
{
    resourceButton.onClick = [this]
    {
        if (action)
            action();
    };

    addAndMakeVisible (resourceButton);
}

void CommunityExperience::Resource::paint (juce::Graphics& g)
{
    const CommunityResourceLayout layout (getWidth(), getHeight());
    drawCardSurface (g, communityCard (getWidth(), getHeight()), 10.0f);

    if (! layout.tag.isEmpty())
        drawTextLine (g, tag.toUpperCase(), layout.tag, boldFont (9.0f), HubPalette::textPrimary.withAlpha (0.68f),
                      juce::Justification::centredRight);

    TextColumn column (g, layout.text);
    column.line (category.toUpperCase(), 16, boldFont (9.5f), HubPalette::actionBright);
    column.lines (title, 36, boldFont (15.0f), HubPalette::textPrimary, { 2, 0.88f, juce::Justification::centredLeft });
    column.lines (body, 45, plainFont (11.5f), HubPalette::textPrimary.withAlpha (0.76f), { 3, 0.84f });
}

void CommunityExperience::Resource::resized()
{
    resourceButton.setBounds (CommunityResourceLayout (getWidth(), getHeight()).button);
}
