#pragma once

#include <juce_core/juce_core.h>

/** The one place that holds the OpenAI API key: the operating system's secret store. Never a file of the Hub's.

    No state and no lock; each call stands alone, any thread, and is bounded in time. Every copy of the key that the store makes
    is overwritten with zeros before it is released. */
class HubCredentialStore
{
public:
    virtual ~HubCredentialStore() = default;

    /** Stores the key in place of any earlier one. False with a sentence in outError when isAcceptableApiKey() refuses it, or the
        secret store fails; an earlier key then stays. */
    virtual bool storeKey (const juce::String& key, juce::String& outError) = 0;

    /** Empties outKey and reads the key's UTF-8 bytes into it. False with a sentence in outError when there is none, its size is
        not 1 to 2048, or the secret store fails. The caller wipes outKey. */
    virtual bool readKey (juce::MemoryBlock& outKey, juce::String& outError) = 0;

    /** Removes the key; true when there was none. */
    virtual bool deleteKey (juce::String& outError) = 0;

    /** Whether the secret store has an entry, usable or not; false on any failure. Never asks the user anything. */
    virtual bool hasKey() = 0;

    /** The secret store's name for people. */
    virtual juce::String backendName() = 0;
};

/** The store of this system: "Windows Credential Manager", or "Secret Service" on Linux. */
std::unique_ptr<HubCredentialStore> makeHubCredentialStore();

/** The longest key in bytes. */
constexpr int maximumApiKeyBytes = 2048;

/** What the entry is called in the secret store, and for whom it is. */
constexpr const char* credentialTargetName = "ZORVA_DAW/Hub/OpenAI/default";
constexpr const char* credentialUserName = "default";

/** Sentences of every store. */
constexpr const char* unacceptableKeyText = "The API key contains an unsupported character or size.";
constexpr const char* noKeyText = "No OpenAI API key is stored in ZORVA Hub.";
constexpr const char* badKeySizeText = "The stored API key has an invalid size.";

/** The rule for API keys: 1 to 2048 bytes, each an ASCII letter or digit, "-", "." or "_". */
bool isAcceptableApiKey (const juce::String& text);
