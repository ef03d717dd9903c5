#include "support/ProcessMemory.h"

#include <cstdint>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace zorva::test
{
std::string memoryAt (const void* address, size_t size)
{
    std::string bytes (size, '\0');
    const auto memory = ::open ("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    const auto count = ::pread (memory, bytes.data(), size, (off_t) reinterpret_cast<intptr_t> (address));
    ::close (memory);
    EXPECT_EQ (count, (ssize_t) size);
    return bytes;
}
}
