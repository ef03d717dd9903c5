#include "install/ZipArchive.h"

#include <cstring>

namespace
{
constexpr juce::uint32 localHeaderMark = 0x04034b50;
constexpr juce::uint32 entryMark = 0x02014b50;
constexpr juce::uint32 endMark = 0x06054b50;

constexpr int localHeaderSize = 30;
constexpr int entrySize = 46;
constexpr int endSize = 22;
constexpr int maximumCommentSize = 65535;
constexpr juce::int64 maximumDirectorySize = 128 * 1024 * 1024;
constexpr int readAhead = 256 * 1024;

enum Method { stored = 0, deflated = 8 };

int shortAt (const char* bytes)               { return juce::ByteOrder::littleEndianShort (bytes); }
juce::uint32 integerAt (const char* bytes)    { return juce::ByteOrder::littleEndianInt (bytes); }

juce::Time timeFrom (int time, int date)
{
    return { 1980 + (date >> 9), ((date >> 5) & 15) - 1, date & 31, time >> 11, (time >> 5) & 63, (time & 31) << 1 };
}

juce::String nameFrom (const char* bytes, int size)
{
    if (std::memchr (bytes, 0, (size_t) size) != nullptr || ! juce::CharPointer_UTF8::isValidString (bytes, size))
        return {};

    return juce::String::fromUTF8 (bytes, size);
}

/** record holds the fixed part and behind it the name. */
ZipArchive::Entry entryFrom (const char* record)
{
    constexpr juce::uint32 linkType = 0xa;    // in the highest four bits, as Unix writes a file's type

    ZipArchive::Entry entry;
    entry.isEncrypted = (shortAt (record + 8) & 1) != 0;
    entry.method = shortAt (record + 10);
    entry.modified = timeFrom (shortAt (record + 12), shortAt (record + 14));
    entry.crc32 = integerAt (record + 16);
    entry.compressedSize = integerAt (record + 20);
    entry.uncompressedSize = integerAt (record + 24);
    entry.isSymbolicLink = (integerAt (record + 38) >> 28) == linkType;
    entry.headerOffset = integerAt (record + 42);
    entry.name = nameFrom (record + entrySize, shortAt (record + 28));
    return entry;
}

bool readExactly (juce::InputStream& source, juce::int64 position, juce::int64 size, juce::MemoryBlock& block)
{
    return size >= 0 && source.setPosition (position)
        && source.readIntoMemoryBlock (block, (ssize_t) size) == (size_t) size;
}
}

//==============================================================================
bool ZipArchive::Entry::canBeUnpacked() const
{
    return ! isEncrypted && (method == stored || method == deflated);
}

struct ZipArchive::Directory
{
    juce::int64 start = 0, size = 0;
    int numEntries = 0;    ///< 0 when no directory was found
};

ZipArchive::ZipArchive (std::unique_ptr<juce::InputStream> sourceStream)
{
    if (sourceStream == nullptr)
        return;

    source = std::make_unique<juce::BufferedInputStream> (sourceStream.release(), readAhead, true);
    const auto directory = findDirectory();
    dataEnd = directory.start;

    if (! readEntries (directory))
        entries.clear();
}

ZipArchive::~ZipArchive() = default;

/** The record at the archive's end says where the directory is. A comment of unknown length lies behind it. */
ZipArchive::Directory ZipArchive::findDirectory()
{
    const auto length = source->getTotalLength();
    const auto tailStart = juce::jmax ((juce::int64) 0, length - endSize - maximumCommentSize);
    juce::MemoryBlock tail;

    if (! readExactly (*source, tailStart, length - tailStart, tail))
        return {};

    for (auto position = (juce::int64) tail.getSize() - endSize; position >= 0; --position)
    {
        const auto* record = static_cast<const char*> (tail.getData()) + position;

        if (integerAt (record) != endMark)
            continue;

        const Directory directory { integerAt (record + 16), integerAt (record + 12), shortAt (record + 10) };
        const bool fits = directory.size <= maximumDirectorySize && directory.start + directory.size <= tailStart + position;
        return fits ? directory : Directory();
    }

    return {};
}

/** False unless the directory holds exactly what the end record says: a count that is too small would hide entries. */
bool ZipArchive::readEntries (const Directory& directory)
{
    juce::MemoryBlock bytes;

    if (! readExactly (*source, directory.start, directory.size, bytes))
        return false;

    entries.reserve ((size_t) directory.numEntries);
    const auto* record = static_cast<const char*> (bytes.getData());
    auto remaining = (int) bytes.getSize();

    for (int i = 0; i < directory.numEntries; ++i)
    {
        if (remaining < entrySize || integerAt (record) != entryMark)
            return false;

        const auto size = entrySize + shortAt (record + 28) + shortAt (record + 30) + shortAt (record + 32);

        if (remaining < size)
            return false;

        entries.push_back (entryFrom (record));
        record += size;
        remaining -= size;
    }

    return remaining == 0;
}

std::unique_ptr<juce::InputStream> ZipArchive::open (const Entry& entry)
{
    char header[localHeaderSize];

    if (! entry.canBeUnpacked()
         || ! source->setPosition (entry.headerOffset)
         || source->read (header, localHeaderSize) != localHeaderSize
         || integerAt (header) != localHeaderMark)
        return nullptr;

    const auto start = entry.headerOffset + localHeaderSize + shortAt (header + 26) + shortAt (header + 28);

    if (start + entry.compressedSize > dataEnd)
        return nullptr;

    auto packed = std::make_unique<juce::SubregionStream> (source.get(), start, entry.compressedSize, false);

    if (entry.method == stored)
        return packed;

    return std::make_unique<juce::GZIPDecompressorInputStream> (packed.release(), true,
                                                                juce::GZIPDecompressorInputStream::deflateFormat,
                                                                entry.uncompressedSize);
}
