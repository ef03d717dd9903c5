#include "support/ChildFile.h"

namespace
{
bool isWholePath (const juce::String& path)
{
    if (juce::File::getSeparatorChar() == '/')
        return path.startsWithChar ('/');

    const auto text = path.replaceCharacter ('/', '\\');
    return text.startsWith ("\\\\") || text.substring (1, 3) == ":\\";
}

/** True when the steps climb above where the path begins; juce::File would then read the rest as a relative path. */
bool climbsAboveTheRoot (const juce::StringArray& steps)
{
    int depth = steps[0].endsWithChar (':') && juce::File::getSeparatorChar() == '\\' ? -1 : 0;    // a drive is no step

    for (const auto& step : steps)
    {
        if (step == "..")
            --depth;
        else if (step != ".")
            ++depth;

        if (depth < 0)
            return true;
    }

    return false;
}
}

juce::File childOf (const juce::File& folder, const juce::String& checkedName)
{
    if (folder == juce::File())
        return {};

    return juce::File (juce::File::addTrailingSeparator (folder.getFullPathName()) + checkedName);
}

std::optional<juce::File> fileFromRecordedPath (const juce::String& path)
{
    if (! isWholePath (path))
        return {};

    auto steps = juce::StringArray::fromTokens (path, juce::File::getSeparatorString() + "/", {});
    steps.removeEmptyStrings (false);

    const auto& last = steps[steps.size() - 1];

    if (last == "." || last == ".." || climbsAboveTheRoot (steps))
        return {};

    return juce::File (path);
}
