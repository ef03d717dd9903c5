#include "creator/DraftPath.h"

#include "creator/LocalFileRule.h"
#include "support/ChildFile.h"

bool isAcceptableDraftPath (const juce::String& text, const juce::StringArray& allowedExtensions, juce::int64 maxBytes,
                            juce::File& outFile)
{
    constexpr size_t maximumPathBytes = 4096;

    if (text.getNumBytesAsUTF8() > maximumPathBytes)
        return false;

    const auto file = fileFromRecordedPath (text);

    if (! file.has_value()
        || ! text.equalsIgnoreCase (file->getFullPathName())
        || ! isAcceptableLocalFile (*file, allowedExtensions, maxBytes))
        return false;

    outFile = *file;
    return true;
}
