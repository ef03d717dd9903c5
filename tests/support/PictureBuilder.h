#pragma once

#include <juce_core/juce_core.h>
#include <string>

/** Bytes of pictures, whole ones and bare headers that announce any size. */
namespace zorva::test
{
std::string big16 (int value);
std::string big32 (juce::uint32 value);

/** The first 24 bytes of a PNG file that announces this size. */
std::string pngHeader (juce::uint32 width, juce::uint32 height);

/** A whole, blank PNG file of one bit a pixel: small on disk, whatever its size. */
std::string blankPng (int width, int height);

/** What a JPEG file begins with. */
std::string jpegStart();

/** A bare marker of a JPEG file. */
std::string jpegMarker (int code);

/** A segment of a JPEG file whose stated length fits its content. */
std::string jpegSegment (int code, const std::string& content);

/** The frame header of a JPEG picture in three colours. */
std::string jpegFrame (int width, int height, int code = 0xc0);

/** A JPEG file up to its frame header and a few bytes more, with other segments in front. */
std::string jpegHeader (int width, int height, int code = 0xc0, const std::string& before = {});

/** A whole JPEG file. */
std::string blankJpeg (int width, int height);
}
