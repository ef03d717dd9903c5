#include "ui/SplashLogo.h"

#include <BinaryData.h>

SplashLogo::SplashLogo()
    : picture (juce::ImageFileFormat::loadFrom (BinaryData::ZorvaSplashLogo_png, (size_t) BinaryData::ZorvaSplashLogo_pngSize))
{
}
