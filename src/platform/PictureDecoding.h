#pragma once

#include <cstddef>

namespace platform
{
/** Decodes a whole PNG (ISO/IEC 15948) or JPEG (ITU-T T.81) picture and throws the pixels away: true when the decoder finds nothing
    that it cannot go on from, and no side is larger than maximumSide. By libpng and libjpeg themselves, whose errors end the decoding
    here: the framework's own use of them does not survive a broken file. The caller has judged the announced size, which bounds time
    and memory. Any thread. */
bool canDecodePicture (const void* data, size_t size, int maximumSide);
}
