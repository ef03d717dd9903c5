#pragma once

#include "catalogue/Product.h"

/** One reading of installed.json that answers for every product what InstallService::installedLocation would answer one by one.

    A plain snapshot for deriving all cards at a cost in proportion to their number; it doesn't follow later changes. Message
    thread. */
class InstalledIndex
{
public:
    InstalledIndex();

    /** The installed executable or version directory, or the empty file. */
    juce::File installedLocation (const Product& product) const;

private:
    std::unordered_map<juce::String, juce::String> recordedPaths;    // by product id
    juce::Array<juce::File> loosePrograms;
};
