#include "app/HubPaths.h"
#include "app/ZorvaHubApplication.h"
#include "Children.h"
#include "HubWorld.h"
#include "support/Files.h"
#include "support/GuiHarness.h"
#include "support/InstanceLock.h"
#include "ui/MainHubComponent.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
HubMainWindow* openWindow()
{
    for (int i = juce::TopLevelWindow::getNumTopLevelWindows(); --i >= 0;)
        if (auto* window = dynamic_cast<HubMainWindow*> (juce::TopLevelWindow::getTopLevelWindow (i)))
            return window;

    return nullptr;
}

/** A catalogue that is nowhere, and no other Hub in sight. */
void startAlone()
{
    stayOffline();
    makeInstanceLockPrivate ("lock");
}
}

TEST (ZorvaHubApplication, HasItsNameAndVersion)
{
    ZorvaHubApplication application;

    EXPECT_EQ (application.getApplicationName(), "ZORVA Hub");
    EXPECT_EQ (application.getApplicationVersion(), "13.0.0");
    EXPECT_FALSE (application.moreThanOneInstanceAllowed());
}

TEST (ZorvaHubApplication, ASecondStartBeforeThereIsAWindowDoesNothing)
{
    ZorvaHubApplication application;
    application.anotherInstanceStarted ("--any argument");

    EXPECT_EQ (openWindow(), nullptr);
}

TEST (ZorvaHubApplication, AProcessThatWasNeverInitialisedShutsDown)
{
    makeInstanceLockPrivate ("lock");
    ZorvaHubApplication application;
    application.shutdown();
    application.anotherInstanceStarted ({});

    EXPECT_EQ (openWindow(), nullptr);
    EXPECT_FALSE (HubPaths::root().exists()) << "it touched nothing";
}

TEST (ZorvaHubApplication, TheOtherEventsDoNothing)
{
    ZorvaHubApplication application;
    application.suspended();
    application.resumed();
    application.unhandledException (nullptr, "file", 1);

    EXPECT_EQ (openWindow(), nullptr);
}

//==============================================================================
TEST (ZorvaHubApplication, InitialiseOpensOneWindowAndShutdownTakesItDown)
{
    startAlone();
    ZorvaHubApplication application;
    application.initialise ({});
    auto* const window = openWindow();
    ASSERT_NE (window, nullptr);

    EXPECT_EQ (juce::TopLevelWindow::getNumTopLevelWindows(), 1);
    EXPECT_EQ (window->getName(), "ZORVA Hub");
    EXPECT_TRUE (window->isVisible());
    EXPECT_TRUE (window->isUsingNativeTitleBar());
    EXPECT_EQ (window->getBackgroundColour(), juce::Colour (0xff141414));
    EXPECT_TRUE (window->isResizable());
    EXPECT_TRUE ((window->getDesktopWindowStyleFlags() & juce::ComponentPeer::windowIsResizable) != 0);
    ASSERT_NE (dynamic_cast<MainHubComponent*> (window->getContentComponent()), nullptr);
    EXPECT_NE (dynamic_cast<HubLookAndFeel*> (&juce::LookAndFeel::getDefaultLookAndFeel()), nullptr);

    auto* const limits = window->getConstrainer();
    ASSERT_NE (limits, nullptr);
    EXPECT_EQ (limits->getMinimumWidth(), 900);
    EXPECT_EQ (limits->getMinimumHeight(), 600);
    EXPECT_EQ (limits->getMaximumWidth(), 10000);
    EXPECT_EQ (limits->getMaximumHeight(), 10000);

    for (const auto& folder : { HubPaths::vaultDirectory(), HubPaths::runtimeDirectory(), HubPaths::publishDraftsDirectory() })
        EXPECT_TRUE (folder.isDirectory());

    application.shutdown();
    EXPECT_EQ (openWindow(), nullptr);
    EXPECT_EQ (dynamic_cast<HubLookAndFeel*> (&juce::LookAndFeel::getDefaultLookAndFeel()), nullptr);
}

TEST (ZorvaHubApplication, ADirectoryThatCannotBeMadeStillOpensTheWindow)
{
    startAlone();
    write (HubPaths::vaultDirectory(), "a file stands in the way");
    ZorvaHubApplication application;
    application.initialise ({});

    EXPECT_NE (openWindow(), nullptr);
    application.shutdown();
}

TEST (ZorvaHubApplication, ArgumentsChangeNothing)
{
    startAlone();
    const auto open = [] (const juce::String& arguments)
    {
        ZorvaHubApplication application;
        application.initialise (arguments);
        auto* const window = openWindow();
        EXPECT_NE (window, nullptr);
        const auto bounds = window != nullptr ? window->getBounds() : juce::Rectangle<int>();
        application.shutdown();
        return bounds;
    };

    const auto plainStart = open ({});

    for (const char* arguments : { "--help", "--version", "--reset /etc/passwd", "\"", "$(touch x)" })
        EXPECT_EQ (open (arguments), plainStart) << arguments;
}

TEST (ZorvaHubApplication, ASecondStartBringsTheWindowForward)
{
    startAlone();
    ZorvaHubApplication application;
    application.initialise ({});
    application.anotherInstanceStarted ("ignored");

    EXPECT_EQ (juce::TopLevelWindow::getNumTopLevelWindows(), 1);
    application.shutdown();
}

TEST (ZorvaHubApplication, ItsEndTakesTheWindowAlong)
{
    startAlone();

    {
        ZorvaHubApplication application;
        application.initialise ({});
        ASSERT_NE (openWindow(), nullptr);
    }

    EXPECT_EQ (openWindow(), nullptr);
}

TEST (HubMainWindow, ClosingAsksTheApplicationToQuit)
{
    struct Listener final : juce::JUCEApplication
    {
        const juce::String getApplicationName() override       { return "Listener"; }
        const juce::String getApplicationVersion() override    { return "1"; }
        void initialise (const juce::String&) override {}
        void shutdown() override {}
        void systemRequestedQuit() override                    { ++requests; }
        int requests = 0;
    };

    Listener application;
    HubMainWindow window ("ZORVA Hub");
    window.closeButtonPressed();

    EXPECT_EQ (application.requests, 1);
    EXPECT_EQ (currentAlert(), nullptr);
}

TEST (HubMainWindow, CanBeResizedOnlyWhenItIsSaidToBe)
{
    struct Listener final : juce::JUCEApplication
    {
        const juce::String getApplicationName() override       { return "Listener"; }
        const juce::String getApplicationVersion() override    { return "1"; }
        void initialise (const juce::String&) override {}
        void shutdown() override {}
    };

    Listener application;
    HubMainWindow window ("ZORVA Hub");
    window.setUsingNativeTitleBar (true);
    window.setResizable (false, false);
    EXPECT_EQ (window.getDesktopWindowStyleFlags() & juce::ComponentPeer::windowIsResizable, 0);

    window.setResizable (true, true);
    EXPECT_NE (window.getDesktopWindowStyleFlags() & juce::ComponentPeer::windowIsResizable, 0);
}
