#include "app/ZorvaHubApplication.h"

#include "app/HubPaths.h"
#include "platform/ProcessSetup.h"
#include "ui/MainHubComponent.h"

#include <iostream>

ZorvaHubApplication::~ZorvaHubApplication()
{
    mainWindow.reset();
    lookAndFeel.reset();
}

void ZorvaHubApplication::initialise (const juce::String&)
{
    // Without one the framework would crash on its first window.
    if (juce::Desktop::getInstance().getDisplays().getPrimaryDisplay() == nullptr)
    {
        std::cerr << "ZORVA Hub needs a display to open its window on, and there is none." << std::endl;
        start = Start::withoutDisplay;
        setApplicationReturnValue (1);
        quit();
        return;
    }

    // The framework's lock is one file for all users of the machine, and it takes a file that it may not open for a lock that it has.
    if (! secondInstance.listen ([this] { anotherInstanceStarted ({}); }))
    {
        platform::SecondInstance::notifyFirst();
        start = Start::besideAnother;
        quit();
        return;
    }

    start = Start::complete;
    HubPaths::ensureDirectories();

    lookAndFeel = std::make_unique<HubLookAndFeel>();
    juce::LookAndFeel::setDefaultLookAndFeel (lookAndFeel.get());

    auto window = std::make_unique<HubMainWindow> (getApplicationName());
    window->setUsingNativeTitleBar (true);
    window->setContentOwned (new MainHubComponent(), true);
    window->setResizable (true, true);
    window->setResizeLimits (900, 600, 10000, 10000);
    window->centreWithSize (window->getWidth(), window->getHeight());
    window->setVisible (true);

    mainWindow = std::move (window);
}

void ZorvaHubApplication::shutdown()
{
    if (start == Start::notReached)
        platform::SecondInstance::notifyFirst();

    if (start != Start::complete)
        return;

    secondInstance.stop();
    mainWindow.reset();
    juce::LookAndFeel::setDefaultLookAndFeel (nullptr);
    lookAndFeel.reset();
    platform::endWithoutStaticDestruction (getApplicationReturnValue());
}

void ZorvaHubApplication::anotherInstanceStarted (const juce::String&)
{
    if (mainWindow != nullptr)
        mainWindow->toFront (true);
}
