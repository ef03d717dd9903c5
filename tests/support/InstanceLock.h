#pragma once

#include <juce_core/juce_core.h>

namespace zorva::test
{
/** From now on this test process has the lock of a running Hub to itself, in a new folder of this name below the HOME, which it sees
    in place of the framework's folder of locks: whoever starts a Hub in a test neither finds one that runs beside it, in another
    test or on the developer's screen, nor is found by it. A failure fails the test. On Windows the framework itself asks for the
    lock, before any code that a test calls. */
void makeInstanceLockPrivate (const juce::String& folderName);
}
