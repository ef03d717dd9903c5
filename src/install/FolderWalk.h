#pragma once

#include <filesystem>
#include <functional>
#include <juce_core/juce_core.h>

/** One file, folder or link below a folder. */
struct FolderItem
{
    juce::String path;    ///< from the folder down, with "/" between its steps
    const std::filesystem::directory_entry& entry;
};

/** Shows everything below a folder to the function, in no particular order. Links are shown and never followed. What the system says
    about an item while listing is used, so that asking for its kind costs nothing. Stops when the function answers false. True when
    everything was shown. Any thread. */
bool visitAllBelow (const juce::File& folder, const std::function<bool (const FolderItem&)>& visit);
