#include "platform/PictureDecoding.h"

#include <juce_graphics/juce_graphics.h>

namespace platform
{
bool canDecodePicture (const void* data, size_t size, int maximumSide)
{
    const auto image = juce::ImageFileFormat::loadFrom (data, size);
    return image.isValid() && image.getWidth() <= maximumSide && image.getHeight() <= maximumSide;
}
}
