#include "ai/HubCancellationDeadline.h"
#include "ai/HubCredentialStore.h"
#include "platform/SecureMemory.h"

#include <cerrno>
#include <libsecret/secret.h>
#include <vector>

// The key in the Secret Service of the desktop (freedesktop.org Secret Service API 0.2), over an encrypted session where the service
// offers one. Nothing here ever asks the user: a locked keyring is a failure.

namespace
{
constexpr int callLimitMs = 3000;

template <typename Type>
struct Unref
{
    void operator() (Type* object) const { g_object_unref (object); }
};

template <typename Type>
using Owned = std::unique_ptr<Type, Unref<Type>>;

struct FreeError
{
    void operator() (GError* error) const { g_error_free (error); }
};

struct FreeText
{
    void operator() (char* text) const { g_free (text); }
};

struct UnrefTable
{
    void operator() (GHashTable* table) const { g_hash_table_unref (table); }
};

struct UnrefValue
{
    void operator() (SecretValue* value) const { secret_value_unref (value); }
};

/** The errno value that stands for a failure. */
int errnoFor (const GError& error)
{
    if (g_error_matches (&error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED))
        return EACCES;

    if (g_error_matches (&error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) || g_error_matches (&error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY)
        || g_error_matches (&error, G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT) || g_error_matches (&error, G_DBUS_ERROR, G_DBUS_ERROR_TIMED_OUT))
        return ETIMEDOUT;

    if (g_error_matches (&error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
        return ECANCELED;

    const bool hasNoService = g_error_matches (&error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN)
                           || g_error_matches (&error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER)
                           || g_error_matches (&error, G_DBUS_ERROR, G_DBUS_ERROR_DISCONNECTED)
                           || g_error_matches (&error, G_DBUS_ERROR, G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND)
                           || g_error_matches (&error, G_DBUS_ERROR, G_DBUS_ERROR_SPAWN_EXEC_FAILED)
                           || g_error_matches (&error, G_DBUS_ERROR, G_DBUS_ERROR_SPAWN_CHILD_EXITED)
                           || g_error_matches (&error, G_IO_ERROR, G_IO_ERROR_CLOSED);
    return hasNoService ? ENOTCONN : EIO;
}

/** Without an address the bus library would start a bus of its own, in a process that nothing bounds. */
bool isSessionBusKnown()
{
    if (g_getenv ("DBUS_SESSION_BUS_ADDRESS") != nullptr)
        return true;

    const auto runtimeFolder = juce::String::fromUTF8 (g_get_user_runtime_dir());
    return juce::File::isAbsolutePath (runtimeFolder) && juce::File (runtimeFolder).getChildFile ("bus").exists();
}

/** Takes what the bus library leaves for a main loop to do on this thread, and does it in the destructor. The Hub runs no such loop,
    and what stays undone keeps objects alive. */
class ThreadContext
{
public:
    ThreadContext() : context (g_main_context_new())    { g_main_context_push_thread_default (context); }

    ~ThreadContext()
    {
        while (g_main_context_iteration (context, FALSE)) {}

        g_main_context_pop_thread_default (context);
        g_main_context_unref (context);
    }

private:
    GMainContext* const context;

    JUCE_DECLARE_NON_COPYABLE (ThreadContext)
};

GObject* constructService (GType type, guint numProperties, GObjectConstructParam* properties)
{
    auto* const parent = (GObjectClass*) g_type_class_peek (SECRET_TYPE_SERVICE);
    auto* const object = parent->constructor (type, numProperties, properties);
    g_object_set (object, "g-bus-type", G_BUS_TYPE_NONE, nullptr);
    return object;
}

/** The library's client of the service, on the connection that it is given: left alone, it takes the one that the process shares. */
GType typeOfService()
{
    static const auto type = g_type_register_static_simple (
        SECRET_TYPE_SERVICE, "HubSecretService", sizeof (SecretServiceClass),
        [] (gpointer newClass, gpointer) { ((GObjectClass*) newClass)->constructor = constructService; }, sizeof (SecretService), nullptr,
        (GTypeFlags) 0);
    return type;
}

/** One conversation with the service, ended by force after callLimitMs. It has a connection to the bus of its own: the one that the
    process shares stays closed for good once the bus has ended, and would end the process with it. */
class Conversation
{
public:
    /** Finds the service and every entry of the Hub's name; false when something failed. To be called first, once. */
    bool open()
    {
        // Nothing is asked that could not be ended.
        return (deadline.startThread() || fail (EIO)) && connect() && openService() && search();
    }

    const std::vector<Owned<SecretItem>>& entries() const { return items; }

    /** The first entry's secret; null with the failure noted when it is locked or cannot be read. */
    std::unique_ptr<SecretValue, UnrefValue> secret()
    {
        if (secret_item_get_locked (items.front().get()))
        {
            fail (EACCES);
            return {};
        }

        std::unique_ptr<SecretValue, UnrefValue> value (secret_item_get_secret (items.front().get()));

        if (value == nullptr)
            fail (EIO);

        return value;
    }

    /** Leaves one entry, with this secret. */
    bool store (SecretValue* value)
    {
        if (isAnyLocked())
            return fail (EACCES);

        if (items.empty())
            return create (value);

        secret_item_set_secret_sync (items.front().get(), value, cancellable.get(), receive());
        return ! failed() && removeFrom (1);
    }

    bool removeAll()
    {
        return isAnyLocked() ? fail (EACCES) : removeFrom (0);
    }

    /** What went wrong, as a sentence. */
    juce::String problem() const
    {
        return "Secret Service operation failed (error " + juce::String (errorNumber) + ").";
    }

private:
    bool connect()
    {
        if (! isSessionBusKnown())
            return fail (ENOTCONN);

        const std::unique_ptr<char, FreeText> address (g_dbus_address_get_for_bus_sync (G_BUS_TYPE_SESSION, cancellable.get(), receive()));

        if (! failed())
            connection.reset (g_dbus_connection_new_for_address_sync (
                address.get(),
                (GDBusConnectionFlags) (G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
                nullptr, cancellable.get(), receive()));

        if (! failed() && connection != nullptr)
            return true;

        // Whatever is wrong with the way to the bus: no service is to be had.
        return fail (ENOTCONN);
    }

    bool openService()
    {
        service.reset ((SecretService*) g_initable_new (typeOfService(), cancellable.get(), receive(), "g-connection", connection.get(),
                                                        "flags", SECRET_SERVICE_OPEN_SESSION, nullptr));
        return ! failed();
    }

    bool search()
    {
        auto* const found = secret_service_search_sync (service.get(), nullptr, attributes.get(),
                                                        (SecretSearchFlags) (SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS),
                                                        cancellable.get(), receive());

        for (auto* each = found; each != nullptr; each = each->next)
            items.emplace_back ((SecretItem*) each->data);

        g_list_free (found);
        return ! failed();
    }

    bool create (SecretValue* value)
    {
        const Owned<SecretCollection> collection (
            secret_collection_for_alias_sync (service.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, cancellable.get(),
                                              receive()));

        if (failed())
            return false;

        // Without a keyring the service would ask the user to make one.
        if (collection == nullptr || secret_collection_get_locked (collection.get()))
            return fail (EACCES);

        const Owned<SecretItem> item (secret_item_create_sync (collection.get(), nullptr, attributes.get(), "ZORVA Hub OpenAI API key",
                                                               value, SECRET_ITEM_CREATE_REPLACE, cancellable.get(), receive()));
        return ! failed();
    }

    bool removeFrom (size_t first)
    {
        for (auto i = first; i < items.size(); ++i)
        {
            secret_item_delete_sync (items[i].get(), cancellable.get(), receive());

            if (failed())
                return false;
        }

        return true;
    }

    bool isAnyLocked() const
    {
        return std::any_of (items.begin(), items.end(), [] (const auto& item) { return secret_item_get_locked (item.get()); });
    }

    /** Where the next call is to leave its error. */
    GError** receive()
    {
        jassert (pendingError == nullptr);
        return &pendingError;
    }

    /** True when the last call left an error, which is noted. */
    bool failed()
    {
        if (pendingError == nullptr)
            return false;

        const std::unique_ptr<GError, FreeError> error (std::exchange (pendingError, nullptr));
        fail (errnoFor (*error));
        return true;
    }

    /** Notes what went wrong, which is the deadline's doing once that has passed: the library leaves no error where only an entry's
        secret did not come. */
    bool fail (int number)
    {
        deadline.stop();
        errorNumber = deadline.hasExpired() ? ETIMEDOUT : number;
        return false;
    }

    static GHashTable* makeAttributes()
    {
        auto* const table = g_hash_table_new (g_str_hash, g_str_equal);
        g_hash_table_insert (table, const_cast<char*> ("target"), const_cast<char*> (credentialTargetName));
        g_hash_table_insert (table, const_cast<char*> ("user"), const_cast<char*> (credentialUserName));
        return table;
    }

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
        const std::unique_ptr<SecretValue, UnrefValue> value (
            secret_value_new (key.toRawUTF8(), (gssize) key.getNumBytesAsUTF8(), "text/plain"));

        Conversation conversation;
        const bool stored = conversation.open() && conversation.store (value.get());
        outError = stored ? juce::String() : conversation.problem();
        return stored;
    }

    bool readKey (juce::MemoryBlock& outKey, juce::String& outError) override
    {
        platform::wipeBlock (outKey);
        Conversation conversation;
        outError = readFrom (conversation, outKey);
        return outError.isEmpty();
    }

    bool deleteKey (juce::String& outError) override
    {
        Conversation conversation;
        const bool deleted = conversation.open() && conversation.removeAll();
        outError = deleted ? juce::String() : conversation.problem();
        return deleted;
    }

    bool hasKey() override
    {
        Conversation conversation;
        return conversation.open() && ! conversation.entries().empty() && conversation.secret() != nullptr;
    }

    juce::String backendName() override
    {
        return "Secret Service";
    }

private:
    /** Empty on success, else what went wrong. */
    static juce::String readFrom (Conversation& conversation, juce::MemoryBlock& outKey)
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
