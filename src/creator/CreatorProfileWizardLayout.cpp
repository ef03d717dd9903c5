#include "creator/CreatorProfileWizardLayout.h"

namespace
{
constexpr int buttonGap = 8;

juce::Rectangle<int> takeLeft (juce::Rectangle<int>& row, int width)
{
    const auto taken = row.removeFromLeft (width);
    row.removeFromLeft (buttonGap);
    return taken;
}

juce::Rectangle<int> takeRight (juce::Rectangle<int>& row, int width)
{
    const auto taken = row.removeFromRight (width);
    row.removeFromRight (buttonGap);
    return taken;
}
}

CreatorProfileWizardLayout::CreatorProfileWizardLayout (int width, int height, int primaryEditorHeight)
    : card (26, 18, juce::jmax (width - 52, 0), juce::jmax (height - 36, 0))
{
    juce::Rectangle<int> column (50, 34, juce::jmax (width - 100, 0), juce::jmax (height - 68, 0));

    eyebrow = column.removeFromTop (22);
    step = column.removeFromTop (38);
    title = column.removeFromTop (34);
    body = column.removeFromTop (44);
    column.removeFromTop (8);

    field = column.removeFromTop (22);
    primaryEditor = column.removeFromTop (primaryEditorHeight);
    chooseImage = primaryEditor.withWidth (180);
    column.removeFromTop (12);

    secondaryField = column.removeFromTop (22);
    secondaryEditor = column.removeFromTop (juce::jlimit (oneLine, severalLines, column.getHeight() - 110));
    theme = secondaryEditor.withHeight (oneLine);

    const int stripHeight = juce::jlimit (0, 70, height - 52);
    juce::Rectangle<int> strip (50, height - 26 - stripHeight, juce::jmax (width - 100, 0), stripHeight);

    auto upper = strip.removeFromTop (30);
    exportDraft = takeRight (upper, 108);
    deleteDraft = takeRight (upper, 112);

    auto lower = strip.removeFromBottom (32);
    back = takeLeft (lower, 72);
    skip = takeLeft (lower, 72);
    next = takeRight (lower, 96);
    editLater = takeRight (lower, 96);
    preview = takeRight (lower, 82);
    saveDraft = takeRight (lower, 100);
}
