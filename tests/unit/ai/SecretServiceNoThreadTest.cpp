#include "ai/HubCredentialStore.h"
#include "support/SecretServiceSession.h"
#include "support/ThreadRefusal.h"

#include <gtest/gtest.h>

namespace
{
constexpr const char* otherFailure = "Secret Service operation failed (error 5).";
}

TEST (SecretServiceNoThread, AsksNothingThatItCouldNotEnd)
{
    zorva::test::SecretServiceSession session;
    const auto store = makeHubCredentialStore();
    juce::String error;
    juce::MemoryBlock key;
    ASSERT_TRUE (store->storeKey ("sk-key", error)) << error;

    // The service would keep every call waiting, and without its thread nothing would end the wait.
    session.stopAnswering();
    zorva::test::refuseNewThreads();
    const auto start = juce::Time::getMillisecondCounterHiRes();

    EXPECT_FALSE (store->hasKey());
    EXPECT_FALSE (store->readKey (key, error));
    EXPECT_EQ (error, otherFailure);
    EXPECT_FALSE (store->storeKey ("sk-another", error));
    EXPECT_EQ (error, otherFailure);
    EXPECT_FALSE (store->deleteKey (error));
    EXPECT_EQ (error, otherFailure);
    EXPECT_LT (juce::Time::getMillisecondCounterHiRes() - start, 2000.0);
}
