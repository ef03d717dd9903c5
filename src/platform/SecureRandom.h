#pragma once

#include <cstddef>

namespace platform
{
/** Fills size bytes from the system's cryptographic random source: getrandom on Linux, BCryptGenRandom with the preferred
    generator on Windows. False when the source failed at any point; what was written is then overwritten with zeros. Any
    thread. */
bool fillWithSecureRandom (void* data, size_t size);
}
