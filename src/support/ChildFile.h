#pragma once

#include <juce_core/juce_core.h>
#include <optional>

/** The file of exactly this name, or checked relative path, in a folder. Unlike juce::File::getChildFile it gives no meaning to a
    leading "~", "." or "..": the caller has checked the name. Pure. */
juce::File childOf (const juce::File& folder, const juce::String& checkedName);

/** A path as a record stores it. Nothing for a path that is not absolute, begins with "~", or whose last step is "." or ".."; the
    empty text is no path either. Pure. */
std::optional<juce::File> fileFromRecordedPath (const juce::String& path);
