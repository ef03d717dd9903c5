#include "ai/HubCredentialStore.h"

bool isAcceptableApiKey (const juce::String& text)
{
    const auto size = text.getNumBytesAsUTF8();

    if (size < 1 || size > (size_t) maximumApiKeyBytes)
        return false;

    for (auto character = text.getCharPointer(); ! character.isEmpty(); ++character)
    {
        const auto c = *character;
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        const bool isDigit = c >= '0' && c <= '9';

        if (! (isLetter || isDigit || c == '-' || c == '.' || c == '_'))
            return false;
    }

    return true;
}
