#include "ai/HubCredentialStore.h"
#include "platform/SecureMemory.h"
#include "platform/windows/WindowsHeaders.h"

#include <wincred.h>

// The key in the Windows Credential Manager.

namespace
{
juce::String problemText (DWORD error)
{
    return "Windows Credential Manager operation failed (error " + juce::String (error) + ").";
}

/** The vault's entry, its secret wiped before it goes. */
class Entry
{
public:
    Entry()
    {
        const juce::String target (credentialTargetName);

        if (! ::CredReadW (target.toWideCharPointer(), CRED_TYPE_GENERIC, 0, &credential))
            error = ::GetLastError();
    }

    ~Entry()
    {
        if (credential == nullptr)
            return;

        platform::wipeMemory (credential->CredentialBlob, credential->CredentialBlob != nullptr ? credential->CredentialBlobSize : 0);
        ::CredFree (credential);
    }

    bool exists() const                 { return credential != nullptr; }
    DWORD lastError() const             { return error; }
    const CREDENTIALW& get() const      { return *credential; }

private:
    PCREDENTIALW credential = nullptr;
    DWORD error = ERROR_SUCCESS;

    JUCE_DECLARE_NON_COPYABLE (Entry)
};

class WindowsHubCredentialStore final : public HubCredentialStore
{
public:
    bool storeKey (const juce::String& key, juce::String& outError) override
    {
        if (! isAcceptableApiKey (key))
        {
            outError = unacceptableKeyText;
            return false;
        }

        juce::MemoryBlock blob (key.toRawUTF8(), key.getNumBytesAsUTF8());
        juce::String target (credentialTargetName), user (credentialUserName);

        CREDENTIALW credential {};
        credential.Type = CRED_TYPE_GENERIC;
        credential.TargetName = const_cast<wchar_t*> (target.toWideCharPointer());
        credential.UserName = const_cast<wchar_t*> (user.toWideCharPointer());
        credential.CredentialBlob = static_cast<BYTE*> (blob.getData());
        credential.CredentialBlobSize = (DWORD) blob.getSize();
        credential.Persist = CRED_PERSIST_LOCAL_MACHINE;

        const bool stored = ::CredWriteW (&credential, 0) != FALSE;
        const auto error = stored ? (DWORD) ERROR_SUCCESS : ::GetLastError();
        platform::wipeBlock (blob);

        outError = stored ? juce::String() : problemText (error);
        return stored;
    }

    bool readKey (juce::MemoryBlock& outKey, juce::String& outError) override
    {
        platform::wipeBlock (outKey);
        const Entry entry;

        if (! entry.exists())
        {
            outError = entry.lastError() == ERROR_NOT_FOUND ? juce::String (noKeyText) : problemText (entry.lastError());
            return false;
        }

        const auto& credential = entry.get();

        if (credential.CredentialBlob == nullptr || credential.CredentialBlobSize < 1
            || credential.CredentialBlobSize > (DWORD) maximumApiKeyBytes)
        {
            outError = badKeySizeText;
            return false;
        }

        outKey.replaceAll (credential.CredentialBlob, credential.CredentialBlobSize);
        outError.clear();
        return true;
    }

    bool deleteKey (juce::String& outError) override
    {
        const juce::String target (credentialTargetName);
        const bool deleted = ::CredDeleteW (target.toWideCharPointer(), CRED_TYPE_GENERIC, 0) != FALSE;
        const auto error = deleted ? (DWORD) ERROR_SUCCESS : ::GetLastError();

        outError = deleted || error == ERROR_NOT_FOUND ? juce::String() : problemText (error);
        return outError.isEmpty();
    }

    bool hasKey() override                  { return Entry().exists(); }
    juce::String backendName() override     { return "Windows Credential Manager"; }
};
}

std::unique_ptr<HubCredentialStore> makeHubCredentialStore()
{
    return std::make_unique<WindowsHubCredentialStore>();
}
