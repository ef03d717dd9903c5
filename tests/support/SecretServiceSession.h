#pragma once

#include <juce_core/juce_core.h>
#include <functional>

namespace zorva::test
{
/** A session bus with a real keyring on it, both of this test's own: the bus starts nothing by itself and the keyring, which is
    open, keeps its files under the test's HOME. The process finds them through DBUS_SESSION_BUS_ADDRESS, from the construction on.
    Both end with the object. Any failure to start fails the test. From one thread. */
class SecretServiceSession
{
public:
    enum class Keyring { running, absent };

    explicit SecretServiceSession (Keyring keyring = Keyring::running);
    ~SecretServiceSession();

    /** Locks the keyring, as a desktop does that asks for its password again. */
    void lock();

    /** Stores an item for the Hub's target and user as another program would. More attributes make it an item besides earlier ones:
        names and values by turns. */
    void plant (const juce::MemoryBlock& secret, const juce::StringArray& moreAttributes = {});

    /** The secret that another program finds for the Hub's target and user, as text; empty when there is none. */
    juce::String lookUp() const;

    /** What another program sees of all items for the Hub's target, one property a line. */
    juce::StringArray items() const;

    /** How many items there are for the Hub's target. */
    int itemCount() const;

    /** The keyring stays on the bus and answers nothing, until answerAgain(). */
    void stopAnswering();
    void answerAgain();

    /** The bus takes connections and messages and does nothing with them, until the object ends. */
    void stopBus();

    /** Ends the keyring; the bus stays. */
    void endKeyring();

    /** Ends the bus, and every connection to it. */
    void killBus();

    /** Every message that crossed the bus during the action, in the words of dbus-monitor. */
    juce::String messagesDuring (const std::function<void()>& action);

    /** Where the keyring keeps its files. */
    juce::File keyringFolder() const;

private:
    void startBus();
    void startKeyring();
    int start (const juce::StringArray& command, int input, const juce::File& output) const;
    bool hasOwner() const;
    void sendMarker (const juce::String& name) const;

    juce::File folder;
    int bus = -1, keyring = -1;

    JUCE_DECLARE_NON_COPYABLE (SecretServiceSession)
};
}
