#pragma once

#include <juce_core/juce_core.h>

/** Writing the Hub's small JSON records so that a reader sees the old file or the new one, never half of either. */
namespace RecordFile
{
enum class Outcome
{
    written,        ///< the new text is in place
    notWritten,     ///< the sibling could not be written whole; the old file stands
    notReplaced     ///< the sibling was whole but could not take the file's place; the old file stands
};

/** The text of a record: the value over several lines, at most 15 decimal places, line ends "\r\n". */
juce::String toText (const juce::var& value);

/** Writes text as UTF-8 without a byte-order mark into a temporary sibling, reads it back, and only when every byte is there
    lets it take the file's place. The file framework reports success on a full disk; the reading back does not. Line ends of the
    text become "\r\n". The parent directory must exist. Any thread. */
Outcome replace (const juce::File& file, const juce::String& text);
}
