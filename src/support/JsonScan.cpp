#include "support/JsonScan.h"

#include <cstring>
#include <limits>

namespace JsonScan
{
const char* afterString (const char* openingQuote)
{
    const char delimiters[] { *openingQuote, '\\', 0 };
    auto position = openingQuote + 1;

    for (;;)
    {
        position += std::strcspn (position, delimiters);

        if (*position == *openingQuote)
            return position + 1;

        if (*position == 0)
            return position;

        position += position[1] == 0 ? 1 : 2;
    }
}

const char* afterDigits (const char* position)
{
    while (isDigit (*position))
        ++position;

    return position;
}

const char* afterBlanks (const char* position)
{
    while (juce::CharacterFunctions::isWhitespace (*position))
        ++position;

    return position;
}

const char* toBracketOrString (const char* position)
{
    return position + std::strcspn (position, "\"'[]{}");
}

const char* afterFirstValue (const char* text)
{
    int depth = 0;
    auto position = toBracketOrString (text);

    while (*position != 0)
    {
        if (isQuote (*position))
        {
            position = toBracketOrString (afterString (position));
            continue;
        }

        if (isOpeningBracket (*position))
            ++depth;
        else if (--depth <= 0)
            return position + 1;

        position = toBracketOrString (position + 1);
    }

    return position;
}

bool fitsInteger (const char* begin, const char* end)
{
    constexpr auto largest = std::numeric_limits<juce::int64>::max();
    juce::int64 value = 0;

    for (; begin != end; ++begin)
    {
        const auto digit = *begin - '0';

        if (value > (largest - digit) / 10)
            return false;

        value = value * 10 + digit;
    }

    return true;
}
}
