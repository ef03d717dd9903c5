#include "support/PeImage.h"

namespace zorva::test
{
namespace
{
constexpr std::uint32_t subdirectory = 0x80000000u;
constexpr std::uint32_t iconType = 3, versionType = 16;
constexpr size_t blockSize = 92;
}

PeImage::PeImage (Format format, std::uint32_t productUpper, std::uint32_t productLower)
    : bytes (versionBlock + blockSize, '\0')
{
    const bool plus = format == Format::pe32Plus;
    const size_t fixedPart = plus ? 112 : 96;
    const size_t optionalSize = fixedPart + 16 * 8;

    bytes.replace (0, 2, "MZ");
    set32 (0x3c, peHeader);
    bytes.replace (peHeader, 2, "PE");
    set16 (peHeader + 4, plus ? 0x8664 : 0x14c);
    set16 (sectionCount, 1);
    set16 (optionalHeaderSize, (std::uint16_t) optionalSize);
    set16 (optionalHeader, plus ? 0x20b : 0x10b);

    directoryCount = optionalHeader + fixedPart - 4;
    resourceDirectory = optionalHeader + fixedPart + 2 * 8;
    sectionHeader = optionalHeader + optionalSize;

    const auto sectionSize = (std::uint32_t) (bytes.size() - typeDirectory);
    set32 (directoryCount, 16);
    set32 (resourceDirectory, sectionAddress);
    set32 (resourceDirectory + 4, sectionSize);
    bytes.replace (sectionHeader, 5, ".rsrc");
    set32 (sectionHeader + 8, sectionSize);
    set32 (sectionHeader + 12, sectionAddress);
    set32 (sectionHeader + 16, sectionSize);
    set32 (sectionHeader + 20, (std::uint32_t) typeDirectory);

    // Icons come before versions; their directory is not looked at.
    addDirectory (typeDirectory, 2);
    addEntry (typeDirectory + 16, iconType, subdirectory);
    addEntry (versionEntry, versionType, subdirectory | (std::uint32_t) (nameDirectory - typeDirectory));

    addDirectory (nameDirectory, 1);
    addEntry (nameDirectory + 16, 1, subdirectory | (std::uint32_t) (languageDirectory - typeDirectory));

    addDirectory (languageDirectory, 1);
    addEntry (languageDirectory + 16, 0x409, (std::uint32_t) (dataEntry - typeDirectory));

    set32 (dataEntry, sectionAddress + (std::uint32_t) (versionBlock - typeDirectory));
    set32 (dataEntry + 4, blockSize);
    addVersionBlock (productUpper, productLower);
}

void PeImage::set16 (size_t position, std::uint16_t value)
{
    bytes.at (position) = (char) (value & 0xff);
    bytes.at (position + 1) = (char) (value >> 8);
}

void PeImage::set32 (size_t position, std::uint32_t value)
{
    set16 (position, (std::uint16_t) (value & 0xffff));
    set16 (position + 2, (std::uint16_t) (value >> 16));
}

void PeImage::addDirectory (size_t position, std::uint16_t numberOfEntries)
{
    set16 (position + 14, numberOfEntries);
}

void PeImage::addEntry (size_t position, std::uint32_t number, std::uint32_t offset)
{
    set32 (position, number);
    set32 (position + 4, offset);
}

void PeImage::addVersionBlock (std::uint32_t productUpper, std::uint32_t productLower)
{
    const std::string key = "VS_VERSION_INFO";

    set16 (versionBlock, blockSize);
    set16 (versionBlock + 2, 52);

    for (size_t i = 0; i < key.size(); ++i)
        set16 (versionBlock + 6 + 2 * i, (std::uint16_t) key[i]);

    set32 (fixedBlock, 0xFEEF04BDu);
    set32 (fixedBlock + 4, 0x00010000u);
    set32 (fixedBlock + 8, 0x00630062u);      // the file's version, which is not asked for
    set32 (fixedBlock + 12, 0x00610060u);
    set32 (fixedBlock + 16, productUpper);
    set32 (fixedBlock + 20, productLower);
}
}
