#include "platform/SecondInstance.h"
#include "support/GuiHarness.h"
#include "support/InstanceLock.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zorva::test;

namespace
{
class SecondInstanceTest : public ::testing::Test
{
protected:
    SecondInstanceTest()    { makeInstanceLockPrivate ("lock"); }

    bool comesForward (int times)
    {
        return pumpUntil ([this, times] { return signals >= times; });
    }

    int signals = 0;
    platform::SecondInstance first;
};

using SecondInstance = SecondInstanceTest;
}

TEST_F (SecondInstance, ASecondStartCallsTheFirst)
{
    ASSERT_TRUE (first.listen ([this] { ++signals; }));

    platform::SecondInstance::notifyFirst();
    EXPECT_TRUE (comesForward (1));

    platform::SecondInstance::notifyFirst();
    EXPECT_TRUE (comesForward (2));
}

TEST_F (SecondInstance, ASecondStartIsAnotherProcess)
{
    ASSERT_TRUE (first.listen ([this] { ++signals; }));

    const auto second = ::fork();

    if (second == 0)
    {
        platform::SecondInstance::notifyFirst();
        ::_exit (0);
    }

    int status = -1;
    ASSERT_EQ (::waitpid (second, &status, 0), second);
    EXPECT_EQ (status, 0);
    EXPECT_TRUE (comesForward (1));
}

TEST_F (SecondInstance, OnlyOneListens)
{
    platform::SecondInstance other;
    ASSERT_TRUE (first.listen ([this] { ++signals; }));
    EXPECT_FALSE (other.listen ([] { FAIL() << "the address is taken"; }));

    platform::SecondInstance::notifyFirst();
    EXPECT_TRUE (comesForward (1));
}

TEST_F (SecondInstance, ASystemThatGivesNoSocketKeepsNoHubFromStarting)
{
    rlimit before {};
    ASSERT_EQ (::getrlimit (RLIMIT_NOFILE, &before), 0);
    const rlimit none { 0, before.rlim_max };
    ASSERT_EQ (::setrlimit (RLIMIT_NOFILE, &none), 0);
    const bool mayStart = first.listen ([this] { ++signals; });
    ASSERT_EQ (::setrlimit (RLIMIT_NOFILE, &before), 0);
    EXPECT_TRUE (mayStart);

    platform::SecondInstance::notifyFirst();
    pump();
    EXPECT_EQ (signals, 0);
}

TEST_F (SecondInstance, NothingHappensWhenNobodyListens)
{
    first.stop();
    platform::SecondInstance::notifyFirst();

    ASSERT_TRUE (first.listen ([this] { ++signals; }));
    first.stop();
    platform::SecondInstance::notifyFirst();
    pump();

    EXPECT_EQ (signals, 0);
}

TEST_F (SecondInstance, TheAddressIsFreeAgainAfterStopping)
{
    ASSERT_TRUE (first.listen ([] { FAIL() << "no longer listening"; }));
    first.stop();

    platform::SecondInstance next;
    ASSERT_TRUE (next.listen ([this] { ++signals; }));
    platform::SecondInstance::notifyFirst();
    EXPECT_TRUE (comesForward (1));
}

TEST_F (SecondInstance, AHubUnderAnotherLockIsNotCalled)
{
    ASSERT_TRUE (first.listen ([this] { ++signals; }));

    makeInstanceLockPrivate ("another lock");
    platform::SecondInstance::notifyFirst();

    platform::SecondInstance itsFirst;
    EXPECT_TRUE (itsFirst.listen ([] { FAIL() << "signalled before it listened"; }));

    pump();
    EXPECT_EQ (signals, 0);
}
