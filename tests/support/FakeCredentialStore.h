#pragma once

#include "ai/HubCredentialStore.h"

#include <functional>

namespace zorva::test
{
/** A credential store in memory that notes what is asked of it, and fails when told to. Any thread. */
class FakeCredentialStore final : public HubCredentialStore
{
public:
    FakeCredentialStore() = default;

    /** Begins with a key. */
    explicit FakeCredentialStore (const juce::String& key)     { hold (key); }

    /** Puts a key in place, without a call being noted. */
    void hold (const juce::String& key)                        { hold (juce::MemoryBlock (key.toRawUTF8(), key.getNumBytesAsUTF8())); }

    /** Puts any bytes in place of a key; none at all still counts as an entry. */
    void hold (const juce::MemoryBlock& bytes)
    {
        const juce::ScopedLock lock (mutex);
        entry = juce::MemoryBlock (bytes);    // assigning an empty block would copy from null
        hasEntry = true;
    }

    /** From now on such calls fail with this text, and leave the key as it is; the empty text ends that. */
    void failStoring (const juce::String& text)                { set (storingFailure, text); }
    void failReading (const juce::String& text)                { set (readingFailure, text); }
    void failDeleting (const juce::String& text)               { set (deletingFailure, text); }

    /** The key in place, as text; empty when there is none. */
    juce::String key() const
    {
        const juce::ScopedLock lock (mutex);
        return hasEntry ? entry.toString() : juce::String();
    }

    /** The calls so far but for backendName(), oldest first: the name of the operation, and for storeKey a blank and the key. */
    juce::StringArray calls() const
    {
        const juce::ScopedLock lock (mutex);
        return noted;
    }

    /** How often an operation was called. */
    int callCount (const juce::String& operation) const
    {
        int count = 0;

        for (const auto& call : calls())
            count += call.upToFirstOccurrenceOf (" ", false, false) == operation ? 1 : 0;

        return count;
    }

    void forgetCalls()
    {
        const juce::ScopedLock lock (mutex);
        noted.clear();
    }

    /** Called at the beginning of each storeKey(), on the caller's thread. To be set before the store is used. */
    std::function<void()> onStoring;

    /** What backendName() answers. */
    void nameBackend (const juce::String& name)                { set (backend, name); }

    //==============================================================================
    bool storeKey (const juce::String& newKey, juce::String& outError) override
    {
        if (onStoring != nullptr)
            onStoring();

        const juce::ScopedLock lock (mutex);
        noted.add ("storeKey " + newKey);

        if (! succeeds (storingFailure, outError))
            return false;

        hold (newKey);
        return true;
    }

    bool readKey (juce::MemoryBlock& outKey, juce::String& outError) override
    {
        const juce::ScopedLock lock (mutex);
        noted.add ("readKey");
        outKey.reset();

        if (! succeeds (hasEntry ? readingFailure : "There is no key.", outError))
            return false;

        outKey = juce::MemoryBlock (entry);
        return true;
    }

    bool deleteKey (juce::String& outError) override
    {
        const juce::ScopedLock lock (mutex);
        noted.add ("deleteKey");

        if (! succeeds (deletingFailure, outError))
            return false;

        entry.reset();
        hasEntry = false;
        return true;
    }

    bool hasKey() override
    {
        const juce::ScopedLock lock (mutex);
        noted.add ("hasKey");
        return hasEntry;
    }

    juce::String backendName() override
    {
        const juce::ScopedLock lock (mutex);
        return backend;
    }

private:
    void set (juce::String& text, const juce::String& value)
    {
        const juce::ScopedLock lock (mutex);
        text = value;
    }

    static bool succeeds (const juce::String& failure, juce::String& outError)
    {
        outError = failure;
        return failure.isEmpty();
    }

    juce::CriticalSection mutex;
    juce::MemoryBlock entry;
    bool hasEntry = false;
    juce::String storingFailure, readingFailure, deletingFailure;
    juce::String backend { "Test Vault" };
    juce::StringArray noted;
};
}
