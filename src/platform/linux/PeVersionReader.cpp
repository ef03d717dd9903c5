#include "platform/linux/PeVersionReader.h"

#include <array>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

namespace platform
{
namespace
{
constexpr juce::uint32 maximumSections = 96;              // what the Windows loader takes
constexpr juce::uint32 maximumDirectoryEntries = 4096;
constexpr juce::uint32 versionResourceType = 16;
constexpr juce::uint32 subdirectoryBit = 0x80000000u;
constexpr juce::uint32 fixedBlockSignature = 0xFEEF04BDu;
constexpr juce::uint32 fixedBlockSize = 52;
constexpr juce::uint32 fixedBlockOffset = 40;             // three numbers, the key and the padding up to four bytes

juce::uint32 wordAt (const juce::uint8* bytes)         { return juce::ByteOrder::littleEndianShort (bytes); }
juce::uint32 doubleWordAt (const juce::uint8* bytes)   { return juce::ByteOrder::littleEndianInt (bytes); }

/** A part of the file that the loader would map to an address. */
struct Section
{
    juce::uint32 address = 0, size = 0, position = 0;
};

/** A place in the file and how many bytes of its section follow there. */
struct Place
{
    juce::int64 position = 0;
    juce::uint32 available = 0;
};

//==============================================================================
class PeFile
{
public:
    explicit PeFile (juce::InputStream& input) : stream (input), length (input.getTotalLength()) {}

    /** False when the headers are not those of a PE file with a resource directory. */
    bool readHeaders()
    {
        std::array<juce::uint8, 64> dos;

        if (! read (0, dos) || dos[0] != 'M' || dos[1] != 'Z')
            return false;

        const juce::int64 signature = doubleWordAt (&dos[60]);
        std::array<juce::uint8, 24> header;

        if (! read (signature, header) || std::memcmp (header.data(), "PE\0\0", 4) != 0)
            return false;

        const auto sectionCount = wordAt (&header[6]);
        const auto optionalSize = wordAt (&header[20]);
        const auto optionalHeader = signature + (juce::int64) header.size();

        return sectionCount <= maximumSections
            && readResourceAddress (optionalHeader, optionalSize)
            && readSections (optionalHeader + optionalSize, sectionCount);
    }

    /** The data of the first version resource; nothing when there is none. */
    std::optional<Place> findVersionResource()
    {
        const auto names = findEntry (0, versionResourceType, true);
        const auto languages = names.has_value() ? findEntry (*names, std::nullopt, true) : std::nullopt;
        const auto data = languages.has_value() ? findEntry (*languages, std::nullopt, false) : std::nullopt;

        if (! data.has_value())
            return {};

        std::array<juce::uint8, 16> entry;

        if (! readResource (*data, entry))
            return {};

        auto place = placeOf (doubleWordAt (&entry[0]));

        if (place.has_value())
            place->available = juce::jmin (place->available, doubleWordAt (&entry[4]));

        return place;
    }

    template <size_t size>
    bool read (juce::int64 position, std::array<juce::uint8, size>& bytes)
    {
        return position >= 0 && position <= length - (juce::int64) size
            && stream.setPosition (position) && stream.read (bytes.data(), (int) size) == (int) size;
    }

private:
    bool readResourceAddress (juce::int64 optionalHeader, juce::uint32 optionalSize)
    {
        constexpr juce::uint32 resourceDirectory = 2, directoryEntrySize = 8;
        std::array<juce::uint8, 2> magic;

        if (! read (optionalHeader, magic))
            return false;

        const auto format = wordAt (magic.data());

        if (format != 0x10b && format != 0x20b)
            return false;

        const juce::uint32 countOffset = format == 0x10b ? 92 : 108;
        const auto entryOffset = countOffset + 4 + resourceDirectory * directoryEntrySize;
        std::array<juce::uint8, 4> count;
        std::array<juce::uint8, directoryEntrySize> entry;

        if (entryOffset + directoryEntrySize > optionalSize
             || ! read (optionalHeader + countOffset, count) || doubleWordAt (count.data()) <= resourceDirectory
             || ! read (optionalHeader + entryOffset, entry))
            return false;

        resourceAddress = doubleWordAt (entry.data());
        return resourceAddress != 0;
    }

    bool readSections (juce::int64 table, juce::uint32 count)
    {
        std::array<juce::uint8, 40> header;

        for (juce::uint32 i = 0; i < count; ++i)
        {
            if (! read (table + (juce::int64) (i * header.size()), header))
                return false;

            sections.push_back ({ doubleWordAt (&header[12]), doubleWordAt (&header[16]), doubleWordAt (&header[20]) });
        }

        return true;
    }

    std::optional<Place> placeOf (juce::uint32 address) const
    {
        for (const auto& section : sections)
            if (address >= section.address && address - section.address < section.size)
                return Place { (juce::int64) section.position + (address - section.address),
                               section.size - (address - section.address) };

        return {};
    }

    template <size_t size>
    bool readResource (juce::uint32 offset, std::array<juce::uint8, size>& bytes)
    {
        const auto address = (juce::uint64) resourceAddress + offset;

        if (address > std::numeric_limits<juce::uint32>::max())
            return false;

        const auto place = placeOf ((juce::uint32) address);
        return place.has_value() && place->available >= size && read (place->position, bytes);
    }

    /** The offset that the entry with this number, or else the first entry, of a resource directory holds; nothing when there is
        no such entry or when it is not of the wanted kind, directory or data. */
    std::optional<juce::uint32> findEntry (juce::uint32 directory, std::optional<juce::uint32> number, bool wantsDirectory)
    {
        std::array<juce::uint8, 16> header;

        if (! readResource (directory, header))
            return {};

        const auto count = juce::jmin (wordAt (&header[12]) + wordAt (&header[14]), maximumDirectoryEntries);

        for (juce::uint32 i = 0; i < count; ++i)
        {
            std::array<juce::uint8, 8> entry;
            const auto offset = (juce::uint64) directory + header.size() + i * entry.size();

            if (offset > std::numeric_limits<juce::uint32>::max() || ! readResource ((juce::uint32) offset, entry))
                return {};

            if (number.has_value() && doubleWordAt (&entry[0]) != *number)
                continue;

            const auto value = doubleWordAt (&entry[4]);
            const bool isDirectory = (value & subdirectoryBit) != 0;

            return isDirectory == wantsDirectory ? std::optional<juce::uint32> (value & ~subdirectoryBit) : std::nullopt;
        }

        return {};
    }

    juce::InputStream& stream;
    const juce::int64 length;
    juce::uint32 resourceAddress = 0;
    std::vector<Section> sections;
};

//==============================================================================
/** The block's key in UTF-16, its end included. */
bool hasVersionKey (const juce::uint8* bytes)
{
    constexpr char key[] = "VS_VERSION_INFO";

    for (size_t i = 0; i < sizeof (key); ++i)
        if (wordAt (bytes + 2 * i) != (juce::uint32) key[i])
            return false;

    return true;
}
}

juce::String readPeProductVersion (juce::InputStream& program)
{
    PeFile file (program);

    if (! file.readHeaders())
        return {};

    const auto resource = file.findVersionResource();
    std::array<juce::uint8, fixedBlockOffset + fixedBlockSize> block;

    if (! resource.has_value() || resource->available < block.size() || ! file.read (resource->position, block))
        return {};

    const auto* fixedBlock = block.data() + fixedBlockOffset;

    if (wordAt (&block[2]) < fixedBlockSize || ! hasVersionKey (&block[6]) || doubleWordAt (fixedBlock) != fixedBlockSignature)
        return {};

    const auto upper = doubleWordAt (fixedBlock + 16);
    const auto lower = doubleWordAt (fixedBlock + 20);

    return juce::String (upper >> 16) + "." + juce::String (upper & 0xffff) + "." + juce::String (lower >> 16);
}
}
