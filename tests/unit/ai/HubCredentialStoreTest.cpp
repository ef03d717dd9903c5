#include "ai/HubCredentialStore.h"

#include "support/Files.h"
#include "support/GuiHarness.h"
#include "support/PrivateMounts.h"
#include "support/SecretServiceSession.h"
#include "support/Text.h"

#include <atomic>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

using zorva::test::SecretServiceSession;

namespace
{
constexpr int noService = 107, locked = 13, timedOut = 110, anyOther = 5;

const juce::String firstKey ("sk-first_KEY.0123456789"), secondKey ("sk-second-KEY");

juce::MemoryBlock bytesOf (const juce::String& text)
{
    return { text.toRawUTF8(), text.getNumBytesAsUTF8() };
}

juce::String failure (int error)
{
    return "Secret Service operation failed (error " + juce::String (error) + ").";
}

/** What a call gave. The error begins as a text that success must clear. */
struct Outcome
{
    bool ok = false;
    juce::String error { "not cleared" };
    double tookMs = 0;
};

bool operator== (const Outcome& outcome, const juce::String& error)
{
    return ! outcome.ok && outcome.error == error;
}

void PrintTo (const Outcome& outcome, std::ostream* out)
{
    *out << (outcome.ok ? "true" : "false") << " with \"" << outcome.error << "\" after " << outcome.tookMs << " ms";
}

bool succeeded (const Outcome& outcome)
{
    return outcome.ok && outcome.error.isEmpty();
}

#define EXPECT_SUCCESS(call) EXPECT_PRED1 (succeeded, call)

template <typename Call>
Outcome timed (Call&& call)
{
    Outcome outcome;
    const auto start = juce::Time::getMillisecondCounterHiRes();
    outcome.ok = call (outcome.error);
    outcome.tookMs = juce::Time::getMillisecondCounterHiRes() - start;
    return outcome;
}

/** The store under test. The last key that was read stays in keyRead. */
struct Store
{
    Outcome store (const juce::String& key)     { return timed ([&] (auto& error) { return real->storeKey (key, error); }); }
    Outcome read()                              { return timed ([&] (auto& error) { return real->readKey (keyRead, error); }); }
    Outcome remove()                            { return timed ([&] (auto& error) { return real->deleteKey (error); }); }
    bool has()                                  { return real->hasKey(); }

    juce::String keyAsText()
    {
        EXPECT_SUCCESS (read());
        return keyRead.toString();
    }

    const std::unique_ptr<HubCredentialStore> real = makeHubCredentialStore();
    juce::MemoryBlock keyRead { bytesOf ("left from before") };
};

/** Every call fails with this error, within the bound, and reading leaves nothing in the caller's hands. */
void expectEveryCallToFail (Store& store, int error, double limitMs)
{
    const auto expect = [&] (const Outcome& outcome, const char* call)
    {
        EXPECT_EQ (outcome, failure (error)) << call;
        EXPECT_LT (outcome.tookMs, limitMs) << call;
    };

    store.keyRead = bytesOf ("left from before");
    expect (store.read(), "readKey");
    EXPECT_TRUE (store.keyRead.isEmpty());
    expect (store.store (secondKey), "storeKey");
    expect (store.remove(), "deleteKey");

    const auto presence = timed ([&] (auto&) { return store.has(); });
    EXPECT_FALSE (presence.ok);
    EXPECT_LT (presence.tookMs, limitMs) << "hasKey";
}

constexpr double boundMs = 8000, promptlyMs = 2500;
}

//==============================================================================
TEST (HubCredentialStore, IsNamedForPeople)
{
    EXPECT_EQ (makeHubCredentialStore()->backendName(), "Secret Service");
}

//==============================================================================
TEST (HubCredentialStore, HasNoKeyInTheBeginning)
{
    SecretServiceSession session;
    Store store;
    EXPECT_FALSE (store.has());
    EXPECT_EQ (store.read(), "No OpenAI API key is stored in ZORVA Hub.");
}

TEST (HubCredentialStore, ReadsBackWhatItStored)
{
    SecretServiceSession session;
    Store store;
    EXPECT_SUCCESS (store.store (firstKey));
    EXPECT_TRUE (store.has());
    EXPECT_SUCCESS (store.read());
    EXPECT_EQ (store.keyRead, bytesOf (firstKey));
    EXPECT_EQ (Store().keyAsText(), firstKey);
}

TEST (HubCredentialStore, StoresAKeyOfTheLargestSize)
{
    SecretServiceSession session;
    Store store;
    const auto largest = juce::String::repeatedString ("k", 2048);
    EXPECT_SUCCESS (store.store (largest));
    EXPECT_EQ (store.keyAsText(), largest);
}

TEST (HubCredentialStore, ReplacesAnEarlierKey)
{
    SecretServiceSession session;
    Store store;
    EXPECT_SUCCESS (store.store (firstKey));
    EXPECT_SUCCESS (store.store (secondKey));
    EXPECT_EQ (store.keyAsText(), secondKey);
    EXPECT_EQ (session.itemCount(), 1);
}

TEST (HubCredentialStore, KeepsTheEarlierKeyWhenItRefusesOne)
{
    SecretServiceSession session;
    Store store;
    EXPECT_SUCCESS (store.store (firstKey));

    for (const auto& refused : { juce::String(), juce::String ("with space"), juce::String ("plus+"), utf8 ("key\xc3\xa9"),
                                 juce::String::repeatedString ("k", 2049) })
    {
        EXPECT_EQ (store.store (refused), "The API key contains an unsupported character or size.") << refused.quoted();
        EXPECT_EQ (store.keyAsText(), firstKey);
    }

    EXPECT_EQ (session.itemCount(), 1);
}

TEST (HubCredentialStore, RefusesAKeyWithoutAskingTheSecretService)
{
    SecretServiceSession session (SecretServiceSession::Keyring::absent);
    EXPECT_EQ (Store().store ("with space"), "The API key contains an unsupported character or size.");
}

TEST (HubCredentialStore, DeletesTwice)
{
    SecretServiceSession session;
    Store store;
    EXPECT_SUCCESS (store.store (firstKey));
    EXPECT_SUCCESS (store.remove());
    EXPECT_SUCCESS (store.remove());
    EXPECT_EQ (session.itemCount(), 0);
}

TEST (HubCredentialStore, HasNoKeyAfterDeletingIt)
{
    SecretServiceSession session;
    Store store;
    EXPECT_SUCCESS (store.store (firstKey));
    EXPECT_SUCCESS (store.remove());
    EXPECT_FALSE (store.has());
    EXPECT_EQ (store.read(), "No OpenAI API key is stored in ZORVA Hub.");
}

TEST (HubCredentialStore, EmptiesTheBlockBeforeItReads)
{
    SecretServiceSession session;
    Store store;
    EXPECT_EQ (store.read(), noKeyText);
    EXPECT_TRUE (store.keyRead.isEmpty());

    EXPECT_SUCCESS (store.store (firstKey));
    store.keyRead = bytesOf ("left from before");
    EXPECT_EQ (store.keyAsText(), firstKey);
}

//==============================================================================
TEST (HubCredentialStore, StoresWhereOtherProgramsFindIt)
{
    SecretServiceSession session;
    Store store;
    EXPECT_SUCCESS (store.store (firstKey));
    EXPECT_EQ (session.lookUp(), firstKey);

    const auto seen = session.items();
    EXPECT_TRUE (seen.contains ("attribute.target = ZORVA_DAW/Hub/OpenAI/default")) << seen.joinIntoString ("\n");
    EXPECT_TRUE (seen.contains ("attribute.user = default")) << seen.joinIntoString ("\n");
    EXPECT_TRUE (seen.contains ("secret = " + firstKey)) << seen.joinIntoString ("\n");
}

TEST (HubCredentialStore, KeepsTheKeyWhereItOutlastsTheSession)
{
    SecretServiceSession session;
    EXPECT_SUCCESS (Store().store (firstKey));
    const auto keyring = session.keyringFolder().getChildFile ("login.keyring");
    const auto before = zorva::test::read (keyring);
    EXPECT_NE (before, "(absent)");

    EXPECT_SUCCESS (Store().store (juce::String::repeatedString ("k", 2048)));
    EXPECT_GT (zorva::test::read (keyring).size(), before.size());
}

TEST (HubCredentialStore, HasButDoesNotReadAForeignEntryOfABadSize)
{
    for (const int size : { 0, 2049, 3000 })
    {
        SecretServiceSession session;
        Store store;
        session.plant (bytesOf (juce::String::repeatedString ("k", size)));
        EXPECT_TRUE (store.has()) << size;
        EXPECT_EQ (store.read(), "The stored API key has an invalid size.") << size;
        EXPECT_TRUE (store.keyRead.isEmpty()) << size;
    }
}

TEST (HubCredentialStore, ReadsAForeignEntryOfAGoodSizeAsItIs)
{
    SecretServiceSession session;
    Store store;

    for (const auto& secret : { juce::String ("x"), juce::String::repeatedString ("k", 2048), utf8 ("not a key: \xc3\xa9+") })
    {
        session.plant (bytesOf (secret));
        EXPECT_TRUE (store.has());
        EXPECT_SUCCESS (store.read());
        EXPECT_EQ (store.keyRead, bytesOf (secret));
    }
}

TEST (HubCredentialStore, ReplacesForeignEntriesByOne)
{
    SecretServiceSession session;
    Store store;
    session.plant (bytesOf (juce::String::repeatedString ("k", 3000)));
    session.plant (bytesOf ("another"), { "kind", "another" });
    EXPECT_EQ (session.itemCount(), 2);

    EXPECT_SUCCESS (store.store (firstKey));
    EXPECT_EQ (store.keyAsText(), firstKey);
    EXPECT_EQ (session.itemCount(), 1);
    EXPECT_EQ (session.lookUp(), firstKey);
}

TEST (HubCredentialStore, DeletesForeignEntries)
{
    SecretServiceSession session;
    Store store;
    session.plant (bytesOf (juce::String::repeatedString ("k", 3000)));
    session.plant ({}, { "kind", "another" });
    EXPECT_SUCCESS (store.remove());
    EXPECT_FALSE (store.has());
    EXPECT_EQ (session.itemCount(), 0);
}

//==============================================================================
TEST (HubCredentialStore, FailsOnALockedKeyringWithoutAskingTheUser)
{
    SecretServiceSession session;
    Store store;
    EXPECT_SUCCESS (store.store (firstKey));
    session.lock();

    const auto messages = session.messagesDuring ([&] { expectEveryCallToFail (store, locked, promptlyMs); });
    EXPECT_TRUE (messages.contains ("member=SearchItems")) << messages;
    EXPECT_FALSE (messages.contains ("member=Unlock")) << messages;
    EXPECT_FALSE (messages.contains ("interface=org.freedesktop.Secret.Prompt")) << messages;
}

TEST (HubCredentialStore, FailsOnALockedKeyringThatHoldsNoKey)
{
    SecretServiceSession session;
    session.lock();
    Store store;
    EXPECT_FALSE (store.has());
    EXPECT_EQ (store.store (firstKey), failure (locked));
}

TEST (HubCredentialStore, FailsWithoutASessionBus)
{
    for (const char* address : { "unix:path=/nonexistent/bus", "unix:path=", "nonsense", "" })
    {
        ::setenv ("DBUS_SESSION_BUS_ADDRESS", address, 1);
        Store store;
        expectEveryCallToFail (store, noService, promptlyMs);
    }

    ::unsetenv ("DBUS_SESSION_BUS_ADDRESS");
    ::unsetenv ("XDG_RUNTIME_DIR");
    Store store;
    expectEveryCallToFail (store, noService, promptlyMs);
}

TEST (HubCredentialStore, FailsOnABusWithoutASecretService)
{
    SecretServiceSession session (SecretServiceSession::Keyring::absent);
    Store store;
    expectEveryCallToFail (store, noService, promptlyMs);
}

TEST (HubCredentialStore, FailsAfterTheSecretServiceHasEnded)
{
    SecretServiceSession session;
    Store store;
    EXPECT_SUCCESS (store.store (firstKey));
    session.endKeyring();
    expectEveryCallToFail (store, noService, promptlyMs);
}

TEST (HubCredentialStore, NeverKeepsTheKeyInAFileOfItsOwn)
{
    const juce::File home (juce::String (std::getenv ("HOME")));
    SecretServiceSession session (SecretServiceSession::Keyring::absent);
    const auto before = zorva::test::treeOf (home);
    EXPECT_EQ (Store().store (firstKey), failure (noService));
    EXPECT_EQ (zorva::test::treeOf (home).size(), before.size());

    for (const auto& [path, content] : zorva::test::treeOf (home))
        EXPECT_EQ (content.find (firstKey.toStdString()), std::string::npos) << path;
}

TEST (HubCredentialStore, ReportsAnErrorThatIsNoneOfTheKnownOnes)
{
    SecretServiceSession session;
    Store store;
    EXPECT_SUCCESS (store.store (firstKey));
    const zorva::test::ReadOnlyFolder unwritable (session.keyringFolder());
    EXPECT_EQ (store.store (secondKey), failure (anyOther));
    EXPECT_EQ (store.keyAsText(), firstKey);
}

//==============================================================================
TEST (HubCredentialStore, GivesUpOnASecretServiceThatHangs)
{
    SecretServiceSession session;
    Store store;
    EXPECT_SUCCESS (store.store (firstKey));
    session.stopAnswering();
    expectEveryCallToFail (store, timedOut, boundMs);

    session.answerAgain();
    EXPECT_SUCCESS (store.store (secondKey));
    EXPECT_EQ (store.keyAsText(), secondKey);
}

TEST (HubCredentialStore, GivesUpOnASecretServiceThatHangsFromTheBeginning)
{
    SecretServiceSession session;
    Store store;
    session.stopAnswering();
    expectEveryCallToFail (store, timedOut, boundMs);
}

TEST (HubCredentialStore, GivesUpOnABusThatHangs)
{
    SecretServiceSession session;
    Store store;
    EXPECT_SUCCESS (store.store (firstKey));
    session.stopBus();
    expectEveryCallToFail (store, timedOut, boundMs);
}

TEST (HubCredentialStore, GivesUpOnABusThatHangsFromTheBeginning)
{
    SecretServiceSession session (SecretServiceSession::Keyring::absent);
    Store store;
    session.stopBus();
    expectEveryCallToFail (store, timedOut, boundMs);
}

TEST (HubCredentialStore, OutlivesTheBusAndFindsTheNextOne)
{
    Store store;
    SecretServiceSession session;
    EXPECT_SUCCESS (store.store (firstKey));
    session.killBus();
    expectEveryCallToFail (store, noService, promptlyMs);

    SecretServiceSession next;
    EXPECT_FALSE (store.has());
    EXPECT_SUCCESS (store.store (secondKey));
    EXPECT_EQ (store.keyAsText(), secondKey);
    EXPECT_EQ (next.lookUp(), secondKey);
}

TEST (HubCredentialStore, LeavesNothingOpenBehind)
{
    SecretServiceSession session;
    Store store;
    const auto numOpen = [] { return juce::File ("/proc/self/fd").getNumberOfChildFiles (juce::File::findFilesAndDirectories); };
    EXPECT_SUCCESS (store.store (firstKey));
    EXPECT_EQ (store.keyAsText(), firstKey);
    const int before = numOpen();

    for (int round = 0; round < 10; ++round)
        EXPECT_TRUE (store.has());

    session.stopBus();
    EXPECT_EQ (store.read(), failure (timedOut));
    EXPECT_TRUE (zorva::test::pumpUntil ([&] { return numOpen() <= before; }, 10000)) << numOpen() << " instead of " << before;
}

TEST (HubCredentialStore, AnswersSeveralThreadsAtOnce)
{
    SecretServiceSession session;
    Store store;
    EXPECT_SUCCESS (store.store (firstKey));
    std::atomic<int> numWrong { 0 };

    const auto work = [&] (int number)
    {
        for (int round = 0; round < 5; ++round)
        {
            juce::MemoryBlock key;
            juce::String error;
            const bool ok = number % 2 == 0 ? store.real->storeKey (number % 4 == 0 ? firstKey : secondKey, error)
                                            : store.real->readKey (key, error)
                                                  && (key == bytesOf (firstKey) || key == bytesOf (secondKey));
            numWrong += ok && error.isEmpty() && store.real->hasKey() ? 0 : 1;
        }
    };

    std::vector<std::thread> threads;

    for (int number = 0; number < 8; ++number)
        threads.emplace_back (work, number);

    for (auto& thread : threads)
        thread.join();

    EXPECT_EQ (numWrong, 0);
    EXPECT_EQ (session.itemCount(), 1);
}
