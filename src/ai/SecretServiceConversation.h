#pragma once

#include "ai/HubCancellationDeadline.h"

#include <libsecret/secret.h>
#include <vector>

/** One conversation with the desktop's Secret Service about the Hub's key (freedesktop.org Secret Service API 0.2), ended by force after
    3000 ms. Nothing in it ever asks the user: a locked keyring is a failure. It has a connection to the bus of its own: the one that the
    process shares stays closed for good once the bus has ended, and would end the process with it. To be used, and destroyed, on the
    thread that made it. */
class SecretServiceConversation
{
public:
    template <typename Type>
    struct Unref
    {
        void operator() (Type* object) const { g_object_unref (object); }
    };

    template <typename Type>
    using Owned = std::unique_ptr<Type, Unref<Type>>;

    struct UnrefValue
    {
        void operator() (SecretValue* value) const { secret_value_unref (value); }
    };

    /** A secret that the library holds in memory which it wipes when the last owner is gone. */
    using Secret = std::unique_ptr<SecretValue, UnrefValue>;

    /** Finds the service and every entry of the Hub's name; false when something failed. To be called first, once. */
    bool open();

    /** What `open` found; empty when there is no key. */
    const std::vector<Owned<SecretItem>>& entries() const { return items; }

    /** The first entry's secret, which must exist; null with the failure noted when it is locked or cannot be read. */
    Secret secret();

    /** Leaves one entry, with this secret; false when something failed, with the earlier entries that could not be removed. */
    bool store (SecretValue* value);

    /** Removes every entry; false when one is locked, before anything is removed, or when something failed. */
    bool removeAll();

    /** What went wrong, as a sentence with the errno value that stands for it. */
    juce::String problem() const;

private:
    struct UnrefTable
    {
        void operator() (GHashTable* table) const { g_hash_table_unref (table); }
    };

    /** Takes what the bus library leaves for a main loop to do on this thread, and does it in the destructor. The Hub runs no such
        loop, and what stays undone keeps objects alive. */
    class ThreadContext
    {
    public:
        ThreadContext();
        ~ThreadContext();

    private:
        GMainContext* const context;

        JUCE_DECLARE_NON_COPYABLE (ThreadContext)
    };

    bool connect();
    bool openService();
    bool search();
    bool create (SecretValue*);
    bool removeFrom (size_t first);
    bool isAnyLocked() const;
    GError** receive();
    bool failed();
    bool fail (int number);
    static GHashTable* makeAttributes();

    static constexpr int callLimitMs = 3000;

    const ThreadContext context;    // outlives all that uses it
    const Owned<GCancellable> cancellable { g_cancellable_new() };
    const std::unique_ptr<GHashTable, UnrefTable> attributes { makeAttributes() };
    Owned<GDBusConnection> connection;
    Owned<SecretService> service;
    std::vector<Owned<SecretItem>> items;
    GError* pendingError = nullptr;
    int errorNumber = 0;
    HubCancellationDeadline deadline { callLimitMs, [this] { g_cancellable_cancel (cancellable.get()); } };
};
