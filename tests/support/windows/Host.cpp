#include "Host.h"

#include "platform/windows/WindowsHeaders.h"

#include <atomic>

namespace zorva::test
{
namespace
{
bool start (const juce::String& program, const juce::String& command)
{
    std::wstring line (command.toWideCharPointer());
    STARTUPINFOW startup {};
    startup.cb = sizeof (startup);
    PROCESS_INFORMATION process {};

    if (! ::CreateProcessW (program.toWideCharPointer(), line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                            &startup, &process))
        return false;

    ::CloseHandle (process.hThread);
    ::CloseHandle (process.hProcess);
    return true;
}
}

std::optional<juce::String> askHost (const juce::StringArray& verbAndArguments)
{
    constexpr juce::uint32 limitMs = 20000;
    static std::atomic<int> number { 0 };

    const auto program = juce::SystemStats::getEnvironmentVariable ("HUB_TEST_HOST", {});

    if (program.isEmpty())
        return {};

    // The end of a program of the host cannot be waited for: its answer is.
    const auto answer = juce::File::getSpecialLocation (juce::File::tempDirectory).getChildFile ("host" + juce::String (++number));
    auto command = "on-host \"" + answer.getFullPathName() + "\"";

    for (const auto& argument : verbAndArguments)
        command << " \"" << argument << "\"";

    if (! start (program, command))
        return "error " + juce::String (::GetLastError()) + " starting " + program;

    for (const auto begin = juce::Time::getMillisecondCounter(); ! answer.existsAsFile(); juce::Thread::sleep (2))
        if (juce::Time::getMillisecondCounter() - begin > limitMs)
            return "no answer to " + command;

    const auto text = answer.loadFileAsString();
    answer.deleteFile();
    return text;
}
}
