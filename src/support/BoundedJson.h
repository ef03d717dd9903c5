#pragma once

#include <juce_core/juce_core.h>

/** Reading JSON (RFC 8259) that somebody else wrote. Pure functions, any thread. */
namespace BoundedJson
{
/** Arrays and objects may lie in each other this deep; a parser that recurses must never see more. */
constexpr int maximumDepth = 64;

/** True when no part of the text, strings left aside, nests deeper than maximumDepth. */
bool isWithinDepth (const juce::String& text);

/** Parses the text; a void var when it is no JSON or nests too deep. */
juce::var parse (const juce::String& text);

/** Reads and parses a whole file; a void var when it is absent, unreadable, larger than 64 MiB, no JSON or too deep. */
juce::var parseFile (const juce::File& file);

/** The value as an object, owned by the var; null for anything else, arrays included. */
juce::DynamicObject* objectIn (const juce::var& value);

/** A property of a value as text, without trimming; empty when the value is no object or has no such property. */
juce::String textIn (const juce::var& value, const juce::Identifier& name);

/** A property as a 64-bit integer by juce::var's conversions, clamped to the range; fallback when it is absent. */
juce::int64 integerIn (const juce::var& value, const juce::Identifier& name, juce::int64 fallback = 0);
}
