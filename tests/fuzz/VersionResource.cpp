#include "FuzzHome.h"

#include "platform/linux/PeVersionReader.h"

/** Any bytes are either no program with a version or give three 16-bit numbers. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    juce::MemoryInputStream file (data, size, false);
    const auto version = platform::readPeProductVersion (file);

    if (version.isEmpty())
        return 0;

    const auto numbers = juce::StringArray::fromTokens (version, ".", {});

    if (numbers.size() != 3)
        std::abort();

    for (const auto& number : numbers)
        if (number != juce::String (number.getIntValue()) || ! juce::isPositiveAndNotGreaterThan (number.getIntValue(), 65535))
            std::abort();

    return 0;
}
