#pragma once

#include <cstdint>
#include <string>

namespace zorva::test
{
/** The smallest Windows program image that carries a version: headers, one section, a resource tree of three levels and the fixed
    version block, which ends the file. It holds no code and cannot run. Every number of it can be falsified. */
class PeImage
{
public:
    enum class Format { pe32, pe32Plus };

    /** Four 16-bit numbers make a version; the upper two and the lower two each come in one value. */
    PeImage (Format format, std::uint32_t productUpper, std::uint32_t productLower);

    void set16 (size_t position, std::uint16_t value);
    void set32 (size_t position, std::uint32_t value);

    // Where things stand in the bytes.
    static constexpr size_t peHeader = 0x40;
    static constexpr size_t sectionCount = peHeader + 6;
    static constexpr size_t optionalHeaderSize = peHeader + 20;
    static constexpr size_t optionalHeader = peHeader + 24;
    static constexpr size_t typeDirectory = 0x200;                      // the section's first byte
    static constexpr size_t versionEntry = typeDirectory + 24;          // the second of two
    static constexpr size_t nameDirectory = versionEntry + 8;
    static constexpr size_t languageDirectory = nameDirectory + 24;
    static constexpr size_t dataEntry = languageDirectory + 24;
    static constexpr size_t versionBlock = dataEntry + 16;
    static constexpr size_t fixedBlock = versionBlock + 40;
    static constexpr std::uint32_t sectionAddress = 0x1000;

    /** The count of data directories, the resource directory's address, and the one section header. */
    size_t directoryCount = 0, resourceDirectory = 0, sectionHeader = 0;

    std::string bytes;

private:
    void addDirectory (size_t position, std::uint16_t numberOfEntries);
    void addEntry (size_t position, std::uint32_t number, std::uint32_t offset);
    void addVersionBlock (std::uint32_t productUpper, std::uint32_t productLower);
};
}
