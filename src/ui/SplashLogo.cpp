#include "ui/SplashLogo.h"

#include <BinaryData.h>

namespace zorva
{
SplashLogo::SplashLogo()
    : picture (juce::ImageFileFormat::loadFrom (BinaryData::ZorvaSplashLogo_png, (size_t) BinaryData::ZorvaSplashLogo_pngSize))
{
}
}
