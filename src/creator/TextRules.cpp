#include "creator/TextRules.h"

namespace TextRules
{
namespace
{
bool holdsNoControlsBut (const juce::String& text, std::initializer_list<juce::juce_wchar> allowed)
{
    for (auto position = text.getCharPointer(); ! position.isEmpty();)
        if (const auto c = position.getAndAdvance(); c < 32 && std::find (allowed.begin(), allowed.end(), c) == allowed.end())
            return false;

    return true;
}
}

bool isLine (const juce::String& text)      { return holdsNoControlsBut (text, { '\t' }); }
bool isProse (const juce::String& text)     { return holdsNoControlsBut (text, { '\t', '\n', '\r' }); }

bool isSecureAddress (const juce::String& text)
{
    if (text.isEmpty() || text.length() > maximumAddressLength)
        return false;

    // The scheme stands before anything that parsing would take apart and decode.
    const auto address = juce::URL::createWithoutParsing (text);
    return address.isWellFormed() && address.getScheme() == "https";
}
}
