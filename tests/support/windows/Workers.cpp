#include "support/Workers.h"

#include "platform/windows/WindowsHeaders.h"

#include <juce_core/juce_core.h>
#include <tlhelp32.h>

namespace zorva::test
{
namespace
{
int numThreadsNow()
{
    auto* const snapshot = ::CreateToolhelp32Snapshot (TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry {};
    entry.dwSize = sizeof (entry);
    int count = 0;

    for (auto more = ::Thread32First (snapshot, &entry); more; more = ::Thread32Next (snapshot, &entry))
        count += entry.th32OwnerProcessID == ::GetCurrentProcessId() ? 1 : 0;

    ::CloseHandle (snapshot);
    return count;
}
}

Workers::Workers()
    : numThreadsAtStart (numThreadsNow())
{
}

Workers::~Workers()
{
    // The system keeps threads of its own for a while, once it was asked for the network or a window: they are not waited for.
    constexpr juce::uint32 limitMs = 300;
    const auto start = juce::Time::getMillisecondCounter();

    while (numThreadsNow() > numThreadsAtStart && juce::Time::getMillisecondCounter() - start < limitMs)
        juce::Thread::sleep (1);
}
}
