#pragma once

#include <juce_core/juce_core.h>

/** What the creator's texts may hold. Pure functions, any thread. */
namespace TextRules
{
/** The longest address in characters. */
constexpr int maximumAddressLength = 2048;

/** No code point below 32 but the tab. */
bool isLine (const juce::String& text);

/** No code point below 32 but the tab, the line feed and the carriage return. */
bool isProse (const juce::String& text);

/** An address of 1 to maximumAddressLength characters whose scheme is "https" in lower case. Nothing behind the scheme is judged. */
bool isSecureAddress (const juce::String& text);
}
