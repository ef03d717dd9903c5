#pragma once

#include <juce_core/juce_core.h>
#include <memory>
#include <vector>

/** A ZIP archive (APPNOTE 6.3, without its 64-bit extensions) that is opened once, judged by what its directory states, and unpacked
    from the same open file.

    It reads the directory itself, because juce::ZipFile keeps checksums, methods and encryption to itself, and loads a whole file
    into memory when its directory is not where it should be. What the directory states may still be a lie: whoever unpacks an entry
    compares. One object belongs to one thread. */
class ZipArchive
{
public:
    /** What the directory states about one entry. */
    struct Entry
    {
        juce::String name;                       ///< as written; empty when it is no text (UTF-8)
        juce::int64 uncompressedSize = 0;        ///< bytes
        juce::int64 compressedSize = 0;          ///< bytes
        juce::int64 headerOffset = 0;            ///< of the entry's own header, from the archive's first byte
        juce::uint32 crc32 = 0;                  ///< of the uncompressed bytes
        int method = 0;                          ///< 0 stored, 8 deflated
        bool isEncrypted = false;
        bool isSymbolicLink = false;
        juce::Time modified;                     ///< in the user's own time zone, as the format has it

        /** It stands for a folder: its name ends with a separator of either kind. */
        bool isFolder() const { return name.endsWithChar ('/') || name.endsWithChar ('\\'); }

        /** It is stored or deflated, and not encrypted. */
        bool canBeUnpacked() const;
    };

    /** Reads the directory. source may be null. There are no entries when it is no archive, when its directory is damaged, and
        when that is larger than 128 MiB. */
    explicit ZipArchive (std::unique_ptr<juce::InputStream> source);
    ~ZipArchive();

    /** At most 65,535, in the order of the directory. */
    const std::vector<Entry>& getEntries() const { return entries; }

    /** The entry's bytes, unpacked; null when its own header is damaged or leads out of the archive, when it is encrypted, and when
        its method is unknown. The stream ends early at damaged bytes and goes on behind the stated size if there are more. It reads
        through this object, which must outlive it, so only one may be in use at a time. */
    std::unique_ptr<juce::InputStream> open (const Entry& entry);

private:
    struct Directory;

    Directory findDirectory();
    bool readEntries (const Directory& directory);

    std::unique_ptr<juce::InputStream> source;
    juce::int64 dataEnd = 0;                     ///< where the directory begins; all entries lie before it
    std::vector<Entry> entries;

    JUCE_DECLARE_NON_COPYABLE (ZipArchive)
};
