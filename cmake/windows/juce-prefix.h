#pragma once

// Read before the JUCE modules in the cross build: what Microsoft's headers bring in by themselves.

#include <cstring>
#include <ctime>

#pragma clang diagnostic push
#pragma clang diagnostic ignored "-W#warnings"    // of old instructions that the header also knows
#include <intrin.h>
#pragma clang diagnostic pop

#if __MINGW64_VERSION_MAJOR < 14
// The import library of this version lacks the function.
inline int hubTimeZoneName (std::size_t* length, char* buffer, std::size_t size, int index)
{
    constexpr int rangeError = 34;
    const char* const name = _tzname[index != 0 ? 1 : 0];
    *length = std::strlen (name) + 1;

    if (size < *length)
        return rangeError;

    std::memcpy (buffer, name, *length);
    return 0;
}

 #define _get_tzname hubTimeZoneName
#endif
