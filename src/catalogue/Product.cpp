#include "catalogue/Product.h"

#include "app/PathTrust.h"
#include "platform/CaseFold.h"

const ProductPlatform* Product::windowsPlatform() const
{
    const auto entry = platforms.find ("win");
    return entry == platforms.end() ? nullptr : &entry->second;
}

juce::String normalisedId (const juce::String& id)
{
    return PathTrust::isSafeIdentity (id) ? platform::foldCase (id) : juce::String();
}
