#include "install/InstallService.h"

#include "app/HubPaths.h"
#include "app/PathTrust.h"
#include "install/ArchiveExtractor.h"
#include "install/ContentArchive.h"
#include "install/FolderWalk.h"
#include "support/BoundedJson.h"
#include "support/ChildFile.h"
#include "support/RecordFile.h"
#include "support/RegularFile.h"
#include "vault/RecoveryScanner.h"
#include "vault/VaultStore.h"

namespace
{
constexpr int manifestSchema = 1;

juce::File manifestIn (const juce::File& folder)
{
    return folder.getChildFile ("manifest.json");
}

bool isPlainFile (const juce::File& file)
{
    return isRegularFile (file) && ! PathTrust::isReparseOrSymlink (file);
}

bool isPlainDirectory (const juce::File& folder)
{
    return folder.isDirectory() && PathTrust::hasNoReparseAncestry (folder);
}

bool isSafePath (const juce::String& path)
{
    return PathTrust::isSafeRelativeFilePath (path) && ! PathTrust::hasReservedDeviceStep (path);
}

/** Makes the root and the pack's directory, each judged before and after. False with a whole sentence in error. */
bool prepareDestination (const Product& product, const juce::File& root, const juce::File& packDirectory, juce::String& error)
{
    if (! PathTrust::hasNoReparseAncestry (root) || ! (root.exists() || root.createDirectory().wasOk())
         || ! isPlainDirectory (root) || VaultStore::hasCaseCollision (root, product.id))
        error = "The factory-content root is unavailable or untrusted.";
    else if (! packDirectory.exists() && ! packDirectory.createDirectory().wasOk())
        error = "Could not create the factory-content pack directory.";
    else if (! PathTrust::isTrustedPathUnder (root, packDirectory, true) || ! isPlainDirectory (packDirectory)
              || VaultStore::hasCaseCollision (packDirectory, product.version))
        error = "The factory-content destination is untrusted.";
    else
        return true;

    return false;
}

bool extract (ZipArchive& archive, const juce::File& staging, juce::String& error)
{
    const auto result = ArchiveExtractor::extractAll (archive, staging);

    if (result.failed())
        error = "Could not extract the verified content archive: " + result.getErrorMessage();

    return result.wasOk();
}

/** A plain file in a folder that is itself canonically inside lies there too, so only folders cost the full question: a pack may
    hold tens of thousands of files. */
bool holdsNoLinkOrEscape (const juce::File& staging)
{
    return visitAllBelow (staging, [&staging] (const FolderItem& item)
    {
        std::error_code error;

        if (item.entry.is_symlink (error) || error)
            return false;

        const auto child = childOf (staging, item.path);
        return ! item.entry.is_directory (error)
            || (! PathTrust::isReparseOrSymlink (child) && PathTrust::isCanonicallyInside (staging, child, false));
    });
}
}

//==============================================================================
bool InstallService::installContent (const Product& product, const juce::File& archive, juce::String& message,
                                     const juce::File& rootOverride)
{
    if (! validateContentProduct (product) || ! isPlainFile (archive) || ! archive.hasFileExtension ("zip"))
    {
        message = "The factory-content identity or archive is invalid.";
        return false;
    }

    ZipArchive zip (archive.createInputStream());
    message = ContentArchive::refusalOf (zip);

    const auto root = contentRoot (rootOverride);
    const auto packDirectory = childOf (root, product.id);

    if (message.isNotEmpty() || ! prepareDestination (product, root, packDirectory, message))
        return false;

    const auto versionDirectory = childOf (packDirectory, product.version);
    const auto staging = childOf (packDirectory, product.version + ".installing-" + juce::Uuid().toString());

    if (! staging.createDirectory().wasOk())
    {
        message = "Could not create the content staging directory.";
        return false;
    }

    PromotionTransaction transaction;
    juce::String error, note;

    if (extract (zip, staging, error)
         && verifyExtractedContent (staging, product, error)
         && writeContentManifest (product, staging, error)
         && transaction.activate (staging, versionDirectory, error, {}))
    {
        if (transaction.commit (note))
        {
            message = "Installed " + product.name + " to " + versionDirectory.getFullPathName() + "."
                    + (note.isNotEmpty() ? " " + note : juce::String());
            return true;
        }

        error = note;
    }

    PromotionTransaction::removePath (staging);
    message = error.isNotEmpty() ? error : "The content installation failed safely.";
    return false;
}

bool InstallService::validateContentProduct (const Product& product)
{
    return product.installType == Product::InstallType::factoryContent
        && product.packId == product.id
        && PathTrust::isSafeIdentity (product.id)
        && PathTrust::isSafeFileName (product.version)
        && isSafePath (product.archiveRoot) && ! product.archiveRoot.containsChar ('/')
        && isSafePath (product.defaultPatch) && product.defaultPatch.startsWith (product.archiveRoot + "/")
        && isSafePath (product.licenseFile) && product.licenseFile.startsWith (product.archiveRoot + "/")
        && product.licenseId.isNotEmpty();
}

juce::File InstallService::contentRoot (const juce::File& rootOverride)
{
    return rootOverride != juce::File() ? rootOverride : HubPaths::factoryContentDirectory();
}

bool InstallService::hasUniquePaths (const juce::StringArray& names)
{
    return ContentArchive::hasUniquePaths (names);
}

bool InstallService::verifyExtractedContent (const juce::File& staging, const Product& product, juce::String& error)
{
    const auto rootFolder = childOf (staging, product.archiveRoot);
    const auto patch = childOf (staging, product.defaultPatch);
    const auto licence = childOf (staging, product.licenseFile);

    if (! rootFolder.isDirectory() || PathTrust::isReparseOrSymlink (rootFolder) || ! isPlainFile (patch) || ! isPlainFile (licence)
         || ! PathTrust::isTrustedPathUnder (staging, rootFolder, true)
         || ! PathTrust::isTrustedPathUnder (staging, patch, false)
         || ! PathTrust::isTrustedPathUnder (staging, licence, false))
    {
        error = "The archive is missing its trusted instrument patch or license.";
        return false;
    }

    if (! holdsNoLinkOrEscape (staging))
    {
        error = "The extracted content contains an unsafe link or escaped path.";
        return false;
    }

    return true;
}

bool InstallService::writeContentManifest (const Product& product, const juce::File& staging, juce::String& error)
{
    const auto* platform = product.windowsPlatform();

    if (platform == nullptr)
    {
        error = "The content archive identity is missing for this platform.";
        return false;
    }

    const juce::var manifest (new juce::DynamicObject());
    auto& object = *BoundedJson::objectIn (manifest);
    object.setProperty ("schema", manifestSchema);
    object.setProperty ("packId", product.packId);
    object.setProperty ("version", product.version);
    object.setProperty ("displayName", product.name);
    object.setProperty ("license", product.licenseId);
    object.setProperty ("defaultPatch", product.defaultPatch);
    object.setProperty ("sourceUrl", platform->url);
    object.setProperty ("archiveSha256", platform->sha256.toLowerCase());

    if (RecordFile::replace (manifestIn (staging), RecordFile::toText (manifest)) == RecordFile::Outcome::written)
        return true;

    error = "Could not create the canonical content manifest.";
    return false;
}

//==============================================================================
juce::File InstallService::locateInstalledContent (const Product& product, const juce::File& rootOverride)
{
    if (! validateContentProduct (product))
        return {};

    const auto root = contentRoot (rootOverride);
    const auto packDirectory = childOf (root, product.id);
    const auto versionDirectory = childOf (packDirectory, product.version);

    if (! isPlainDirectory (root)
         || ! PathTrust::isTrustedPathUnder (root, packDirectory, true)
         || ! PathTrust::isTrustedPathUnder (packDirectory, versionDirectory, true))
        return {};

    const auto manifest = BoundedJson::parseFile (manifestIn (versionDirectory));

    const bool isThisPack = BoundedJson::integerIn (manifest, "schema") == manifestSchema
                         && BoundedJson::textIn (manifest, "packId") == product.id
                         && BoundedJson::textIn (manifest, "version") == product.version
                         && BoundedJson::textIn (manifest, "defaultPatch") == product.defaultPatch
                         && BoundedJson::textIn (manifest, "license") == product.licenseId
                         && isPlainFile (childOf (versionDirectory, product.defaultPatch))
                         && isPlainFile (childOf (versionDirectory, product.licenseFile));

    return isThisPack ? versionDirectory : juce::File();
}

void InstallService::recoverContentRoots (juce::StringArray& notes, const juce::File& rootOverride)
{
    const auto root = contentRoot (rootOverride);

    if (! isPlainDirectory (root))
        return;

    const auto folders = root.findChildFiles (juce::File::findDirectories, false, "*", juce::File::FollowSymlinks::no);

    for (const auto& folder : folders)
        if (PathTrust::isSafeIdentity (folder.getFileName()) && PathTrust::isTrustedPathUnder (root, folder, true))
            RecoveryScanner::recoverRoot (folder, {}, notes, true);
}
