#include "support/ZipBuilder.h"

#include <array>
#include <juce_core/juce_core.h>

namespace zorva::test
{
namespace
{
void append16 (std::string& bytes, unsigned value)
{
    bytes += (char) (value & 0xff);
    bytes += (char) ((value >> 8) & 0xff);
}

void append32 (std::string& bytes, std::uint32_t value)
{
    append16 (bytes, value & 0xffff);
    append16 (bytes, value >> 16);
}

std::string deflated (const std::string& content)
{
    juce::MemoryOutputStream result;

    {
        juce::GZIPCompressorOutputStream compressor (result, 6, juce::GZIPCompressorOutputStream::windowBitsRaw);
        compressor.write (content.data(), content.size());
    }

    return { static_cast<const char*> (result.getData()), result.getDataSize() };
}

/** The fields that stand alike in an entry's own header and in the directory. */
std::string sharedFieldsOf (const ZipBuilder::Entry& entry, size_t packedSize)
{
    std::string bytes;
    append16 (bytes, 20);                     // version needed
    append16 (bytes, entry.flags);
    append16 (bytes, (unsigned) entry.method);
    append16 (bytes, 0);                      // time
    append16 (bytes, (46 << 9) | (1 << 5) | 1);    // the first of January 2026
    append32 (bytes, entry.statedCrc.value_or (ZipBuilder::crc32 (entry.content)));
    append32 (bytes, entry.statedCompressedSize.value_or ((std::uint32_t) packedSize));
    append32 (bytes, entry.statedSize.value_or ((std::uint32_t) entry.content.size()));
    append16 (bytes, (unsigned) entry.name.size());
    append16 (bytes, 0);                      // no extra field
    return bytes;
}
}

//==============================================================================
ZipBuilder& ZipBuilder::file (const std::string& name, const std::string& content)
{
    return add ({ .name = name, .content = content });
}

ZipBuilder& ZipBuilder::folder (const std::string& name)
{
    return add ({ .name = name + "/", .method = 0, .unixMode = 0040755 });
}

ZipBuilder& ZipBuilder::link (const std::string& name, const std::string& destination)
{
    return add ({ .name = name, .content = destination, .method = 0, .unixMode = 0120777 });
}

ZipBuilder& ZipBuilder::claim (const std::string& name, std::uint32_t size)
{
    return add ({ .name = name, .statedSize = size });
}

ZipBuilder& ZipBuilder::add (Entry entry)
{
    entries.push_back (std::move (entry));
    return *this;
}

std::string ZipBuilder::bytes() const
{
    std::string archive, directory;

    for (const auto& entry : entries)
    {
        const auto packed = entry.method == 8 ? deflated (entry.content) : entry.content;
        const auto shared = sharedFieldsOf (entry, packed.size());

        append32 (directory, 0x02014b50);
        append16 (directory, (3 << 8) | 20);    // made on Unix
        directory += shared;
        append16 (directory, 0);                // no comment
        append16 (directory, 0);                // disk
        append16 (directory, 0);                // internal attributes
        append32 (directory, (std::uint32_t) entry.unixMode << 16);
        append32 (directory, (std::uint32_t) archive.size());
        directory += entry.name;

        append32 (archive, 0x04034b50);
        archive += shared + entry.name + packed;
    }

    const auto offset = archive.size();
    archive += directory;
    append32 (archive, 0x06054b50);
    append16 (archive, 0);
    append16 (archive, 0);
    append16 (archive, (unsigned) entries.size());
    append16 (archive, (unsigned) entries.size());
    append32 (archive, (std::uint32_t) directory.size());
    append32 (archive, (std::uint32_t) offset);
    append16 (archive, 0);
    return archive;
}

std::uint32_t ZipBuilder::crc32 (const std::string& content)
{
    static const auto table = []
    {
        std::array<std::uint32_t, 256> result {};

        for (std::uint32_t i = 0; i < 256; ++i)
        {
            auto value = i;

            for (int bit = 0; bit < 8; ++bit)
                value = (value & 1) != 0 ? (value >> 1) ^ 0xedb88320u : value >> 1;

            result[i] = value;
        }

        return result;
    }();

    auto value = 0xffffffffu;

    for (const char c : content)
        value = table[(value ^ (std::uint8_t) c) & 0xff] ^ (value >> 8);

    return ~value;
}
}
