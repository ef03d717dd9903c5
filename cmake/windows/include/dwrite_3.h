#pragma once

// The header of this version lacks an operator for the flags of one enumeration.

#include_next <dwrite_3.h>

#if defined (__cplusplus) && __MINGW64_VERSION_MAJOR < 14
extern "C++" constexpr DWRITE_GLYPH_IMAGE_FORMATS operator| (DWRITE_GLYPH_IMAGE_FORMATS a, DWRITE_GLYPH_IMAGE_FORMATS b)
{
    return static_cast<DWRITE_GLYPH_IMAGE_FORMATS> (static_cast<int> (a) | static_cast<int> (b));
}
#endif
