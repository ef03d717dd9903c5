#pragma once

#include "ui/AssetPicture.h"

#include <functional>

/** Makes compiled-in pictures ready on one worker, one after the other, so that no two whole pictures are in memory at once. */
namespace PictureLoader
{
/** Decodes and scales a picture and calls back on the message thread, with an invalid image when it could not be. No callback comes
    when the message loop has ended. Message thread. */
void load (const juce::String& resourceName, const AssetPicture::Request& request, std::function<void (const juce::Image&)> callback);

/** True while a job runs or waits. Any thread. */
bool isBusy();
}
