#include "FuzzHome.h"

#include "app/HubSettings.h"
#include "install/InstalledIndex.h"
#include "install/InstallService.h"
#include "vault/VaultIndex.h"
#include "vault/VaultStore.h"

/** The same bytes as vault.json, installed.json and settings.json: none of the readers trusts a path that leaves its directory. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    zorva::fuzz::home();
    const auto folder = zorva::HubPaths::vaultDirectory().getChildFile ("zorva-daw");
    zorva::fuzz::writeBytes (folder.getChildFile ("vault.json"), data, size);
    zorva::fuzz::writeBytes (zorva::HubPaths::installRecordFile(), data, size);
    zorva::fuzz::writeBytes (zorva::HubPaths::settingsFile(), data, size);

    if (! folder.getChildFile ("Setup.exe").existsAsFile())
        folder.getChildFile ("Setup.exe").replaceWithText ("MZ");

    const auto installer = zorva::VaultStore::trustedInstallerFor ("zorva-daw");

    if (installer != juce::File() && installer.getParentDirectory() != folder)
        std::abort();

    const zorva::VaultIndex index;

    if (index.trustedInstallerFor ("zorva-daw") != installer)
        std::abort();

    for (const auto& item : index.items())
    {
        juce::String version, error;
        zorva::InstallService::verifyVaultedInstaller (item.product, item.vaultFile, version, error);
        zorva::InstalledIndex().installedLocation (item.product);
    }

    const auto executable = zorva::InstallService::findInstalledExecutable ("zorva-daw");

    if (executable != juce::File() && ! executable.isAChildOf (zorva::HubPaths::productsDirectory()))
        std::abort();

    const auto settings = zorva::HubSettings::load();

    if (zorva::HubSettings::getManifestUrl (settings).isEmpty())
        std::abort();

    return 0;
}
