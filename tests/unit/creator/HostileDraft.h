#pragma once

#include "app/HubPaths.h"
#include "creator/PreviewDraftStore.h"
#include "support/BoundedJson.h"
#include "support/Drafts.h"
#include "support/Files.h"
#include "support/Text.h"
#include "support/Utf8.h"

#include <gtest/gtest.h>

namespace zorva::test
{
inline juce::String times (const char* text, int count) { return juce::String::repeatedString (utf8 (text), count); }

/** A sound payload and ways to spoil it as text: what these tests say cannot be said by the framework's own values. */
class HostileDraftTest : public testing::Test
{
protected:
    HostileDraftTest() { HubPaths::publishDraftsDirectory().createDirectory(); }

    juce::File record() const     { return HubPaths::publishDraftsDirectory().getChildFile (jobId + ".json"); }
    juce::String payload() const  { return draftOf (render, jobId); }

    /** The payload with this JSON in place of a key's value. */
    juce::String with (const juce::String& key, const juce::String& json) const
    {
        const auto value = BoundedJson::parse (payload())[juce::Identifier (key)];
        const auto before = "\"" + key + "\": " + juce::JSON::toString (value, true);
        EXPECT_TRUE (payload().contains (before)) << before;
        return payload().replace (before, "\"" + key + "\": " + json);
    }

    /** The payload with something more behind its last property. */
    juce::String withMore (const juce::String& more) const
    {
        return payload().dropLastCharacters (1) + ", " + more + "}";
    }

    juce::String withNote (const juce::String& json) const    { return withMore ("\"note\": " + json); }

    /** The reason of a refused payload, "" for an accepted one. A refused one leaves all as it was; of an accepted one stands a record
        that is known again. */
    std::string reasonOf (const juce::String& text)
    {
        PreviewDraftStore store;
        const auto before = treeOf (HubPaths::publishDraftsDirectory());
        const auto result = store.save (text);
        EXPECT_EQ (result.accepted, result.reason.isEmpty());

        if (! result.accepted)
        {
            EXPECT_FALSE (result.idempotentReplay);
            EXPECT_EQ (treeOf (HubPaths::publishDraftsDirectory()), before);
            return result.reason.toStdString();
        }

        const auto bytes = read (record());
        const auto again = store.save (text);
        EXPECT_TRUE (again.accepted && again.idempotentReplay);
        EXPECT_EQ (read (record()), bytes);
        EXPECT_TRUE (isUtf8 (bytes.data(), bytes.size()));
        EXPECT_EQ (BoundedJson::textIn (BoundedJson::parseFile (record()), "jobId"), jobId);
        lastRecord = BoundedJson::parseFile (record());
        EXPECT_TRUE (record().deleteFile());
        return {};
    }

    const juce::String jobId { "0123456789abcdef0123456789abcdef" };
    const juce::File render = writeRender();
    juce::var lastRecord;       ///< of the last payload that was accepted
};
}
