#include "ai/HubCredentialStore.h"
#include "ai/SecretServiceConversation.h"
#include "platform/SecureMemory.h"

// The key in the Secret Service of the desktop (freedesktop.org Secret Service API 0.2), over an encrypted session where the service
// offers one. Nothing here ever asks the user: a locked keyring is a failure.

namespace
{
class SecretServiceCredentialStore final : public HubCredentialStore
{
public:
    bool storeKey (const juce::String& key, juce::String& outError) override
    {
        if (! isAcceptableApiKey (key))
        {
            outError = unacceptableKeyText;
            return false;
        }

        // The value's own copy lies in memory that is wiped when it is freed.
        const SecretServiceConversation::Secret value (
            secret_value_new (key.toRawUTF8(), (gssize) key.getNumBytesAsUTF8(), "text/plain"));

        SecretServiceConversation conversation;
        const bool stored = conversation.open() && conversation.store (value.get());
        outError = stored ? juce::String() : conversation.problem();
        return stored;
    }

    bool readKey (juce::MemoryBlock& outKey, juce::String& outError) override
    {
        platform::wipeBlock (outKey);
        SecretServiceConversation conversation;
        outError = readFrom (conversation, outKey);
        return outError.isEmpty();
    }

    bool deleteKey (juce::String& outError) override
    {
        SecretServiceConversation conversation;
        const bool deleted = conversation.open() && conversation.removeAll();
        outError = deleted ? juce::String() : conversation.problem();
        return deleted;
    }

    bool hasKey() override
    {
        SecretServiceConversation conversation;
        return conversation.open() && ! conversation.entries().empty() && conversation.secret() != nullptr;
    }

    juce::String backendName() override
    {
        return "Secret Service";
    }

private:
    /** Empty on success, else what went wrong. */
    static juce::String readFrom (SecretServiceConversation& conversation, juce::MemoryBlock& outKey)
    {
        if (! conversation.open())
            return conversation.problem();

        if (conversation.entries().empty())
            return noKeyText;

        const auto value = conversation.secret();

        if (value == nullptr)
            return conversation.problem();

        gsize size = 0;
        const auto* bytes = secret_value_get (value.get(), &size);

        if (size < 1 || size > (gsize) maximumApiKeyBytes)
            return badKeySizeText;

        outKey.replaceAll (bytes, size);
        return {};
    }
};
}

std::unique_ptr<HubCredentialStore> makeHubCredentialStore()
{
    return std::make_unique<SecretServiceCredentialStore>();
}
