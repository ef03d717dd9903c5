#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** Lets the user run this file. Does nothing on Windows, where every .exe can be run. False when the permission could not be
    set. Any thread. */
bool allowExecution (const juce::File& program);

/** Starts a program detached from the Hub, without arguments, in its own folder and with the user's own file-creation mask.
    Never goes through a shell. False when it could not be started. */
bool startProgram (const juce::File& program);

/** Opens a folder in the system's file manager, without a shell. False when nothing could be started. */
bool openFolder (const juce::File& folder);

/** Shows a file or folder, selected where the system can, in the system's file manager, without a shell. False when nothing
    could be started. */
bool revealInFileManager (const juce::File& file);

/** Opens an https or mailto address in the user's browser or mail program, without a shell. False for any other address, and when
    nothing could be started. */
bool openAddress (const juce::String& address);
}
