#include "creator/CreatorProfileText.h"

#include "support/Text.h"

namespace
{
juce::String orElse (const juce::String& text, const char* whenEmpty)
{
    return text.isNotEmpty() ? text : juce::String (whenEmpty);
}
}

juce::StringArray CreatorProfileText::listFrom (const juce::String& text)
{
    juce::StringArray items;
    items.addTokens (text, ",\n", "\"");
    items.trim();
    items.removeEmptyStrings();
    items.removeDuplicates (true);
    return items;
}

juce::String CreatorProfileText::linesOf (const juce::StringPairArray& links)
{
    juce::String lines;

    for (int i = 0; i < links.size(); ++i)
        lines << links.getAllKeys()[i] << ": " << links.getAllValues()[i] << "\n";

    return lines.trimEnd();
}

bool CreatorProfileText::readLinks (const juce::String& lines, juce::StringPairArray& links, juce::String& outError)
{
    links.clear();

    for (const auto& line : juce::StringArray::fromLines (lines))
    {
        const int colon = line.indexOfChar (':');

        if (colon > 0)
        {
            links.set (line.substring (0, colon).trim(), line.substring (colon + 1).trim());
        }
        else if (line.trim().isNotEmpty())
        {
            outError = utf8 ("Use Platform: https://\xe2\x80\xa6 for each link.");
            return false;
        }
    }

    return true;
}

juce::String CreatorProfileText::preview (const CreatorProfile& profile)
{
    juce::String text ("LOCAL PROFILE PREVIEW\n\n");
    text << orElse (profile.displayName, "Unnamed creator")
         << "\n" << orElse (profile.primaryRole, "Role not selected")
         << "\nGenres: " << orElse (profile.genres.joinIntoString (", "), "Not added")
         << "\nStyle: " << orElse (profile.styleDescription, "Not added")
         << "\nTheme: " << profile.backgroundTheme
         << "  Accent: " << profile.accentColour
         << "\nWebsite-layout preference: " << (profile.localWebsitePreviewRequested ? "Saved locally" : "Not requested")
         << "\n\nThis is a private local preview. It is not a website or public profile.";
    return text;
}
