#include "FuzzHome.h"

#include "app/HubSettings.h"
#include "install/InstalledIndex.h"
#include "install/InstallService.h"
#include "vault/VaultIndex.h"
#include "vault/VaultStore.h"

/** The same bytes as vault.json, installed.json and settings.json: none of the readers trusts a path that leaves its directory. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    fuzz::home();
    const auto folder = HubPaths::vaultDirectory().getChildFile ("zorva-daw");
    fuzz::writeBytes (folder.getChildFile ("vault.json"), data, size);
    fuzz::writeBytes (HubPaths::installRecordFile(), data, size);
    fuzz::writeBytes (HubPaths::settingsFile(), data, size);

    if (! folder.getChildFile ("Setup.exe").existsAsFile())
        folder.getChildFile ("Setup.exe").replaceWithText ("MZ");

    const auto installer = VaultStore::trustedInstallerFor ("zorva-daw");

    if (installer != juce::File() && installer.getParentDirectory() != folder)
        std::abort();

    const VaultIndex index;

    if (index.trustedInstallerFor ("zorva-daw") != installer)
        std::abort();

    for (const auto& item : index.items())
    {
        juce::String version, error;
        InstallService::verifyVaultedInstaller (item.product, item.vaultFile, version, error);
        InstalledIndex().installedLocation (item.product);
    }

    const auto executable = InstallService::findInstalledExecutable ("zorva-daw");

    if (executable != juce::File() && ! executable.isAChildOf (HubPaths::productsDirectory()))
        std::abort();

    const auto settings = HubSettings::load();

    if (HubSettings::getManifestUrl (settings).isEmpty())
        std::abort();

    return 0;
}
