#pragma once

#include <functional>
#include <memory>

namespace platform
{
/** Carries one signal from a second start of the Hub to the first: come forward.

    On Windows the framework's own message does it, and this class does nothing. On Linux that message is empty, so the first
    instance listens on a datagram socket in the abstract namespace (one a user, no file left behind), which the message loop
    watches. Message thread. */
class SecondInstance
{
public:
    SecondInstance();
    ~SecondInstance();

    /** Begins to listen; the function is called on the message thread at each signal. False when another process listens already, and
        only then: a system that gives no socket keeps no Hub from starting. */
    bool listen (std::function<void()> onSecondStart);

    /** Ends the listening; safe to call when not listening. */
    void stop();

    /** Called by a second process: tells the first, if it listens. */
    static void notifyFirst();

private:
    struct Listener;
    std::unique_ptr<Listener> listener;
};
}
