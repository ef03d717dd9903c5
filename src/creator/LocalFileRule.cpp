#include "creator/LocalFileRule.h"

#include "app/PathTrust.h"
#include "support/RegularFile.h"

bool isAcceptableLocalFile (const juce::File& file, const juce::StringArray& allowedExtensions, juce::int64 maxBytes)
{
    if (! isRegularFile (file) || ! PathTrust::hasNoReparseAncestry (file))
        return false;

    const auto size = file.getSize();
    return size >= 1 && size <= maxBytes && allowedExtensions.contains (file.getFileExtension().toLowerCase());
}
