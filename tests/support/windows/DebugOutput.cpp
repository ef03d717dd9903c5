#include "DebugOutput.h"

#include "platform/windows/WindowsHeaders.h"

#include <cstdio>

namespace zorva::test
{
namespace
{
constexpr DWORD wideTextForDebugger = 0x4001000a, continueSearch = 0;

/** The system raises an exception with a text's size and address, and goes on when nobody takes it. */
LONG CALLBACK show (EXCEPTION_POINTERS* pointers)
{
    const auto& record = *pointers->ExceptionRecord;

    if (record.ExceptionCode == wideTextForDebugger && record.NumberParameters >= 2)
        std::fputs (juce::String (reinterpret_cast<const wchar_t*> (record.ExceptionInformation[1])).toRawUTF8(), stderr);

    return continueSearch;
}
}

DebugOutput::DebugOutput() : handler (::AddVectoredExceptionHandler (1, show)) {}
DebugOutput::~DebugOutput()    { ::RemoveVectoredExceptionHandler (handler); }
}
