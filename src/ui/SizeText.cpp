#include "ui/SizeText.h"

juce::String sizeText (juce::int64 bytes)
{
    constexpr auto kilo = 1024.0;
    constexpr auto mega = kilo * 1024.0;
    constexpr auto giga = mega * 1024.0;
    const auto size = (double) bytes;

    if (size >= giga)
        return juce::String (size / giga, 1) + " GB";

    // No number of places means six significant digits here, not a whole number: 319.108 MB.
    if (size >= mega)
        return juce::String (size / mega, 0) + " MB";

    if (size >= kilo)
        return juce::String (size / kilo, 0) + " KB";

    return juce::String (bytes) + " B";
}
