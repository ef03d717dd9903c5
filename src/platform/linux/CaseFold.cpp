#include "platform/CaseFold.h"

#include <clocale>
#include <cwctype>
#include <locale.h>

namespace platform
{
namespace
{
/** Never freed: threads may still compare names while the process ends. Null where the system lacks the locale. */
locale_t fixedLocale()
{
    static const auto locale = ::newlocale (LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

juce::juce_wchar lowerCaseOf (juce::juce_wchar c)
{
    if (c < 128)
        return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c;

    const auto locale = fixedLocale();
    return locale == nullptr ? c : (juce::juce_wchar) ::towlower_l ((wint_t) c, locale);
}

/** Names are mostly plain lower case, and then need no copy. */
bool isLowerCaseAscii (const char* text)
{
    for (; *text != 0; ++text)
        if (static_cast<unsigned char> (*text) >= 128 || (*text >= 'A' && *text <= 'Z'))
            return false;

    return true;
}
}

juce::String foldCase (const juce::String& text)
{
    if (isLowerCaseAscii (text.toRawUTF8()))
        return text;

    juce::MemoryOutputStream folded (text.getNumBytesAsUTF8() + 1);

    for (auto position = text.getCharPointer(); ! position.isEmpty();)
        folded.appendUTF8Char (lowerCaseOf (position.getAndAdvance()));

    return folded.toUTF8();
}
}
