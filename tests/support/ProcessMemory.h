#pragma once

#include <cstddef>
#include <string>

namespace zorva::test
{
/** What stands in this process's memory there, be it freed or not. A failure to read it fails the test. */
std::string memoryAt (const void* address, size_t size);
}
