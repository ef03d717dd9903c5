#pragma once

#include <juce_graphics/juce_graphics.h>

/** Where everything of the creator profile wizard lies: a card, in it a column of rows, each cut to the height that is left, and
    two rows of buttons above the card's bottom. Pure. */
struct CreatorProfileWizardLayout
{
    CreatorProfileWizardLayout (int width, int height, int primaryEditorHeight);

    static constexpr int oneLine = 34, severalLines = 90;    ///< heights of the primary editor

    juce::Rectangle<int> card;
    juce::Rectangle<int> eyebrow, step, title, body;
    juce::Rectangle<int> field, primaryEditor, chooseImage;    ///< the combo and the toggle of the main field lie where its editor does
    juce::Rectangle<int> secondaryField, secondaryEditor, theme;
    juce::Rectangle<int> deleteDraft, exportDraft;
    juce::Rectangle<int> back, skip, saveDraft, preview, editLater, next;
};
