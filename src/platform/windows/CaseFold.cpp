#include "platform/CaseFold.h"

#include "platform/windows/WindowsHeaders.h"

#include <vector>

namespace platform
{
juce::String foldCase (const juce::String& text)
{
    const auto* source = text.toWideCharPointer();
    const auto fold = [source] (wchar_t* target, int size)
    {
        return ::LCMapStringEx (LOCALE_NAME_INVARIANT, LCMAP_LOWERCASE, source, -1, target, size, nullptr, nullptr, 0);
    };

    // The sizes include the end of the text.
    const auto size = fold (nullptr, 0);
    std::vector<wchar_t> folded ((size_t) juce::jmax (size, 1));

    return size > 0 && fold (folded.data(), size) == size ? juce::String (folded.data()) : text;
}
}
