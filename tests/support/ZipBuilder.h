#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zorva::test
{
/** Makes ZIP archives, honest ones and liars: every number and name can be set as it will stand in the bytes. */
class ZipBuilder
{
public:
    struct Entry
    {
        std::string name = {};                       ///< as it will stand in the archive, unchecked
        std::string content = {};                    ///< of a link: where it leads
        int method = 8;                              ///< 0 stored, 8 deflated; any other number stands over stored bytes
        unsigned flags = 0x0800;                     ///< bit 0 encrypted, bit 11 names in UTF-8
        unsigned unixMode = 0100644;                 ///< 0120777 makes a link

        // What the entry's header and the directory state, if not the truth.
        std::optional<std::uint32_t> statedSize = {}, statedCompressedSize = {}, statedCrc = {};
    };

    /** A deflated file. */
    ZipBuilder& file (const std::string& name, const std::string& content);

    /** A folder; a "/" is added to the name. */
    ZipBuilder& folder (const std::string& name);

    /** A symbolic link. */
    ZipBuilder& link (const std::string& name, const std::string& destination);

    /** An empty file that claims to have so many bytes. */
    ZipBuilder& claim (const std::string& name, std::uint32_t size);

    ZipBuilder& add (Entry entry);

    /** The whole archive. */
    std::string bytes() const;

    static std::uint32_t crc32 (const std::string& content);

private:
    std::vector<Entry> entries;
};
}
