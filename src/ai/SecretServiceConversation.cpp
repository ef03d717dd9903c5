#include "ai/SecretServiceConversation.h"

#include "ai/HubCredentialStore.h"

#include <cerrno>

namespace
{
struct FreeError
{
    void operator() (GError* error) const { g_error_free (error); }
};

struct FreeText
{
    void operator() (char* text) const { g_free (text); }
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
}

SecretServiceConversation::ThreadContext::ThreadContext() : context (g_main_context_new())
{
    g_main_context_push_thread_default (context);
}

SecretServiceConversation::ThreadContext::~ThreadContext()
{
    while (g_main_context_iteration (context, FALSE)) {}

    g_main_context_pop_thread_default (context);
    g_main_context_unref (context);
}

bool SecretServiceConversation::open()
{
    // Nothing is asked that could not be ended.
    return (deadline.startThread() || fail (EIO)) && connect() && openService() && search();
}

SecretServiceConversation::Secret SecretServiceConversation::secret()
{
    if (secret_item_get_locked (items.front().get()))
    {
        fail (EACCES);
        return {};
    }

    Secret value (secret_item_get_secret (items.front().get()));

    if (value == nullptr)
        fail (EIO);

    return value;
}

bool SecretServiceConversation::store (SecretValue* value)
{
    if (isAnyLocked())
        return fail (EACCES);

    if (items.empty())
        return create (value);

    secret_item_set_secret_sync (items.front().get(), value, cancellable.get(), receive());
    return ! failed() && removeFrom (1);
}

bool SecretServiceConversation::removeAll()
{
    return isAnyLocked() ? fail (EACCES) : removeFrom (0);
}

juce::String SecretServiceConversation::problem() const
{
    return "Secret Service operation failed (error " + juce::String (errorNumber) + ").";
}

bool SecretServiceConversation::connect()
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

bool SecretServiceConversation::openService()
{
    service.reset ((SecretService*) g_initable_new (typeOfService(), cancellable.get(), receive(), "g-connection", connection.get(),
                                                    "flags", SECRET_SERVICE_OPEN_SESSION, nullptr));
    return ! failed();
}

bool SecretServiceConversation::search()
{
    auto* const found = secret_service_search_sync (service.get(), nullptr, attributes.get(),
                                                    (SecretSearchFlags) (SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS),
                                                    cancellable.get(), receive());

    for (auto* each = found; each != nullptr; each = each->next)
        items.emplace_back ((SecretItem*) each->data);

    g_list_free (found);
    return ! failed();
}

bool SecretServiceConversation::create (SecretValue* value)
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

bool SecretServiceConversation::removeFrom (size_t first)
{
    for (auto i = first; i < items.size(); ++i)
    {
        secret_item_delete_sync (items[i].get(), cancellable.get(), receive());

        if (failed())
            return false;
    }

    return true;
}

bool SecretServiceConversation::isAnyLocked() const
{
    return std::any_of (items.begin(), items.end(), [] (const auto& item) { return secret_item_get_locked (item.get()); });
}

/** Where the next call is to leave its error. */
GError** SecretServiceConversation::receive()
{
    jassert (pendingError == nullptr);
    return &pendingError;
}

/** True when the last call left an error, which is noted. */
bool SecretServiceConversation::failed()
{
    if (pendingError == nullptr)
        return false;

    const std::unique_ptr<GError, FreeError> error (std::exchange (pendingError, nullptr));
    fail (errnoFor (*error));
    return true;
}

/** Notes what went wrong, which is the deadline's doing once that has passed: the library leaves no error where only an entry's
    secret did not come. */
bool SecretServiceConversation::fail (int number)
{
    deadline.stop();
    errorNumber = deadline.hasExpired() ? ETIMEDOUT : number;
    return false;
}

GHashTable* SecretServiceConversation::makeAttributes()
{
    auto* const table = g_hash_table_new (g_str_hash, g_str_equal);
    g_hash_table_insert (table, const_cast<char*> ("target"), const_cast<char*> (credentialTargetName));
    g_hash_table_insert (table, const_cast<char*> ("user"), const_cast<char*> (credentialUserName));
    return table;
}
