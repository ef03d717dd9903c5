#include "support/Utf8.h"

#include <cstdint>

namespace
{
/** What the first byte of a character promises. */
struct Lead
{
    explicit Lead (uint8_t byte)
    {
        if (byte < 0x80)                        { size = 1; bits = byte; smallest = 0; }
        else if (byte >= 0xc0 && byte < 0xe0)   { size = 2; bits = byte & 0x1fu; smallest = 0x80; }
        else if (byte >= 0xe0 && byte < 0xf0)   { size = 3; bits = byte & 0x0fu; smallest = 0x800; }
        else if (byte >= 0xf0 && byte < 0xf8)   { size = 4; bits = byte & 0x07u; smallest = 0x10000; }
    }

    size_t size = 0;            ///< of the whole character in bytes; 0 when none can begin like this
    uint32_t bits = 0, smallest = 0;
};

bool isCharacter (uint32_t code)
{
    return code <= 0x10ffff && (code < 0xd800 || code > 0xdfff);
}
}

bool isUtf8 (const void* data, size_t size)
{
    const auto* const bytes = static_cast<const uint8_t*> (data);

    for (size_t begin = 0; begin < size;)
    {
        const Lead lead (bytes[begin]);

        if (lead.size == 0 || lead.size > size - begin)
            return false;

        auto code = lead.bits;

        for (size_t i = 1; i < lead.size; ++i)
        {
            const auto byte = bytes[begin + i];

            if ((byte & 0xc0) != 0x80)
                return false;

            code = (code << 6) | (byte & 0x3fu);
        }

        if (code < lead.smallest || ! isCharacter (code))
            return false;

        begin += lead.size;
    }

    return true;
}
