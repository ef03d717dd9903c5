#include "platform/PictureDecoding.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <jpeglib.h>
#include <png.h>
#include <vector>

// The decoders leave by longjmp, past everything that stands between: so nothing here that needs a destructor is made after setjmp.

namespace platform
{
namespace
{
constexpr int bytesPerPixel = 4;

/** What is left of a file in memory. */
struct Reader
{
    const unsigned char* next;
    size_t left;
};

//==============================================================================
void failPng (png_structp png, png_const_charp)      { png_longjmp (png, 1); }
void ignoreWarning (png_structp, png_const_charp)    {}

void readPng (png_structp png, png_bytep destination, size_t count)
{
    auto* reader = static_cast<Reader*> (png_get_io_ptr (png));

    if (count > reader->left)
        png_error (png, "end of data");

    std::memcpy (destination, reader->next, count);
    reader->next += count;
    reader->left -= count;
}

/** Reads every row into the same place, over all passes of an interlaced picture. */
bool decodePng (png_structp png, png_infop info, Reader& reader, std::vector<png_byte>& row, int maximumSide)
{
    if (setjmp (png_jmpbuf (png)) != 0)
        return false;

    png_set_read_fn (png, &reader, readPng);
    png_set_user_limits (png, (png_uint_32) maximumSide, (png_uint_32) maximumSide);
    png_read_info (png, info);
    const int passes = png_set_interlace_handling (png);
    png_read_update_info (png, info);

    if (png_get_rowbytes (png, info) > row.size())
        return false;

    for (int pass = 0; pass < passes; ++pass)
        for (png_uint_32 y = 0; y < png_get_image_height (png, info); ++y)
            png_read_row (png, row.data(), nullptr);

    png_read_end (png, info);
    return true;
}

bool canDecodePng (Reader reader, int maximumSide)
{
    std::vector<png_byte> row ((size_t) maximumSide * bytesPerPixel * 2);     // at 16 bits a channel
    auto* png = png_create_read_struct (PNG_LIBPNG_VER_STRING, nullptr, failPng, ignoreWarning);
    auto* info = png != nullptr ? png_create_info_struct (png) : nullptr;
    const bool decoded = info != nullptr && decodePng (png, info, reader, row, maximumSide);
    png_destroy_read_struct (&png, &info, nullptr);
    return decoded;
}

//==============================================================================
/** The error handling of a JPEG decoder, and where to go from an error that it cannot go on from. */
struct JpegErrors
{
    jpeg_error_mgr manager;
    std::jmp_buf leave;
};

[[noreturn]] void failJpeg (j_common_ptr decoder)
{
    std::longjmp (reinterpret_cast<JpegErrors*> (decoder->err)->leave, 1);
}

void ignoreMessage (j_common_ptr, int)    {}
void ignoreOutput (j_common_ptr)          {}

bool decodeJpeg (jpeg_decompress_struct& decoder, JpegErrors& errors, const Reader& reader, std::vector<unsigned char>& row,
                 int maximumSide)
{
    if (setjmp (errors.leave) != 0)
        return false;

    jpeg_create_decompress (&decoder);
    jpeg_mem_src (&decoder, reader.next, (unsigned long) reader.left);

    if (jpeg_read_header (&decoder, TRUE) != JPEG_HEADER_OK || decoder.image_width > (unsigned int) maximumSide
        || decoder.image_height > (unsigned int) maximumSide || ! jpeg_start_decompress (&decoder)
        || (size_t) decoder.output_width * (size_t) decoder.output_components > row.size())
        return false;

    JSAMPROW rows[] { row.data() };

    while (decoder.output_scanline < decoder.output_height)
        jpeg_read_scanlines (&decoder, rows, 1);

    jpeg_finish_decompress (&decoder);
    return true;
}

bool canDecodeJpeg (const Reader& reader, int maximumSide)
{
    std::vector<unsigned char> row ((size_t) maximumSide * bytesPerPixel);
    JpegErrors errors {};
    jpeg_decompress_struct decoder {};
    decoder.err = jpeg_std_error (&errors.manager);
    errors.manager.error_exit = failJpeg;
    errors.manager.emit_message = ignoreMessage;
    errors.manager.output_message = ignoreOutput;
    const bool decoded = decodeJpeg (decoder, errors, reader, row, maximumSide);
    jpeg_destroy_decompress (&decoder);
    return decoded;
}
}

bool canDecodePicture (const void* data, size_t size, int maximumSide)
{
    const Reader reader { static_cast<const unsigned char*> (data), size };

    if (size >= 8 && png_sig_cmp (reader.next, 0, 8) == 0)
        return canDecodePng (reader, maximumSide);

    return size >= 2 && reader.next[0] == 0xff && reader.next[1] == 0xd8 && canDecodeJpeg (reader, maximumSide);
}
}
