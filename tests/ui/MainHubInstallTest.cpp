#include "app/HubPaths.h"
#include "HubRun.h"
#include "HubWorld.h"
#include "install/InstallService.h"
#include "MenusInTheWindow.h"
#include "support/Files.h"
#include "support/Text.h"

using namespace zorva::test;

namespace
{
const std::string setup = "setup of a";

Product app (const juce::String& id = "a", const juce::String& version = "2.0.0")    { return applicationOf (id, version, setup); }

/** One product in the Vault and nothing else, offline. */
void makeWorld (const std::string& installer = setup)
{
    stayOffline();
    const auto product = applicationOf ("a", "2.0.0", installer);
    putLocalManifest ({ product });
    putInVault (product, "setup.exe", installer);
}

juce::File installedProgram()    { return in (HubPaths::productsDirectory(), "a/setup.exe"); }

std::string installComplete()
{
    return ("information | Install Complete | Installed to " + in (HubPaths::productsDirectory(), "a").getFullPathName() + ". | OK").toStdString();
}

const char* const deleteQuestion = "question | Delete from Vault | Remove the cached installer for Name of a from the Vault?\n\nInstalled copies "
                                   "are not affected, but you will need to download the installer again before you can reinstall offline. | "
                                   "Delete, Cancel";
}

//==============================================================================
TEST (MainHubComponent, InstallsFromTheVaultAndOpensWhatItInstalled)
{
    makeWorld (programThatRuns());
    HubRun run;
    ASSERT_EQ (run.cards(), "a: INSTALL, Cached");
    run.clickPrimary ("a");

    EXPECT_EQ (run.takeBox(), installComplete());
    EXPECT_EQ (run.cards(), utf8 ("a: Open, ✓ Installed").toStdString());
    EXPECT_EQ (read (installedProgram()), programThatRuns());
    EXPECT_EQ (InstallService::findInstalledExecutable ("a").getFullPathName(), installedProgram().getFullPathName());

    run.clickPrimary ("a");
    EXPECT_TRUE (pumpUntil ([] { return startedFile().existsAsFile(); }, 20000));
}

TEST (MainHubComponent, AnInstallShowsThatItRuns)
{
    makeWorld();
    HubRun run;
    run.select ("a");
    run.send ("a", "install");   // the end of the install can only come when the message loop runs

    EXPECT_EQ (run.cards(), utf8 ("a: INSTALLING…, Installing…").toStdString());
    EXPECT_FALSE (run.primary ("a").isEnabled());
    EXPECT_EQ (below<juce::TextButton> (run.pane(), "primaryButton").getButtonText(), utf8 ("INSTALLING…"));
    EXPECT_EQ (run.statusDifference ([] (StatusBar& bar) { bar.setStatusMessage (utf8 ("Installing Name of a…")); }), "");

    EXPECT_EQ (run.takeBox(), installComplete());
    EXPECT_EQ (run.statusDifference ([] (StatusBar&) {}), "") << "the message goes with the end";
    EXPECT_EQ (below<juce::TextButton> (run.pane(), "primaryButton").getButtonText(), "Open");
}

TEST (MainHubComponent, AProductThatOnlyTheVaultKnowsInstalls)
{
    stayOffline();
    putInVault (app(), "setup.exe", setup);
    HubRun run;
    ASSERT_EQ (run.cards(), "zorva-daw: DOWNLOAD, Not Installed | a: INSTALL, Cached");
    run.clickPrimary ("a");

    EXPECT_EQ (run.takeBox(), installComplete());
    EXPECT_EQ (run.cards(), utf8 ("zorva-daw: DOWNLOAD, Not Installed | a: Open, ✓ Installed").toStdString());
}

TEST (MainHubComponent, AnAlteredInstallerIsRefused)
{
    makeWorld();
    HubRun run;
    write (vaultFile ("a/setup.exe"), "setup of b");
    run.clickPrimary ("a");

    EXPECT_EQ (run.takeBox(), "warning | Install Failed | Name of a could not be installed.\n\nThe vaulted installer no longer matches its "
                              "verified identity record. | OK");
    EXPECT_EQ (run.cards(), "a: INSTALL, Cached");
    EXPECT_FALSE (installedProgram().exists());
    EXPECT_EQ (run.statusDifference ([] (StatusBar&) {}), "");
}

TEST (MainHubComponent, AnInstallerThatHasGoneIsReported)
{
    makeWorld();
    HubRun run;
    vaultFile ("a/setup.exe").deleteFile();
    run.clickPrimary ("a");

    EXPECT_EQ (run.takeBox(), "warning | Not in Vault | There is no cached installer for Name of a in the Vault. Download it once, and reinstalls "
                              "will work offline forever after. | OK");
    EXPECT_EQ (run.statusDifference ([] (StatusBar&) {}), "");
}

TEST (MainHubComponent, ReinstallRepeatsTheInstallFromThePane)
{
    makeWorld();
    putInstalled ("a", "an old program");
    HubRun run;
    run.select ("a");
    auto& button = below<juce::TextButton> (run.pane(), "reinstallButton");
    ASSERT_TRUE (button.isVisible() && button.isEnabled());
    run.click (button);

    EXPECT_EQ (run.takeBox(), installComplete());
    EXPECT_EQ (read (installedProgram()), setup);
}

TEST (MainHubComponent, AnInstallThatEndsTooLateTellsNobody)
{
    makeWorld();
    HubRun run;
    run.send ("a", "install");
    run.close();

    EXPECT_TRUE (pumpUntil ([] { return HubPaths::installRecordFile().existsAsFile(); }, 20000)) << "the worker went on";
    EXPECT_TRUE (run.showsNoBox());
    EXPECT_EQ (read (installedProgram()), setup);
}

TEST (MainHubComponent, TheProductMayVanishWhileItIsInstalled)
{
    stayOffline();
    putInVault (app(), "setup.exe", setup);
    HubRun run;
    run.send ("a", "install");
    vaultFile ("a").deleteRecursively (false);   // it was verified; the copy may have been made or not

    const auto box = run.takeBox();
    EXPECT_TRUE (box == installComplete() || box.find ("warning | Install Failed | a could not be installed.\n\n") == 0) << box;
    EXPECT_EQ (run.card ("a"), nullptr);
}

//==============================================================================
TEST (MainHubComponent, AnInstallerIsDeletedFromTheVaultAfterAQuestion)
{
    makeWorld();
    HubRun run;
    run.send ("a", "delete-vault");

    EXPECT_EQ (run.takeBox ("Delete"), deleteQuestion);
    EXPECT_FALSE (vaultFile ("a").exists());
    EXPECT_EQ (run.cards(), "a: DOWNLOAD, Not Installed");
}

TEST (MainHubComponent, TheOtherAnswerKeepsTheInstaller)
{
    makeWorld();
    HubRun run;
    const auto before = treeOf (HubPaths::vaultDirectory());
    run.send ("a", "delete-vault");

    EXPECT_EQ (run.takeBox ("Cancel"), deleteQuestion);
    EXPECT_EQ (treeOf (HubPaths::vaultDirectory()), before);
    EXPECT_EQ (run.cards(), "a: INSTALL, Cached");
}

TEST (MainHubComponent, DeletingWhatOnlyTheVaultKnewClosesItsPane)
{
    stayOffline();
    putInVault (app(), "setup.exe", setup);
    HubRun run;
    run.select ("a");
    run.send ("a", "delete-vault");
    EXPECT_EQ (run.takeBox ("Delete"), deleteQuestion);

    EXPECT_EQ (run.cards(), "zorva-daw: DOWNLOAD, Not Installed");
    EXPECT_EQ (run.shownInPane(), "(closed)");
}

TEST (MainHubComponent, DeletionThroughTheCardsMenu)
{
    makeWorld();
    HubRun run;
    const MenusInTheWindow menus (*run.window);
    menus.open (below<juce::Button> (*run.card ("a"), "overflowButton"));
    menus.choose (2);

    EXPECT_EQ (run.takeBox ("Delete"), deleteQuestion);
    EXPECT_EQ (run.cards(), "a: DOWNLOAD, Not Installed");
}

TEST (MainHubComponent, AnAnswerAfterTheHubHasGoneDeletesNothing)
{
    makeWorld();
    HubRun run;
    run.send ("a", "delete-vault");
    ASSERT_TRUE (pumpUntil ([] { return currentAlert() != nullptr; }));
    run.close();

    EXPECT_EQ (run.takeBox ("Delete"), deleteQuestion);
    EXPECT_TRUE (vaultFile ("a/setup.exe").existsAsFile());
}
