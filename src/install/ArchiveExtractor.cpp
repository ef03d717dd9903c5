#include "install/ArchiveExtractor.h"

#include "install/ExtractionPlan.h"
#include "install/FolderWalk.h"
#include "support/ChildFile.h"

#include <unordered_map>
#include <zlib.h>

namespace ArchiveExtractor
{
namespace
{
constexpr int pieceSize = 256 * 1024;

juce::Result notWritten (const juce::String& path)
{
    return juce::Result::fail ("Could not write " + path + ".");
}

juce::Result damaged (const juce::String& path, const juce::String& how)
{
    return juce::Result::fail ("The entry " + path + " is damaged: " + how + ".");
}

//==============================================================================
/** Writes the planned files below one target. */
class Writer
{
public:
    Writer (ZipArchive& archiveToRead, const juce::File& targetFolder)
        : archive (archiveToRead), target (targetFolder), piece (pieceSize) {}

    juce::Result makeFolders (const std::vector<juce::String>& folders)
    {
        for (const auto& path : folders)
            if (! childOf (target, path).createDirectory().wasOk())
                return juce::Result::fail ("Could not create the folder " + path + ".");

        return juce::Result::ok();
    }

    juce::Result writeFiles (const std::vector<ExtractionPlan::PlannedFile>& files)
    {
        for (const auto& planned : files)
        {
            const auto file = childOf (target, planned.path);

            if (const auto result = writeFile (*planned.entry, planned.path, file); result.failed())
                return result;

            file.setLastModificationTime (planned.entry->modified);
        }

        return juce::Result::ok();
    }

private:
    juce::Result writeFile (const ZipArchive::Entry& entry, const juce::String& path, const juce::File& file)
    {
        const auto packed = archive.open (entry);

        if (packed == nullptr)
            return damaged (path, "its header cannot be read");

        juce::FileOutputStream out (file, 0);    // no buffer, so that each write answers for itself

        if (! out.openedOk())
            return notWritten (path);

        auto missing = entry.uncompressedSize;
        auto checksum = ::crc32 (0, nullptr, 0);

        for (;;)
        {
            const auto size = packed->read (piece, pieceSize);

            if (size <= 0)
                break;

            if (size > missing)
                return damaged (path, "it is larger than the archive says");

            if (! out.write (piece, (size_t) size))
                return notWritten (path);

            checksum = ::crc32 (checksum, piece, (uInt) size);
            missing -= size;
        }

        if (missing > 0)
            return damaged (path, "it is smaller than the archive says");

        return checksum == entry.crc32 ? juce::Result::ok() : damaged (path, "its checksum differs");
    }

    ZipArchive& archive;
    const juce::File target;
    juce::HeapBlock<juce::uint8> piece;
};

//==============================================================================
/** True when below the folder stand exactly the planned files, each with its stated size, and nothing else but folders. Believes
    the disk alone: a file system may hold less than was written, and may take two names for one. */
bool holdsExactly (const juce::File& folder, const std::vector<ExtractionPlan::PlannedFile>& files)
{
    std::unordered_map<juce::String, juce::uint64> missing;
    missing.reserve (files.size());

    for (const auto& planned : files)
        missing.emplace (planned.path, (juce::uint64) planned.entry->uncompressedSize);

    const auto isAsPlanned = [&missing] (const FolderItem& item)
    {
        std::error_code error;

        if (item.entry.is_symlink (error))
            return false;

        if (item.entry.is_directory (error))
            return true;

        const auto planned = missing.find (item.path);

        if (planned == missing.end() || ! item.entry.is_regular_file (error) || item.entry.file_size (error) != planned->second)
            return false;

        missing.erase (planned);
        return true;
    };

    return visitAllBelow (folder, isAsPlanned) && missing.empty();
}
}

juce::Result extractAll (ZipArchive& archive, const juce::File& target)
{
    ExtractionPlan plan;

    if (const auto result = plan.addAll (archive.getEntries()); result.failed())
        return result;

    if (! target.createDirectory().wasOk() || target.getNumberOfChildFiles (juce::File::findFilesAndDirectories) > 0)
        return juce::Result::fail ("There is no empty folder to unpack into.");

    Writer writer (archive, target);

    if (const auto result = writer.makeFolders (plan.getFolders()); result.failed())
        return result;

    if (const auto result = writer.writeFiles (plan.getFiles()); result.failed())
        return result;

    return holdsExactly (target, plan.getFiles()) ? juce::Result::ok()
                                                  : juce::Result::fail ("The unpacked files differ from what the archive says.");
}
}
