#include "DetailPaneScene.h"
#include "support/Files.h"
#include "ui/HubPalette.h"
#include "ui/ProductActions.h"

using namespace zorva::test;

namespace
{
using State = ProductCardState;
using Scene = PaneScene;
constexpr int height = PaneScene::height;

juce::File installer()    { return write (in (freshFolder ("vault"), "setup.exe"), "x"); }
}

//==============================================================================
TEST (DetailPane, ThePrimaryButtonIsThatOfTheCard)
{
    for (const auto state : allStates())
        for (const bool online : { false, true })
        {
            Scene scene;
            scene.pane.setOnline (online);
            scene.pane.setModel (someModel (state));
            const auto expected = primaryActionFor (someModel (state), online);

            EXPECT_TRUE (scene.primary().isVisible());
            EXPECT_EQ (scene.primary().getButtonText(), expected.label);
            EXPECT_EQ (scene.primary().getTooltip(), expected.tooltip);
            EXPECT_EQ (scene.primary().isEnabled(), expected.enabled);
            EXPECT_EQ (hex (scene.primary().findColour (juce::TextButton::buttonColourId)), hex (expected.fill));
            EXPECT_EQ (hex (scene.primary().findColour (juce::TextButton::textColourOffId)), hex (expected.text));

            scene.window->click (scene.primary());
            EXPECT_EQ (scene.noted(), (expected.enabled ? expected.action : juce::String()).toStdString());
        }
}

TEST (DetailPane, IsOfflineUntilToldOtherwise)
{
    Scene scene;
    scene.pane.setModel (someModel());
    EXPECT_EQ (scene.primary().getTooltip(), utf8 ("Offline — downloads unavailable"));

    scene.pane.setOnline (true);
    EXPECT_EQ (scene.primary().getTooltip(), "Download the installer to the Vault");
}

TEST (DetailPane, TheSameConnectionAgainRepaintsNothing)
{
    Scene scene;
    scene.pane.setModel (someModel());
    const RepaintWatch repaints (scene.pane);

    scene.pane.setOnline (false);
    EXPECT_EQ (repaints.count(), 0);
    scene.pane.setOnline (true);
    EXPECT_GT (repaints.count(), 0);
}

TEST (DetailPane, ReinstallIsThereForWhatIsInstalled)
{
    for (const auto state : allStates())
    {
        Scene scene;
        auto model = someModel (state);
        model.vaultFile = installer();
        scene.pane.setModel (model);

        const bool isInstalled = state == State::installed || state == State::updateAvailable;
        EXPECT_EQ (scene.reinstall().isVisible(), isInstalled) << (int) state;
        EXPECT_EQ (scene.primary().getBounds(), juce::Rectangle<int> (16, isInstalled ? height - 124 : height - 80, 288, 36));
        EXPECT_EQ (scene.reveal().getBounds(), juce::Rectangle<int> (16, height - 36, 288, 20));
    }
}

TEST (DetailPane, ReinstallNeedsTheInstallerInTheVault)
{
    for (const auto state : { State::installed, State::updateAvailable })
    {
        Scene scene;
        auto model = someModel (state);
        model.vaultFile = installer();
        scene.pane.setModel (model);
        EXPECT_EQ (scene.reinstall().getButtonText(), "REINSTALL");
        EXPECT_TRUE (scene.reinstall().isEnabled());
        EXPECT_EQ (scene.reinstall().getTooltip(), "Reinstall from the Vault (no download needed)");
        EXPECT_EQ (hex (scene.reinstall().findColour (juce::TextButton::buttonColourId)), hex (HubPalette::action));
        EXPECT_EQ (hex (scene.reinstall().findColour (juce::TextButton::textColourOffId)), hex (HubPalette::textPrimary));

        model.vaultFile.deleteFile();
        scene.pane.setModel (model);
        EXPECT_TRUE (scene.reinstall().isVisible());
        EXPECT_FALSE (scene.reinstall().isEnabled());
        EXPECT_EQ (scene.reinstall().getTooltip(), utf8 ("Installer not in the Vault — download it once to enable offline reinstall"));
    }
}

TEST (DetailPane, ItsButtonsSendTheirWords)
{
    Scene scene;
    auto model = someModel (State::installed);
    model.vaultFile = installer();
    scene.pane.setModel (model);

    scene.window->click (scene.primary());
    scene.window->click (scene.reinstall());
    scene.window->click (scene.reveal());
    scene.window->click (scene.close());
    EXPECT_EQ (scene.noted(), "open, reinstall, reveal, closed");
}

TEST (DetailPane, WithoutCallbacksItsButtonsDoNothing)
{
    Scene scene;
    scene.pane.onAction = nullptr;
    scene.pane.onClose = nullptr;
    scene.pane.setModel (someModel (State::cached));

    scene.window->click (scene.primary());
    scene.window->click (scene.reveal());
    scene.window->click (scene.close());
    EXPECT_EQ (scene.noted(), "");
}

TEST (DetailPane, SpaceAndReturnPressTheFocusedButton)
{
    Scene scene;
    auto model = someModel (State::installed);
    model.vaultFile = installer();
    scene.pane.setModel (model);

    for (auto* button : std::initializer_list<juce::Button*> { &scene.primary(), &scene.reinstall(), &scene.reveal(), &scene.close() })
    {
        button->grabKeyboardFocus();
        ASSERT_TRUE (button->hasKeyboardFocus (false));
        scene.window->key (juce::KeyPress::spaceKey);
        scene.window->key (juce::KeyPress::returnKey);
    }

    EXPECT_EQ (scene.noted(), "open, open, reinstall, reinstall, reveal, reveal, closed, closed");
}
