#pragma once

#include <cstddef>

/** True when the bytes are UTF-8 (RFC 3629), an empty run included: no stray or missing continuation byte, nothing longer than it need
    be, no surrogate, nothing above U+10FFFF. The framework's own test lets some wrong continuation bytes pass. Pure, any thread. */
bool isUtf8 (const void* data, size_t size);
