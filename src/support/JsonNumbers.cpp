#include "support/JsonNumbers.h"

#include "support/JsonScan.h"

#include <cstring>

using namespace JsonScan;

namespace
{
constexpr int maximumExponentDigits = 6;     // more than any double needs, and far from the end of an int
constexpr int maximumIntegerDigits = 18;     // always fit 64 bits, and are more than a double holds

/** A number without its sign, as it stands in the text. */
struct Number
{
    explicit Number (const char* position) : begin (position), integerEnd (afterDigits (position))
    {
        mantissaEnd = *integerEnd == '.' ? afterDigits (integerEnd + 1) : integerEnd;
        end = mantissaEnd;

        if (*mantissaEnd != 'e' && *mantissaEnd != 'E')
            return;

        const auto sign = mantissaEnd[1];
        const auto digits = mantissaEnd + (sign == '-' || sign == '+' ? 2 : 1);

        if (! isDigit (*digits))
            return;

        end = afterDigits (digits);
        exponentIsNegative = sign == '-';
        exponentDigits = withoutZeros (digits, end);
    }

    static const char* withoutZeros (const char* position, const char* limit)
    {
        while (position != limit && *position == '0')
            ++position;

        return position;
    }

    bool hasSafeInteger() const      { return fitsInteger (begin, integerEnd); }
    bool hasSafeExponent() const     { return exponentDigits == nullptr || end - exponentDigits <= maximumExponentDigits; }

    int exponent() const
    {
        if (exponentDigits == nullptr)
            return 0;

        const auto size = juce::jmin ((int) (end - exponentDigits), maximumExponentDigits);
        const auto value = juce::String (exponentDigits, (size_t) size).getIntValue();
        return exponentIsNegative ? -value : value;
    }

    /** The same number, or the nearest that can be said, with parts that fit. */
    void writeSafely (juce::OutputStream& output) const
    {
        if (hasSafeInteger())
        {
            output.write (begin, (size_t) (mantissaEnd - begin));
            output << "e" << exponent();
            return;
        }

        const auto digits = withoutZeros (begin, integerEnd);
        output.write (digits, (size_t) maximumIntegerDigits);
        output << "e" << (exponent() + (int) (integerEnd - digits) - maximumIntegerDigits);
    }

    const char* begin;
    const char* integerEnd;
    const char* mantissaEnd = nullptr;
    const char* exponentDigits = nullptr;
    const char* end = nullptr;
    bool exponentIsNegative = false;
};
/** The next digit, minus sign or opening quote from here on; the text's end when there is none. */
const char* toNumberOrString (const char* position)
{
    return position + std::strcspn (position, "\"'-0123456789");
}
}

juce::String withSafeNumbers (const juce::String& json)
{
    const auto begin = json.toRawUTF8();
    const auto end = afterFirstValue (begin);
    auto copiedUpTo = begin;
    juce::MemoryOutputStream rewritten;

    for (auto position = toNumberOrString (begin); position < end; position = toNumberOrString (position))
    {
        if (isQuote (*position))
        {
            position = afterString (position);
        }
        else if (isDigit (*position))
        {
            const Number number (position);

            if (! number.hasSafeInteger() || ! number.hasSafeExponent())
            {
                rewritten.write (copiedUpTo, (size_t) (position - copiedUpTo));
                number.writeSafely (rewritten);
                copiedUpTo = number.end;
            }

            position = number.end;
        }
        else if (! isDigit (*afterBlanks (++position)))
        {
            return {};
        }
    }

    if (copiedUpTo == begin)
        return json;

    rewritten.write (copiedUpTo, (size_t) (end - copiedUpTo));
    return rewritten.toUTF8();
}
