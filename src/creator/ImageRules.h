#pragma once

#include <juce_core/juce_core.h>

/** Which pictures may be used. Any thread; nothing of a picture is decoded before its header has passed. */

/** The largest width or height, and the most pixels, of an acceptable picture. */
constexpr int maximumImageSide = 8192;
constexpr juce::int64 maximumImagePixels = 0x2000000;

/** The largest picture file in bytes. */
constexpr juce::int64 maximumImageBytes = 0x1400000;

/** The most scans of a JPEG picture that is decoded: ten times what encoders write, and half a second's work for the largest. */
constexpr int maximumJpegScans = 100;

/** An empty path, or an absolute one to a PNG or JPEG file that is no link, lies under none, and decodes to a picture within the
    limits. */
bool isAcceptableProfileImage (const juce::String& path);

/** The header of a PNG (ISO/IEC 15948) or JPEG (ITU-T T.81) file announces a picture within the limits. Reads at most the first
    1048576 bytes. */
bool isAcceptableImageHeader (const juce::File& file);

/** As isAcceptableImageHeader, for bytes that have been read. */
bool isAcceptableImageHeader (const juce::uint8* data, size_t size);

/** The file decodes to a valid picture within the limits. Call only after isAcceptableImageHeader(). Bytes that were judged lately are
    read again, but not decoded again. */
bool decodesWithinLimits (const juce::File& file);
