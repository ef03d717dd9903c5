#include "ai/HubCredentialStore.h"

#include "platform/windows/WindowsHeaders.h"
#include "support/Text.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>
#include <wincred.h>

namespace
{
// Of one size: Wine's vault, unlike the real one, breaks when an entry's size changes while another thread reads it.
const juce::String firstKey ("sk-first_KEY.0123456789"), secondKey ("sk-other_KEY.9876543210");

const wchar_t* const target = L"ZORVA_DAW/Hub/OpenAI/default";

juce::MemoryBlock bytesOf (const juce::String& text)
{
    return { text.toRawUTF8(), text.getNumBytesAsUTF8() };
}

juce::MemoryBlock someBytes (size_t size)
{
    juce::MemoryBlock bytes (size);
    bytes.fillWith ('k');
    return bytes;
}

/** What a call gave. The error begins as a text that success must clear. */
struct Outcome
{
    bool ok = false;
    juce::String error { "not cleared" };
};

bool operator== (const Outcome& outcome, const juce::String& error)
{
    return ! outcome.ok && outcome.error == error;
}

void PrintTo (const Outcome& outcome, std::ostream* out)
{
    *out << (outcome.ok ? "true" : "false") << " with \"" << outcome.error << "\"";
}

bool succeeded (const Outcome& outcome)    { return outcome.ok && outcome.error.isEmpty(); }

#define EXPECT_SUCCESS(call) EXPECT_PRED1 (succeeded, call)

/** The entry as other programs see it. */
class Entry
{
public:
    Entry()     { ::CredReadW (target, CRED_TYPE_GENERIC, 0, &credential); }
    ~Entry()    { ::CredFree (credential); }

    bool exists() const                        { return credential != nullptr; }
    const CREDENTIALW* operator->() const      { return credential; }
    juce::MemoryBlock secret() const           { return { credential->CredentialBlob, credential->CredentialBlobSize }; }

private:
    PCREDENTIALW credential = nullptr;

    JUCE_DECLARE_NON_COPYABLE (Entry)
};

/** The store under test, over the user's real vault. A key that stands in it already is the user's own: the tests leave it alone and
    fail. */
class WindowsHubCredentialStore : public ::testing::Test
{
protected:
    void SetUp() override
    {
        PCREDENTIALW credential = nullptr;
        const bool exists = ::CredReadW (target, CRED_TYPE_GENERIC, 0, &credential) != FALSE;
        const auto error = ::GetLastError();
        ::CredFree (credential);

        ASSERT_FALSE (exists) << "The Credential Manager holds a key of the user's, which these tests would delete.";
        ASSERT_EQ (error, (DWORD) ERROR_NOT_FOUND);
        isOurs = true;
    }

    void TearDown() override
    {
        if (isOurs)
            ::CredDeleteW (target, CRED_TYPE_GENERIC, 0);
    }

    Outcome store (const juce::String& key)    { Outcome result; result.ok = real->storeKey (key, result.error); return result; }
    Outcome read()                             { Outcome result; result.ok = real->readKey (keyRead, result.error); return result; }
    Outcome remove()                           { Outcome result; result.ok = real->deleteKey (result.error); return result; }

    juce::String keyAsText()
    {
        EXPECT_SUCCESS (read());
        return keyRead.toString();
    }

    /** Puts an entry in place by other means than the store's. */
    static void plant (const juce::MemoryBlock& secret)
    {
        juce::MemoryBlock blob (secret);
        CREDENTIALW credential {};
        credential.Type = CRED_TYPE_GENERIC;
        credential.TargetName = const_cast<wchar_t*> (target);
        credential.UserName = const_cast<wchar_t*> (L"somebody");
        credential.CredentialBlob = static_cast<BYTE*> (blob.getData());
        credential.CredentialBlobSize = (DWORD) blob.getSize();
        credential.Persist = CRED_PERSIST_SESSION;
        ASSERT_TRUE (::CredWriteW (&credential, 0)) << secret.getSize() << " bytes: error " << ::GetLastError();
    }

    const std::unique_ptr<HubCredentialStore> real = makeHubCredentialStore();
    juce::MemoryBlock keyRead { bytesOf ("left from before") };

private:
    bool isOurs = false;
};
}

//==============================================================================
TEST_F (WindowsHubCredentialStore, IsNamedForPeople)
{
    EXPECT_EQ (real->backendName(), "Windows Credential Manager");
}

TEST_F (WindowsHubCredentialStore, HasNoKeyInTheBeginning)
{
    EXPECT_FALSE (real->hasKey());
    EXPECT_EQ (read(), "No OpenAI API key is stored in ZORVA Hub.");
    EXPECT_TRUE (keyRead.isEmpty());
}

TEST_F (WindowsHubCredentialStore, ReadsBackWhatItStored)
{
    EXPECT_SUCCESS (store (firstKey));
    EXPECT_TRUE (real->hasKey());
    EXPECT_EQ (keyAsText(), firstKey);

    juce::MemoryBlock other;
    juce::String error;
    EXPECT_TRUE (makeHubCredentialStore()->readKey (other, error)) << error;
    EXPECT_EQ (other, bytesOf (firstKey));
}

TEST_F (WindowsHubCredentialStore, StoresAKeyOfTheLargestSize)
{
    const auto largest = juce::String::repeatedString ("k", 2048);
    EXPECT_SUCCESS (store (largest));
    EXPECT_EQ (keyAsText(), largest);
}

TEST_F (WindowsHubCredentialStore, ReplacesAnEarlierKey)
{
    EXPECT_SUCCESS (store (firstKey));
    EXPECT_SUCCESS (store (secondKey));
    EXPECT_EQ (keyAsText(), secondKey);

    DWORD count = 0;
    PCREDENTIALW* entries = nullptr;
    ASSERT_TRUE (::CredEnumerateW (L"ZORVA_DAW/Hub/OpenAI/*", 0, &count, &entries));
    ::CredFree (entries);
    EXPECT_EQ (count, 1u);
}

TEST_F (WindowsHubCredentialStore, KeepsTheEarlierKeyWhenItRefusesOne)
{
    EXPECT_SUCCESS (store (firstKey));

    for (const auto& refused : { juce::String(), juce::String ("with space"), juce::String ("plus+"), utf8 ("key\xc3\xa9"),
                                 juce::String::repeatedString ("k", 2049) })
    {
        EXPECT_EQ (store (refused), "The API key contains an unsupported character or size.") << refused.quoted();
        EXPECT_EQ (keyAsText(), firstKey);
    }
}

TEST_F (WindowsHubCredentialStore, DeletesTwiceAndHasNoKeyThen)
{
    EXPECT_SUCCESS (store (firstKey));
    EXPECT_SUCCESS (remove());
    EXPECT_FALSE (real->hasKey());
    EXPECT_EQ (read(), "No OpenAI API key is stored in ZORVA Hub.");
    EXPECT_TRUE (keyRead.isEmpty());
    EXPECT_SUCCESS (remove());
    EXPECT_FALSE (Entry().exists());
}

TEST_F (WindowsHubCredentialStore, EmptiesTheBlockBeforeItReads)
{
    EXPECT_SUCCESS (store (firstKey));
    keyRead = bytesOf ("left from before, and longer than the key that is read");
    EXPECT_EQ (keyAsText(), firstKey);
}

//==============================================================================
TEST_F (WindowsHubCredentialStore, WritesTheseFieldsAndNoOther)
{
    EXPECT_SUCCESS (store (firstKey));
    const Entry entry;
    ASSERT_TRUE (entry.exists());

    EXPECT_EQ (entry->Type, (DWORD) CRED_TYPE_GENERIC);
    EXPECT_EQ (juce::String (entry->TargetName), "ZORVA_DAW/Hub/OpenAI/default");
    EXPECT_EQ (juce::String (entry->UserName), "default");
    EXPECT_EQ (entry->Persist, (DWORD) CRED_PERSIST_LOCAL_MACHINE);
    EXPECT_EQ (entry.secret(), bytesOf (firstKey)) << "UTF-8 with nothing behind it";
    EXPECT_EQ (entry->Flags, 0u);
    EXPECT_EQ (entry->AttributeCount, 0u);
    EXPECT_EQ (juce::String (entry->Comment), "");
    EXPECT_EQ (juce::String (entry->TargetAlias), "");
}

TEST_F (WindowsHubCredentialStore, HasButDoesNotReadAForeignEntryOfABadSize)
{
    for (const size_t size : { 2560u, 2049u, 0u })
    {
        plant (someBytes (size));
        keyRead = bytesOf ("left from before");
        EXPECT_TRUE (real->hasKey()) << size;
        EXPECT_EQ (read(), "The stored API key has an invalid size.") << size;
        EXPECT_TRUE (keyRead.isEmpty()) << size;
    }
}

TEST_F (WindowsHubCredentialStore, ReadsAForeignEntryOfAGoodSizeAsItIs)
{
    for (const auto& secret : { bytesOf ("x"), someBytes (2048), bytesOf (utf8 ("not a key: \xc3\xa9+")) })
    {
        plant (secret);
        EXPECT_TRUE (real->hasKey());
        EXPECT_SUCCESS (read());
        EXPECT_EQ (keyRead, secret);
    }
}

TEST_F (WindowsHubCredentialStore, ReplacesAndDeletesAForeignEntry)
{
    plant (someBytes (2560));
    EXPECT_SUCCESS (store (firstKey));
    EXPECT_EQ (keyAsText(), firstKey);
    ASSERT_TRUE (Entry().exists());
    EXPECT_EQ (juce::String (Entry()->UserName), "default");

    plant (someBytes (2560));
    EXPECT_SUCCESS (remove());
    EXPECT_FALSE (Entry().exists());
}

TEST_F (WindowsHubCredentialStore, AnswersSeveralThreadsAtOnce)
{
    EXPECT_SUCCESS (store (firstKey));
    std::atomic<int> wrong { 0 };

    const auto work = [&] (int number)
    {
        for (int round = 0; round < 20; ++round)
        {
            juce::MemoryBlock key;
            juce::String error;
            const bool ok = number % 2 == 0 ? real->storeKey (number % 4 == 0 ? firstKey : secondKey, error)
                                            : real->readKey (key, error) && (key == bytesOf (firstKey) || key == bytesOf (secondKey));
            wrong += ok && error.isEmpty() ? 0 : 1;
        }
    };

    std::vector<std::thread> threads;

    for (int number = 0; number < 4; ++number)
        threads.emplace_back (work, number);

    for (auto& thread : threads)
        thread.join();

    EXPECT_EQ (wrong, 0);
}
