#include "platform/SecureMemory.h"

namespace platform
{
void wipeBlock (juce::MemoryBlock& block)
{
    wipeMemory (block.getData(), block.getSize());
    block.reset();
}

void wipeText (juce::String& text)
{
    // The characters of every empty text are one constant.
    if (text.isNotEmpty())
        wipeMemory (text.getCharPointer().getAddress(), text.getNumBytesAsUTF8());

    text.clear();
}
}
