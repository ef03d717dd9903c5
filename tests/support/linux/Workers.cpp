#include "support/Workers.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <juce_core/juce_core.h>
#include <string>
#include <thread>

namespace zorva::test
{
namespace
{
/** GLib keeps these two for good once it has spoken on a bus. */
bool isOfGLib (const std::filesystem::path& thread)
{
    std::ifstream file (thread / "comm");
    std::string name;
    std::getline (file, name);
    return name == "gmain" || name == "gdbus";
}

int numThreadsNow()
{
    std::error_code error;
    const std::filesystem::directory_iterator threads ("/proc/self/task", error);
    return (int) std::count_if (begin (threads), end (threads), [] (const auto& thread) { return ! isOfGLib (thread.path()); });
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
