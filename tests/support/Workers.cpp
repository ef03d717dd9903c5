#include "support/Workers.h"

#include <filesystem>
#include <iterator>
#include <juce_core/juce_core.h>
#include <thread>

namespace zorva::test
{
namespace
{
int numThreadsNow()
{
    std::error_code error;
    const std::filesystem::directory_iterator threads ("/proc/self/task", error);
    return (int) std::distance (begin (threads), end (threads));
}

/** The thread sanitizer starts a thread of its own beside a process's first, and it never ends. */
int numThreadsThatStay()
{
    std::thread ([] {}).join();
    return numThreadsNow();
}
}

Workers::Workers()
    : numThreadsAtStart (numThreadsThatStay())
{
}

Workers::~Workers()
{
    constexpr juce::uint32 limitMs = 10000;
    const auto start = juce::Time::getMillisecondCounter();

    while (numThreadsNow() > numThreadsAtStart && juce::Time::getMillisecondCounter() - start < limitMs)
        juce::Thread::sleep (1);
}
}
