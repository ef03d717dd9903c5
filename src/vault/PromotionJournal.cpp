#include "vault/PromotionJournal.h"

#include "app/PathTrust.h"
#include "support/BoundedJson.h"
#include "support/ChildFile.h"

namespace
{
std::optional<juce::File> payloadIn (const juce::var& parsed, const juce::Identifier& key, const juce::File& root)
{
    const auto file = fileFromRecordedPath (BoundedJson::textIn (parsed, key));

    if (! file.has_value() || ! PathTrust::isTrustedPathUnder (root, *file, true))
        return {};

    return file;
}

bool readMetadata (const juce::var& parsed, const juce::File& approvedMetadata, PromotionJournal& journal)
{
    const auto record = BoundedJson::textIn (parsed, "metadata");
    const auto snapshot = BoundedJson::textIn (parsed, "metadataBackup");

    // A snapshot of no record was never written, and no rule would say where it may lie.
    if (record.isEmpty())
        return snapshot.isEmpty();

    const auto metadata = fileFromRecordedPath (record);
    const auto metadataBackup = fileFromRecordedPath (snapshot);

    if (! metadata.has_value() || ! metadataBackup.has_value()
        || *metadata != approvedMetadata
        || ! PathTrust::hasNoReparseAncestry (*metadata)
        || *metadataBackup == *metadata
        || metadataBackup->getParentDirectory() != metadata->getParentDirectory()
        || ! PathTrust::hasNoReparseAncestry (*metadataBackup))
        return false;

    journal.metadata = *metadata;
    journal.metadataBackup = *metadataBackup;
    return true;
}
}

std::optional<PromotionJournal> PromotionJournal::read (const juce::var& parsed, const juce::File& root,
                                                        const juce::File& approvedMetadata)
{
    const auto target = payloadIn (parsed, "target", root);
    const auto staged = payloadIn (parsed, "staged", root);
    const auto backup = payloadIn (parsed, "backup", root);

    PromotionJournal journal;

    if (! target.has_value() || ! staged.has_value() || ! backup.has_value() || ! readMetadata (parsed, approvedMetadata, journal))
        return {};

    journal.target = *target;
    journal.staged = *staged;
    journal.backup = *backup;
    journal.state = BoundedJson::textIn (parsed, "state");
    journal.hadTarget = (bool) parsed["hadTarget"];
    journal.metadataExisted = (bool) parsed["metadataExisted"];
    return journal;
}
