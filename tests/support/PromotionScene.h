#pragma once

#include "support/Files.h"
#include "vault/PromotionTransaction.h"

#include <gtest/gtest.h>

namespace zorva::test
{
/** A folder with a staged payload "new" for the target "setup.exe" and, if wanted, a live payload "old" and a record "record". */
struct PromotionScene
{
    enum Parts { nothing = 0, withTarget = 1, withRecord = 2, everything = 3 };

    explicit PromotionScene (int parts = everything, const juce::String& targetName = "setup.exe")
        : target (in (folder, targetName))
    {
        write (staged, "new");

        if ((parts & withTarget) != 0)
            write (target, "old");

        if ((parts & withRecord) != 0)
            write (metadata, "record");
    }

    /** Activates, and fails the test when that fails. */
    void activate (PromotionTransaction& promotion) const
    {
        juce::String error;
        EXPECT_TRUE (promotion.activate (staged, target, error, metadata)) << error;
        EXPECT_EQ (error, "");
    }

    /** The one thing in the folder whose name contains this text; fails the test when there is not exactly one. */
    juce::File found (const juce::String& text) const
    {
        juce::Array<juce::File> matches;

        for (const auto& [name, content] : treeOf (folder))
            if (! juce::String::fromUTF8 (name.c_str()).containsChar ('/') && juce::String::fromUTF8 (name.c_str()).contains (text))
                matches.add (in (folder, juce::String::fromUTF8 (name.c_str())));

        EXPECT_EQ (matches.size(), 1) << text;
        return matches.isEmpty() ? juce::File() : matches.getFirst();
    }

    juce::File journal() const           { return found (".zorva-promotion-"); }
    juce::File backup() const            { return found (".backup-"); }
    juce::File metadataBackup() const    { return found (".promotion-backup-"); }
    juce::String journalState() const    { return juce::JSON::parse (journal().loadFileAsString())["state"]; }
    Tree tree() const                    { return treeOf (folder); }

    juce::File folder = freshFolder ("vault");
    juce::File staged = in (folder, "setup.exe.part");
    juce::File metadata = in (folder, "vault.json");
    juce::File target;
};

/** The tree when the old payload and the old record stand and nothing else is left. */
inline Tree oldWorld()    { return { { "setup.exe", "file: old" }, { "vault.json", "file: record" } }; }

/** The tree when the new payload and the new record stand and nothing else is left. */
inline Tree newWorld()    { return { { "setup.exe", "file: new" }, { "vault.json", "file: new record" } }; }
}
