#pragma once

#include "install/ZipArchive.h"

#include <unordered_set>

/** Where each entry of an archive goes, judged as a whole before the first byte is written. Pure: looks at names, never at the
    disk. */
class ExtractionPlan
{
public:
    /** One file to write. */
    struct PlannedFile
    {
        const ZipArchive::Entry* entry;    ///< owned by whoever gave the entries
        juce::String path;                 ///< below the target, with "/" between its steps
    };

    /** Takes up every entry, which must outlive the plan. Fails with a sentence at the first that may not be unpacked. */
    juce::Result addAll (const std::vector<ZipArchive::Entry>& entries);

    /** In the order of the archive. */
    const std::vector<PlannedFile>& getFiles() const { return files; }

    /** Below the target, with "/" between their steps; every folder stands behind the one it lies in. */
    const std::vector<juce::String>& getFolders() const { return folders; }

private:
    juce::Result add (const ZipArchive::Entry& entry);
    juce::Result addFile (const ZipArchive::Entry& entry, const juce::String& path);
    juce::Result addFolder (const juce::String& path);
    juce::Result addParentOf (const juce::String& path);

    std::vector<PlannedFile> files;
    std::vector<juce::String> folders;
    std::unordered_set<juce::String> knownFolders;                          // as written
    std::unordered_set<juce::String> filesInOneCase, foldersInOneCase;
};
