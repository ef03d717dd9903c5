#include "support/ProcessMemory.h"

#include "platform/windows/WindowsHeaders.h"

#include <gtest/gtest.h>

namespace zorva::test
{
std::string memoryAt (const void* address, size_t size)
{
    std::string bytes (size, '\0');
    SIZE_T count = 0;
    EXPECT_TRUE (::ReadProcessMemory (::GetCurrentProcess(), address, bytes.data(), size, &count)) << ::GetLastError();
    EXPECT_EQ (count, size);
    return bytes;
}
}
