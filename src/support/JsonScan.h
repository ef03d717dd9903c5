#pragma once

#include <juce_core/juce_core.h>

/** Finding one's way in JSON text (RFC 8259) without parsing it. Works on the bytes of UTF-8, since every sign with a meaning is
    ASCII. All text ends with a zero, and no answer lies behind that. Pure functions, any thread. */
namespace JsonScan
{
/** True for the ten ASCII digits. */
inline bool isDigit (char c)                { return c >= '0' && c <= '9'; }

/** True for both quotes between which the framework's parser reads a string; between either kind no bracket counts. */
inline bool isQuote (char c)                { return c == '"' || c == '\''; }

inline bool isOpeningBracket (char c)       { return c == '[' || c == '{'; }
inline bool isClosingBracket (char c)       { return c == ']' || c == '}'; }

/** Behind the string whose opening quote is here, escapes heeded; the end of the text when it is never closed. */
const char* afterString (const char* openingQuote);

/** The next bracket of either kind or opening quote from here on; the text's end when there is none. */
const char* toBracketOrString (const char* position);

/** Behind the digits that begin here, if any do. */
const char* afterDigits (const char* position);

/** Behind the blanks that begin here, if any do. */
const char* afterBlanks (const char* position);

/** Behind the first array or object of the text, which is all that the framework's parser reads; the text's end when that is never
    closed. */
const char* afterFirstValue (const char* text);

/** True when the digits are the decimal form of a number from 0 to 2^63 - 1. */
bool fitsInteger (const char* begin, const char* end);
}
