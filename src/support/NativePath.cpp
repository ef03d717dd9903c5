#include "support/NativePath.h"

std::optional<std::filesystem::path> nativePath (const juce::File& file)
{
    const auto text = file.getFullPathName().toStdString();

    if (text.empty())
        return {};

    try
    {
        // From UTF-8, never from wide characters: their conversion follows the locale on some systems and throws there.
        return std::filesystem::path (std::u8string (text.begin(), text.end()));
    }
    catch (...)
    {
        return {};
    }
}
