#include "support/GuiHarness.h"
#include "support/PrivateMounts.h"
#include "support/TestHome.h"
#include "support/Workers.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>

int main (int argc, char** argv)
{
    zorva::test::PrivateMounts::enter (argv);    // before any library starts a thread
    ::testing::InitGoogleTest (&argc, argv);
    std::setlocale (LC_CTYPE, "C.UTF-8");
    const zorva::test::TestHome home;

    // Makes JUCEApplicationBase::isStandaloneApp() true, as the application's start macro does. Without it JUCE installs no X
    // error handler, and the first harmless X error ends the process.
    juce::JUCEApplicationBase::createInstance = []() -> juce::JUCEApplicationBase* { return nullptr; };

    // Hardly a test needs an X server, and one that happens to run would be asked for its settings and could end the process by its
    // end. The name must be set to one that leads nowhere: without a name the framework looks for the first display. The few that do
    // need one take it from HUB_TEST_DISPLAY.
    if (const auto* const display = std::getenv ("DISPLAY"))
        ::setenv ("HUB_TEST_DISPLAY", display, 1);

    ::setenv ("DISPLAY", "none", 1);

    const zorva::test::Workers workers;
    juce::ScopedJuceInitialiser_GUI gui;    // one a process; makes this thread the message thread
    zorva::test::ensureFakeDisplay();
    return RUN_ALL_TESTS();
}
