#pragma once

#include <memory>

namespace platform
{
/** Reaches a thread in its waits for the network, for as long as this lives. On Linux the framework's stream waits in a call that
    does not notice when another thread closes the connection: in a handshake it would wait on for the whole time that connecting
    may take. On Windows closing the connection ends the wait, and this does nothing. */
class NetworkWait
{
public:
    /** The calling thread is the one that will wait. */
    NetworkWait();
    ~NetworkWait();

    /** Makes the thread look up from its wait, after its stream was cancelled. It may just have looked and be about to wait, so
        that to be sure one asks again. Any thread. */
    void interrupt() const;

private:
    struct Pimpl;
    const std::unique_ptr<Pimpl> pimpl;
};
}
