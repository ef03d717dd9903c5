#pragma once

#include "ui/ScaledPicture.h"

/** The logo that is compiled in, which also stands for products without a picture. Decoded once for all who show it: hold it
    through juce::SharedResourcePointer; it goes with its last holder. Message thread. */
struct SplashLogo
{
    SplashLogo();

    ScaledPicture picture;   ///< invalid if the logo could not be decoded
};
