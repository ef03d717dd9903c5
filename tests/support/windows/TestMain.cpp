#include "DebugOutput.h"
#include "support/GuiHarness.h"
#include "support/TestHome.h"
#include "support/Workers.h"

#include <clocale>
#include <gtest/gtest.h>

// Destroyed after the framework's own static objects, whose leaks it shows.
static const zorva::test::DebugOutput debugOutput;

int main (int argc, char** argv)
{
    ::testing::InitGoogleTest (&argc, argv);

    if (GTEST_FLAG_GET (list_tests))
        return RUN_ALL_TESTS();


    // The older of the system's two C libraries has no such locale, but letters of every script in the user's own.
    if (std::setlocale (LC_CTYPE, ".UTF-8") == nullptr)
        std::setlocale (LC_CTYPE, "");

    const zorva::test::TestHome home;

    // The framework takes itself for a plug-in in a process that has no application.
    juce::JUCEApplicationBase::createInstance = []() -> juce::JUCEApplicationBase* { return nullptr; };

    const zorva::test::Workers workers;
    juce::ScopedJuceInitialiser_GUI gui;    // one a process; makes this thread the message thread
    zorva::test::ensureFakeDisplay();
    return RUN_ALL_TESTS();
}
