#include "install/FolderWalk.h"

#include "support/NativePath.h"

bool visitAllBelow (const juce::File& folder, const std::function<bool (const FolderItem&)>& visit)
{
    namespace fs = std::filesystem;

    const auto root = nativePath (folder);

    if (! root.has_value())
        return false;

    const auto prefixLength = root->generic_u8string().length() + 1;
    std::error_code error;

    for (fs::recursive_directory_iterator position (*root, error), end; ! error && position != end; position.increment (error))
    {
        const auto whole = position->path().generic_u8string();
        const auto* text = reinterpret_cast<const char*> (whole.c_str()) + prefixLength;
        const auto size = (int) (whole.length() - prefixLength);

        // A name that is no text cannot be judged, so the walk ends there.
        if (! juce::CharPointer_UTF8::isValidString (text, size) || ! visit ({ juce::String::fromUTF8 (text, size), *position }))
            return false;
    }

    return ! error;
}
