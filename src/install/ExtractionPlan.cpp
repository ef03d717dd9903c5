#include "install/ExtractionPlan.h"

#include "app/PathTrust.h"
#include "platform/CaseFold.h"

namespace
{
/** As many as a plain ZIP file has entries. Names of many steps stand for many more folders than entries, and each is remembered. */
constexpr size_t mostFolders = 65536;

juce::Result collisionAt (const juce::String& path)
{
    return juce::Result::fail ("Two entries claim the path " + path + ".");
}

juce::Result unsafeName()
{
    return juce::Result::fail ("An entry has an unsafe name.");
}

juce::String lastStepOf (const juce::String& path)
{
    return path.fromLastOccurrenceOf ("/", false, false);
}
}

juce::Result ExtractionPlan::addAll (const std::vector<ZipArchive::Entry>& entries)
{
    for (const auto& entry : entries)
        if (const auto result = add (entry); result.failed())
            return result;

    return juce::Result::ok();
}

juce::Result ExtractionPlan::add (const ZipArchive::Entry& entry)
{
    auto path = entry.name.replaceCharacter ('\\', '/');

    if (entry.isFolder())
        path = path.dropLastCharacters (1);

    if (! PathTrust::isSafeRelativePath (path) || ! PathTrust::isSafeFileName (lastStepOf (path)))
        return unsafeName();

    if (entry.isSymbolicLink)
        return juce::Result::fail ("The entry " + path + " is a link.");

    if (entry.isFolder())
        return entry.uncompressedSize == 0 ? addFolder (path)
                                           : juce::Result::fail ("The entry " + path + " is a folder with content.");

    if (! entry.canBeUnpacked())
        return juce::Result::fail ("The entry " + path + " is encrypted or packed by an unknown method.");

    return addFile (entry, path);
}

juce::Result ExtractionPlan::addFile (const ZipArchive::Entry& entry, const juce::String& path)
{
    if (const auto result = addParentOf (path); result.failed())
        return result;

    const auto folded = platform::foldCase (path);

    if (foldersInOneCase.contains (folded) || ! filesInOneCase.insert (folded).second)
        return collisionAt (path);

    files.push_back ({ &entry, path });
    return juce::Result::ok();
}

juce::Result ExtractionPlan::addFolder (const juce::String& path)
{
    if (knownFolders.contains (path))
        return juce::Result::ok();

    if (! PathTrust::isSafeFileName (lastStepOf (path)))
        return unsafeName();

    if (const auto result = addParentOf (path); result.failed())
        return result;

    const auto folded = platform::foldCase (path);

    if (filesInOneCase.contains (folded))
        return collisionAt (path);

    if (folders.size() == mostFolders)
        return juce::Result::fail ("It has too many folders.");

    foldersInOneCase.insert (folded);
    knownFolders.insert (path);
    folders.push_back (path);
    return juce::Result::ok();
}

juce::Result ExtractionPlan::addParentOf (const juce::String& path)
{
    const auto separator = path.lastIndexOfChar ('/');
    return separator < 0 ? juce::Result::ok() : addFolder (path.substring (0, separator));
}
