#include "install/InstallService.h"

#include "app/HubPaths.h"
#include "app/PathTrust.h"
#include "install/ArchiveExtractor.h"
#include "install/InstallRecord.h"
#include "install/ProductPrograms.h"
#include "platform/CaseFold.h"
#include "platform/Programs.h"
#include "support/ChildFile.h"
#include "support/RegularFile.h"
#include "vault/VaultStore.h"

namespace
{
/** Puts the one executable into the staging directory; path is relative to it. A full disk is silent, so the sizes are compared. */
bool stageExecutable (const juce::File& installer, const juce::File& staging, juce::String& path)
{
    path = installer.getFileName();
    const auto staged = childOf (staging, path);

    return installer.copyFileTo (staged) && staged.getSize() == installer.getSize();
}

/** Unpacks the package into the staging directory and finds its one executable; path is relative to it. False with a whole
    sentence in error. */
bool stagePackage (const juce::File& installer, const juce::File& staging, juce::String& path, juce::String& error)
{
    ZipArchive archive (installer.createInputStream());

    if (archive.getEntries().empty())
    {
        error = "The Windows package is empty or corrupt.";
        return false;
    }

    if (const auto result = ArchiveExtractor::extractAll (archive, staging); result.failed())
    {
        error = "Could not extract the Windows package: " + result.getErrorMessage();
        return false;
    }

    const auto programs = ProductPrograms::programsIn (staging, true);

    if (programs.size() != 1)
    {
        error = "The Windows package must contain exactly one application executable.";
        return false;
    }

    path = programs[0].getRelativePathFrom (staging);
    return true;
}

/** Fills the staging directory with what shall be live. False with a whole sentence in error. */
bool stage (const juce::File& installer, const juce::File& staging, const juce::File& destination, juce::String& path,
            juce::String& error)
{
    if (installer.hasFileExtension ("zip"))
    {
        if (! stagePackage (installer, staging, path, error))
            return false;
    }
    else if (! stageExecutable (installer, staging, path))
    {
        error = "Could not copy the installer to " + destination.getFullPathName();
        return false;
    }

    // Before it goes live, so that what is live can always be started.
    if (platform::allowExecution (childOf (staging, path)))
        return true;

    error = "Could not give the application the permission to run.";
    return false;
}

/** Makes the products directory and judges the destination in it. False with a whole sentence in error. */
bool prepareDestination (const juce::String& id, juce::String& error)
{
    const auto root = HubPaths::productsDirectory();

    if (! root.createDirectory().wasOk())
        error = "Could not create " + root.getFullPathName();
    else if (! PathTrust::isTrustedPathUnder (root, ProductPrograms::directoryOf (id), true))
        error = "The product destination has untrusted symlink/reparse ancestry.";
    else if (VaultStore::hasCaseCollision (root, id))
        error = "A case-colliding product install directory already exists.";
    else
        return true;

    return false;
}
}

bool InstallService::installApplication (const juce::String& id, const juce::File& installer, juce::String& message,
                                         juce::File& installedFile, PromotionTransaction& transaction)
{
    if (! PathTrust::isSafeIdentity (id))
    {
        message = "The product identity is invalid.";
        return false;
    }

    if (! prepareDestination (id, message))
        return false;

    const auto destination = ProductPrograms::directoryOf (id);
    const auto staging = childOf (HubPaths::productsDirectory(), id + ".installing-" + juce::Uuid().toString());
    staging.deleteRecursively (false);

    if (! staging.createDirectory().wasOk())
    {
        message = "Could not create a temporary install directory.";
        return false;
    }

    juce::String path;

    if (! stage (installer, staging, destination, path, message)
         || ! transaction.activate (staging, destination, message, HubPaths::installRecordFile()))
    {
        staging.deleteRecursively (false);
        return false;
    }

    installedFile = childOf (destination, path);
    message = "Installed to " + destination.getFullPathName() + ".";
    return true;
}

bool InstallService::writeInstallRecord (const juce::String& id, const juce::File& file, juce::String& error)
{
    if (! isOwnedInstallPath (id, file))
    {
        error = "Invalid product identity or installed location.";
        return false;
    }

    return InstallRecord::write (id, file, error);
}

bool InstallService::finishApplicationInstall (PromotionTransaction& transaction, bool recordOk, const juce::String& recordError,
                                               juce::String& message)
{
    if (recordOk)
    {
        juce::String note;
        const bool committed = transaction.commit (note);

        if (! committed)
            message = note;
        else if (note.isNotEmpty())
            message << " " << note;

        return committed;
    }

    const bool hasSomethingToUndo = transaction.isActive() || transaction.getState() == "backup_moved"
                                                           || transaction.getState() == "activated";
    juce::String detail;
    const bool restored = ! hasSomethingToUndo || transaction.rollback (detail);

    message = "The product was copied, but its atomic install record could not be committed: " + recordError;

    if (! restored)
        message << " " << detail;
    else
        message << " The previous install was restored." << (detail.isNotEmpty() ? " " + detail : juce::String());

    return false;
}

//==============================================================================
bool InstallService::isOwnedInstallPath (const juce::String& id, const juce::File& file)
{
    if (! PathTrust::isSafeIdentity (id) || ! file.hasFileExtension ("exe"))
        return false;

    // The file itself is asked for last: a record may name one on any machine of the network.
    const auto directory = ProductPrograms::directoryOf (id);

    return directory.isDirectory()
        && PathTrust::hasNoReparseAncestry (directory)
        && PathTrust::isCanonicallyInside (directory, file, false)
        && isRegularFile (file)
        && PathTrust::hasNoReparseAncestry (file);
}

bool InstallService::matchesProductName (const juce::String& stem, const juce::String& id)
{
    if (! PathTrust::isSafeIdentity (id))
        return false;

    const auto name = platform::foldCase (stem);
    const auto identity = platform::foldCase (id);
    return name == identity || name == identity.replaceCharacter ('-', ' ');
}
