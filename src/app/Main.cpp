#include "app/ZorvaHubApplication.h"
#include "platform/ProcessSetup.h"

namespace
{
/** Runs before anything else of the program, so that every file the Hub makes is private from the first one on. */
const struct ProcessPreparation
{
    ProcessPreparation() { platform::prepareProcess(); }
} processPreparation;
}

START_JUCE_APPLICATION (ZorvaHubApplication)
