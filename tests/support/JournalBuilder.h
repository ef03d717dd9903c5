#pragma once

#include "support/Files.h"
#include "vault/PromotionTransaction.h"

namespace zorva::test
{
/** A promotion journal as a crash leaves it, in a folder whose record is "vault.json". Change what a test is about, then call
    save(). */
struct JournalBuilder
{
    explicit JournalBuilder (const juce::File& root)
        : staged (pathIn (root, "setup.exe.part")), target (pathIn (root, "setup.exe")), backup (pathIn (root, "setup.exe.backup-1")),
          metadata (pathIn (root, "vault.json")), metadataBackup (pathIn (root, "vault.json.promotion-backup-1")),
          file (in (root, ".zorva-promotion-1.json"))
    {
    }

    /** Writes the journal; returns its file. */
    juce::File save() const    { return write (file, juce::JSON::toString (toVar())); }

    juce::var toVar() const
    {
        juce::DynamicObject::Ptr object = new juce::DynamicObject();
        object->setProperty ("version", 1);
        object->setProperty ("state", state);
        object->setProperty ("staged", staged);
        object->setProperty ("target", target);
        object->setProperty ("backup", backup);
        object->setProperty ("hadTarget", hadTarget);
        object->setProperty ("metadata", metadata);
        object->setProperty ("metadataBackup", metadataBackup);
        object->setProperty ("metadataExisted", metadataExisted);
        return object.get();
    }

    static juce::String pathIn (const juce::File& root, const juce::String& name)    { return in (root, name).getFullPathName(); }

    juce::var state { "activated" }, staged, target, backup, metadata, metadataBackup;
    bool hadTarget = true, metadataExisted = true;
    juce::File file;
};
}
