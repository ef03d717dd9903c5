#pragma once

#include "ui/AssetPicture.h"

#include <functional>

/** Makes compiled-in pictures ready on one worker, one after the other, so that no two whole pictures are in memory at once. */
namespace PictureLoader
{
/** Held by everyone who loads pictures. With the last one goes the work: what waits is dropped, and its destructor returns when what
    runs has ended, after one picture at most. So nothing decodes on while the program ends. Message thread. */
class User
{
public:
    User();
    ~User();

    JUCE_DECLARE_NON_COPYABLE (User)
};

/** Decodes and scales a picture and calls back on the message thread, with an invalid image when it could not be. No callback comes
    when the message loop or the last user has gone. False, with nothing begun, when no worker could be started. Message thread. */
bool load (const juce::String& resourceName, const AssetPicture::Request& request, std::function<void (const juce::Image&)> callback);

/** True while a job runs or waits. Any thread. */
bool isBusy();
}
