#pragma once

#include "support/PictureBuilder.h"

/** Whole JPEG pictures of 8 by 8 grey pixels, coded by hand: every value is the one code of its table, a zero bit. */
namespace zorva::test
{
/** The tables that all of them share. */
inline std::string tinyJpegTables()
{
    const std::string oneCode = std::string (1, 1) + std::string (15, 0) + std::string (1, 0);
    return jpegSegment (0xdb, std::string (1, 0) + std::string (64, 1))
           + jpegSegment (0xc4, std::string (1, 0x00) + oneCode) + jpegSegment (0xc4, std::string (1, 0x10) + oneCode);
}

inline std::string tinyJpegFrame (int code, int components)
{
    auto content = std::string (1, 8) + big16 (8) + big16 (8) + std::string (1, (char) components);

    for (int i = 1; i <= components; ++i)
        content += std::string { (char) i, 0x11, 0 };

    return jpegSegment (code, content);
}

/** A baseline picture of so many colours, 1 to 4. */
inline std::string jpegOfComponents (int components)
{
    std::string scan (1, (char) components);

    for (int i = 1; i <= components; ++i)
        scan += std::string { (char) i, 0 };

    return jpegStart() + tinyJpegTables() + tinyJpegFrame (0xc0, components) + jpegSegment (0xda, scan + std::string { 0, 63, 0 })
           + std::string (1, (char) (0xff >> (2 * components))) + jpegMarker (0xd9);
}

/** A progressive picture of so many scans, all but the first of them the same. */
inline std::string jpegOfScans (int scans)
{
    auto bytes = jpegStart() + tinyJpegTables() + tinyJpegFrame (0xc2, 1);

    for (int i = 0; i < scans; ++i)
        bytes += jpegSegment (0xda, std::string { 1, 1, 0 } + (i == 0 ? std::string { 0, 0, 0 } : std::string { 1, 63, 0 })) + "\x7f";

    return bytes + jpegMarker (0xd9);
}
}
