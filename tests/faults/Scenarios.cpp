#include "Scenarios.h"

#include "Fixtures.h"
#include "app/HubPaths.h"
#include "app/HubSettings.h"
#include "install/InstallService.h"
#include "vault/DownloadVerification.h"
#include "vault/VaultStore.h"

namespace faults
{
namespace
{
using Type = Product::InstallType;

const juce::String id ("zorva-test");
const std::string vaultFolder = ".config/ZORVA Hub/Vault/zorva-test";
const std::string productFolder = ".local/share/ZORVA/Products/zorva-test";
const std::string installRecord = ".config/ZORVA Hub/installed.json";
const std::string packVersion = ".config/ZORVA DAW/Factory Content/zorva-test/2.0.0";

const std::vector<StartState> allStates { { false, false }, { true, false }, { false, true }, { true, true } };
const std::vector<StartState> targetStates { { false, false }, { true, false } };
const std::vector<StartState> recordStates { { true, false }, { true, true } };

Answer answerOf (bool success, const juce::String& message) { return { success, message.toStdString() }; }

//==============================================================================
// Downloads. The verified transfer lies beside its target; a record without a target names the installer of an earlier release.

juce::File vaultFile (const juce::String& name) { return VaultStore::vaultFolderFor (id).getChildFile (name); }

void vaultOldRelease (const juce::String& fileName)
{
    const auto installer = vaultFile (fileName);
    writePayload (installer, "old");
    VaultStore::writeVaultRecord (productFor (Type::application, "1.0.0", installer), "win", installer);
}

void prepareDownload (StartState state)
{
    HubPaths::ensureDirectories();
    VaultStore::vaultFolderFor (id).createDirectory();

    if (state.record)
        vaultOldRelease (state.target ? "Setup.exe" : "Setup-1.exe");
    else if (state.target)
        writePayload (vaultFile ("Setup.exe"), "old");

    writePayload (vaultFile ("Setup.exe.part"), "new");
}

Answer runDownload()
{
    const auto part = vaultFile ("Setup.exe.part");
    auto product = productFor (Type::application, "2.0.0", part);
    const auto& platform = product.platforms["win"];

    DownloadVerification verification;
    verification.product = product;
    verification.platformKey = "win";
    verification.partFile = part;
    verification.targetFile = vaultFile ("Setup.exe");
    verification.expectedSha256 = platform.sha256;
    verification.expectedSize = platform.sizeBytes;
    verification.previousInstaller = VaultStore::trustedInstallerFor (id);

    const auto outcome = verification.run();
    return answerOf (outcome.success, outcome.message);
}

//==============================================================================
// Applications.

void installOldRelease (const juce::File& installer)
{
    PromotionTransaction transaction;
    juce::String text;
    juce::File installed;
    InstallService::installApplication (id, installer, text, installed, transaction);
    InstallService::writeInstallRecord (id, installed, text);
    transaction.commit (text);
}

/** The record also holds another product, whose entry has to survive. */
void writeOtherEntry()
{
    HubPaths::installRecordFile().replaceWithText (R"({ "other": { "path": "/somewhere/other.exe", "installedAt": "then" } })");
}

void prepareApplication (StartState state, const juce::String& name, void (*writeInstaller) (const juce::File&, const juce::String&))
{
    HubPaths::ensureDirectories();
    writeOtherEntry();
    writeInstaller (inbox (name), "old");
    installOldRelease (inbox (name));
    writeInstaller (inbox (name), "new");

    if (! state.target)
        HubPaths::productsDirectory().getChildFile (id).deleteRecursively (false);

    if (! state.record)
        HubPaths::installRecordFile().deleteFile();
}

Answer runApplication (const juce::String& name)
{
    PromotionTransaction transaction;
    juce::String message, recordError;
    juce::File installed;

    if (! InstallService::installApplication (id, inbox (name), message, installed, transaction))
        return answerOf (false, message);

    const bool recordOk = InstallService::writeInstallRecord (id, installed, recordError);
    const bool success = InstallService::finishApplicationInstall (transaction, recordOk, recordError, message);
    return answerOf (success, message);
}

void prepareProgram (StartState state) { prepareApplication (state, "Test.exe", writePayload); }
Answer runProgram()                    { return runApplication ("Test.exe"); }

void prepareArchive (StartState state) { prepareApplication (state, "Test.zip", writeApplicationArchive); }
Answer runArchive()                    { return runApplication ("Test.zip"); }

//==============================================================================
// Sound packs: the record lies inside the payload.

Answer installPack()
{
    const auto archive = inbox ("Pack.zip");
    juce::String message;
    const bool success = InstallService::installContent (productFor (Type::factoryContent, "2.0.0", archive), archive, message, {});
    return answerOf (success, message);
}

void preparePack (StartState state)
{
    HubPaths::ensureDirectories();

    if (state.target)
    {
        writeContentArchive (inbox ("Pack.zip"), "old");
        installPack();
    }

    writeContentArchive (inbox ("Pack.zip"), "new");
}

//==============================================================================
// Records alone.

void prepareVaultRecord (StartState state)
{
    HubPaths::ensureDirectories();
    writePayload (vaultFile ("Setup.exe"), "new");

    if (state.record)
        VaultStore::writeVaultRecord (productFor (Type::application, "1.0.0", vaultFile ("Setup.exe")), "win", vaultFile ("Setup.exe"));
}

Answer runVaultRecord()
{
    const auto installer = vaultFile ("Setup.exe");
    return { VaultStore::writeVaultRecord (productFor (Type::application, "2.0.0", installer), "win", installer), {} };
}

void prepareInstallRecord (StartState state)
{
    prepareProgram ({ true, false });

    if (state.record)
        writeOtherEntry();
}

Answer runInstallRecord()
{
    juce::String error;
    const bool success = InstallService::writeInstallRecord (id, HubPaths::productsDirectory().getChildFile (id).getChildFile ("Test.exe"), error);
    return answerOf (success, error);
}

void prepareSettings (StartState state)
{
    HubPaths::ensureDirectories();

    if (state.record)
        HubPaths::settingsFile().replaceWithText (R"({ "manifestUrl": "https://example.com/old", "unknown": 1 })");
}

/** A save reports nothing, so the file itself says whether it worked. */
Answer runSettings()
{
    auto settings = HubSettings::load();
    HubSettings::setManifestUrl (settings, "https://example.com/new");
    return { HubSettings::getManifestUrl (HubSettings::load()) == "https://example.com/new", {} };
}
}

//==============================================================================
const std::vector<Scenario>& allScenarios()
{
    static const std::vector<Scenario> scenarios {
        { "download promotion", allStates, { vaultFolder + "/Setup.exe", vaultFolder + "/vault.json" }, { vaultFolder + "/Setup-1.exe" },
          prepareDownload, runDownload },
        { "application .exe", allStates, { productFolder, installRecord }, {}, prepareProgram, runProgram },
        { "application .zip", allStates, { productFolder, installRecord }, {}, prepareArchive, runArchive },
        { "sound pack", targetStates, { packVersion }, {}, preparePack, installPack },
        { "vault.json alone", recordStates, { vaultFolder + "/vault.json" }, { vaultFolder + "/Setup.exe" }, prepareVaultRecord, runVaultRecord, false },
        { "installed.json alone", recordStates, { installRecord }, { productFolder }, prepareInstallRecord, runInstallRecord, false },
        { "settings.json alone", recordStates, { ".config/ZORVA Hub/settings.json" }, {}, prepareSettings, runSettings, false },
    };
    return scenarios;
}

std::string recover()
{
    const VaultStore vault;
    const InstallService installs;
    auto notes = vault.getRecoveryNotes();
    notes.addArray (installs.getRecoveryNotes());
    return notes.joinIntoString ("\n").toStdString();
}
}
