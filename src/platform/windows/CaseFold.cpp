#include "platform/CaseFold.h"

#include "platform/windows/WindowsHeaders.h"

#include <string>

namespace platform
{
namespace
{
/** The text with every character replaced by one other; unchanged when the system refuses. */
std::wstring replaceCharacters (const std::wstring& text, DWORD rule)
{
    if (text.empty())
        return {};

    std::wstring replaced (text.size(), L'\0');
    const auto size = ::LCMapStringEx (LOCALE_NAME_INVARIANT, rule, text.data(), (int) text.size(), replaced.data(), (int) replaced.size(),
                                       nullptr, nullptr, 0);

    return size == (int) text.size() ? replaced : text;
}
}

juce::String foldCase (const juce::String& text)
{
    // A copy, since the conversion changes the string's memory, and another thread may be reading the same one.
    const auto own = text;
    const std::wstring wide (own.toWideCharPointer());

    // First to upper case, by which the file system compares: letters that have their upper case in common are one to it, whatever
    // their lower case is.
    return juce::String (replaceCharacters (replaceCharacters (wide, LCMAP_UPPERCASE), LCMAP_LOWERCASE).c_str());
}
}
