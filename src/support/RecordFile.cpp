#include "support/RecordFile.h"

#include "support/AtomicRename.h"

namespace RecordFile
{
namespace
{
constexpr const char* lineEnd = "\r\n";
constexpr int maximumDecimalPlaces = 15;

juce::MemoryBlock bytesOf (const juce::String& text)
{
    juce::MemoryOutputStream bytes;
    bytes.writeText (text, false, false, lineEnd);
    return bytes.getMemoryBlock();
}

bool writeBytes (const juce::File& file, const juce::MemoryBlock& bytes)
{
    // With no room for a buffer each write goes straight to the system and answers for itself; a buffered stream would write the
    // last bytes in its destructor, where a failure is lost.
    juce::FileOutputStream stream (file, 0);

    return stream.openedOk() && (bytes.isEmpty() || stream.write (bytes.getData(), bytes.getSize()));
}

bool holdsExactly (const juce::File& file, const juce::MemoryBlock& expected)
{
    juce::FileInputStream stream (file);

    if (! stream.openedOk() || stream.getTotalLength() != (juce::int64) expected.getSize())
        return false;

    juce::MemoryBlock found;
    stream.readIntoMemoryBlock (found);
    return stream.getStatus().wasOk() && (expected.isEmpty() || found == expected);
}
}

juce::String toText (const juce::var& value)
{
    return juce::JSON::toString (value, false, maximumDecimalPlaces);
}

Outcome replace (const juce::File& file, const juce::String& text)
{
    // Only the name comes from the framework. Its own object would report a sibling that cannot be deleted as a programming error.
    const auto sibling = juce::TemporaryFile (file).getFile();
    const auto bytes = bytesOf (text);

    if (! writeBytes (sibling, bytes) || ! holdsExactly (sibling, bytes))
    {
        sibling.deleteFile();
        return Outcome::notWritten;
    }

    if (! renameOver (sibling, file))
    {
        sibling.deleteFile();
        return Outcome::notReplaced;
    }

    return Outcome::written;
}
}
