#include "install/InstallService.h"

#include "app/HubPaths.h"
#include "app/PathTrust.h"
#include "install/InstallRecord.h"
#include "install/ProductPrograms.h"
#include "platform/ProductVersion.h"
#include "platform/Programs.h"
#include "support/BoundedJson.h"
#include "support/FileHash.h"
#include "support/RegularFile.h"
#include "support/Worker.h"
#include "vault/RecoveryScanner.h"
#include "vault/VaultStore.h"

#include <juce_events/juce_events.h>

namespace
{
constexpr const char* factoryContentWord = "factory-content";

/** Never freed: a worker may still hold it while the process ends. */
juce::CriticalSection& installLock()
{
    static auto& lock = *new juce::CriticalSection();
    return lock;
}

/** Tells the caller on the message thread, whether or not the service still lives. The callback is handed over whole, so that
    what it holds is also released there. */
void report (InstallService::InstallCallback onDone, bool success, const juce::String& message)
{
    juce::MessageManager::callAsync ([callback = std::move (onDone), success, message]
    {
        if (callback != nullptr)
            callback (success, message);
    });
}

bool installApplicationAndRecord (const juce::String& id, const juce::File& installer, juce::String& message)
{
    if (! installer.hasFileExtension ("exe;zip"))
    {
        message = "Unsupported installer type for Windows: " + installer.getFileExtension();
        return false;
    }

    PromotionTransaction transaction;
    juce::File installedFile;

    if (! InstallService::installApplication (id, installer, message, installedFile, transaction))
        return false;

    juce::String recordError;
    const bool recordOk = InstallService::writeInstallRecord (id, installedFile, recordError);
    return InstallService::finishApplicationInstall (transaction, recordOk, recordError, message);
}

void runInstall (const Product& product, const juce::File& installer, InstallService::InstallCallback onDone)
{
    juce::String message;
    bool success = false;

    {
        const juce::ScopedLock lock (installLock());
        success = product.installType == Product::InstallType::factoryContent
                    ? InstallService::installContent (product, installer, message, {})
                    : installApplicationAndRecord (product.id, installer, message);
    }

    report (std::move (onDone), success, message);
}

//==============================================================================
/** The record describes this product and exactly this file. The hash comes last, since it costs as much as reading the file. */
bool matchesRecord (const juce::var& record, const juce::String& id, const juce::File& installer, const juce::String& version)
{
    const auto sha256 = BoundedJson::textIn (record, "sha256").trim().toLowerCase();
    const auto size = BoundedJson::integerIn (record, "sizeBytes");

    return BoundedJson::objectIn (record) != nullptr
        && BoundedJson::textIn (record, "id") == id
        && BoundedJson::textIn (record, "fileName") == installer.getFileName()
        && PathTrust::isValidSha256 (sha256)
        && size > 0 && size == installer.getSize()
        && version.isNotEmpty()
        && sha256OfFile (installer) == sha256;
}

/** A sound pack is held to the catalogue's present release, an application is not: any vaulted version of that can be installed
    offline. */
bool matchesPack (const juce::var& record, const Product& product)
{
    const auto content = BoundedJson::objectIn (record)->getProperty ("content");

    return BoundedJson::textIn (record, "installType") == factoryContentWord
        && BoundedJson::textIn (record, "version") == product.version
        && BoundedJson::objectIn (content) != nullptr
        && BoundedJson::textIn (content, "packId") == product.packId
        && BoundedJson::textIn (content, "archiveRoot") == product.archiveRoot
        && BoundedJson::textIn (content, "defaultPatch") == product.defaultPatch
        && BoundedJson::textIn (content, "licenseFile") == product.licenseFile
        && BoundedJson::textIn (content, "licenseId") == product.licenseId;
}
}

//==============================================================================
InstallService::InstallService()
{
    const auto products = HubPaths::productsDirectory();

    if (products.isDirectory() && PathTrust::hasNoReparseAncestry (products))
        RecoveryScanner::recoverRoot (products, HubPaths::installRecordFile(), recoveryNotes, true);

    recoverContentRoots (recoveryNotes, {});

    for (const auto& note : recoveryNotes)
        juce::Logger::writeToLog ("[INSTALL RECOVERY] " + note);
}

InstallService::~InstallService() = default;

void InstallService::install (const Product& product, const juce::File& installer, InstallCallback onDone)
{
    if (! installer.existsAsFile())
        return report (std::move (onDone), false, "Installer not found in the vault. Download it first.");

    if (! PathTrust::isSafeIdentity (product.id))
        return report (std::move (onDone), false, "The product identity is invalid.");

    juce::String version, error;

    if (! verifyVaultedInstaller (product, installer, version, error))
        return report (std::move (onDone), false, error);

    if (! launchWorker ([product, installer, onDone]() mutable { runInstall (product, installer, std::move (onDone)); }))
        report (std::move (onDone), false, "The installation could not be started.");
}

void InstallService::reinstall (const Product& product, const juce::File& installer, InstallCallback onDone)
{
    install (product, installer, std::move (onDone));
}

bool InstallService::verifyVaultedInstaller (const Product& product, const juce::File& installer, juce::String& version,
                                             juce::String& error)
{
    const auto folder = VaultStore::vaultFolderFor (product.id);
    const auto recordFile = VaultStore::vaultRecordFileFor (product.id);

    if (folder == juce::File() || recordFile == juce::File() || ! PathTrust::isTrustedPathUnder (folder, installer, true)
         || ! recordFile.existsAsFile() || PathTrust::isReparseOrSymlink (recordFile))
    {
        error = "The installer is not the exact trusted payload recorded for this product.";
        return false;
    }

    const auto record = BoundedJson::parseFile (recordFile);
    version = BoundedJson::textIn (record, "version").trim();

    if (! matchesRecord (record, product.id, installer, version))
    {
        error = "The vaulted installer no longer matches its verified identity record.";
        return false;
    }

    if (product.installType == Product::InstallType::factoryContent && ! matchesPack (record, product))
    {
        error = "The vaulted sound pack does not match its current trusted manifest.";
        return false;
    }

    return true;
}

//==============================================================================
juce::File InstallService::installedLocation (const Product& product)
{
    return product.installType == Product::InstallType::factoryContent ? locateInstalledContent (product, {})
                                                                       : findInstalledExecutable (product.id);
}

juce::File InstallService::findInstalledExecutable (const juce::String& id)
{
    if (! PathTrust::isSafeIdentity (id))
        return {};

    return ProductPrograms::find (id, InstallRecord::readPath (id), ProductPrograms::looseProgramsNow());
}

bool InstallService::launch (const juce::String& id)
{
    const auto program = findInstalledExecutable (id);
    return program.existsAsFile() && platform::startProgram (program);
}

juce::String InstallService::installedVersion (const juce::File& file)
{
    return file.hasFileExtension ("exe") && isRegularFile (file) ? platform::productVersionOf (file) : juce::String();
}
