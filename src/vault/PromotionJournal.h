#pragma once

#include <juce_core/juce_core.h>
#include <optional>

/** A promotion's journal as recovery reads it: what was being replaced, and how far the promotion had come. */
struct PromotionJournal
{
    juce::File target, staged, backup;
    juce::File metadata, metadataBackup;    ///< both empty when the promotion had no record
    juce::String state;                     ///< any text; only "committed" lets the promotion stand
    bool hadTarget = false, metadataExisted = false;

    /** Takes the journal's properties out of the parsed file. Nothing when a path is not one that recovery may follow: payloads
        must be direct children of root, and the record the approved one with its snapshot beside it. Any thread. */
    static std::optional<PromotionJournal> read (const juce::var& parsed, const juce::File& root, const juce::File& approvedMetadata);
};
