#pragma once

#include "app/HubMainWindow.h"
#include "app/HubVersion.h"
#include "platform/SecondInstance.h"
#include "ui/HubLookAndFeel.h"

/** The process shell: makes the Hub's directories, installs the look and feel, builds the one window, and takes the two down
    again. All else happens inside MainHubComponent. Message thread. */
class ZorvaHubApplication final : public juce::JUCEApplication
{
public:
    ZorvaHubApplication() = default;
    ~ZorvaHubApplication() override;

    const juce::String getApplicationName() override       { return "ZORVA Hub"; }
    const juce::String getApplicationVersion() override    { return hubVersion; }
    bool moreThanOneInstanceAllowed() override             { return false; }

    /** The command line is ignored. */
    void initialise (const juce::String& commandLine) override;

    /** Also called in a second process, which the framework stops before initialise(). */
    void shutdown() override;

    /** Brings the window forward; does nothing while there is none, which is so until the start is complete. */
    void anotherInstanceStarted (const juce::String& commandLine) override;

    void suspended() override {}
    void resumed() override {}
    void unhandledException (const std::exception*, const juce::String&, int) override {}

private:
    /** How far initialise() came; the framework calls shutdown() in each case. */
    enum class Start
    {
        notReached,         ///< a second process, stopped before it
        withoutDisplay,     ///< nothing to open a window on
        besideAnother,      ///< a second process that the framework did not stop
        complete
    };

    std::unique_ptr<HubLookAndFeel> lookAndFeel;
    std::unique_ptr<HubMainWindow> mainWindow;
    platform::SecondInstance secondInstance;
    Start start = Start::notReached;
};
