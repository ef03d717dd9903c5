#include "support/BoundedJson.h"

#include "support/JsonNumbers.h"
#include "support/JsonScan.h"
#include "support/RegularFile.h"

#include <cmath>
#include <limits>

namespace BoundedJson
{
using namespace JsonScan;

namespace
{
constexpr size_t maximumFileSize = 64 * 1024 * 1024;

juce::int64 clampedInteger (double value)
{
    constexpr auto limit = 9223372036854775808.0;    // 2^63, the first that does not fit

    if (std::isnan (value))
        return 0;

    if (value >= limit)
        return std::numeric_limits<juce::int64>::max();

    return value < -limit ? std::numeric_limits<juce::int64>::min() : (juce::int64) value;
}

/** As juce::String::getLargeIntValue, whose behaviour beyond the range depends on the platform. */
juce::int64 clampedInteger (const juce::String& text)
{
    const auto number = text.trimStart();
    const auto isNegative = number.startsWithChar ('-');
    const auto begin = number.toRawUTF8() + (isNegative || number.startsWithChar ('+') ? 1 : 0);
    const auto end = afterDigits (begin);

    if (! fitsInteger (begin, end))
        return isNegative ? std::numeric_limits<juce::int64>::min() : std::numeric_limits<juce::int64>::max();

    juce::int64 value = 0;

    for (auto digit = begin; digit != end; ++digit)
        value = value * 10 + (*digit - '0');

    return isNegative ? -value : value;
}
}

bool isWithinDepth (const juce::String& text)
{
    int depth = 0;

    for (auto position = toBracketOrString (text.toRawUTF8()); *position != 0; position = toBracketOrString (position))
    {
        if (isQuote (*position))
        {
            position = afterString (position);
            continue;
        }

        if (isOpeningBracket (*position) && ++depth > maximumDepth)
            return false;

        if (isClosingBracket (*position) && depth > 0)
            --depth;

        ++position;
    }

    return true;
}

juce::var parse (const juce::String& text)
{
    return isWithinDepth (text) ? juce::JSON::parse (withSafeNumbers (text)) : juce::var();
}

juce::var parseFile (const juce::File& file)
{
    if (! isRegularFile (file))
        return {};

    juce::FileInputStream stream (file);

    if (! stream.openedOk())
        return {};

    juce::MemoryBlock bytes;
    stream.readIntoMemoryBlock (bytes, (ssize_t) maximumFileSize + 1);

    if (stream.getStatus().failed() || bytes.getSize() > maximumFileSize)
        return {};

    return parse (juce::String::createStringFromData (bytes.getData(), (int) bytes.getSize()));
}

juce::DynamicObject* objectIn (const juce::var& value)
{
    return value.getDynamicObject();
}

juce::String textIn (const juce::var& value, const juce::Identifier& name)
{
    const auto* object = objectIn (value);
    return object != nullptr ? object->getProperty (name).toString() : juce::String();
}

juce::int64 integerIn (const juce::var& value, const juce::Identifier& name, juce::int64 fallback)
{
    const auto* object = objectIn (value);

    if (object == nullptr || ! object->hasProperty (name))
        return fallback;

    const auto& property = object->getProperty (name);

    if (property.isDouble())
        return clampedInteger ((double) property);

    return property.isString() ? clampedInteger (property.toString()) : (juce::int64) property;
}
}
