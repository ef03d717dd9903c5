#include "platform/SecondInstance.h"
#include "support/GuiHarness.h"

#include <gtest/gtest.h>

using namespace zorva::test;

// That a second start reaches the first is the framework's doing here; a test with two programs shows it.

TEST (SecondInstance, ListeningAlwaysSucceedsAndNobodyIsCalledTwice)
{
    platform::SecondInstance first, second;
    int signals = 0;
    EXPECT_TRUE (first.listen ([&signals] { ++signals; }));
    EXPECT_TRUE (second.listen ([&signals] { ++signals; }));

    platform::SecondInstance::notifyFirst();
    pump (200);
    EXPECT_EQ (signals, 0) << "the framework's message does it, and a signal of our own would be the second";
}

TEST (SecondInstance, StoppingIsHarmless)
{
    platform::SecondInstance instance;
    instance.stop();
    EXPECT_TRUE (instance.listen ([] {}));
    instance.stop();
    instance.stop();
    EXPECT_TRUE (instance.listen ([] {}));
}
