#include "platform/NetworkWait.h"

#include <csignal>
#include <pthread.h>

namespace platform
{
namespace
{
// Ignored unless somebody wants it, and nobody else does. A handler is needed, as an ignored signal interrupts nothing.
constexpr int wakingSignal = SIGURG;

bool installHandler()
{
    struct sigaction action = {};
    action.sa_handler = [] (int) {};
    return ::sigaction (wakingSignal, &action, nullptr) == 0;
}
}

struct NetworkWait::Pimpl
{
    const pthread_t thread = ::pthread_self();
};

NetworkWait::NetworkWait() : pimpl (std::make_unique<Pimpl>())
{
    [[maybe_unused]] static const bool isInstalled = installHandler();
}

NetworkWait::~NetworkWait() = default;

void NetworkWait::interrupt() const
{
    ::pthread_kill (pimpl->thread, wakingSignal);
}
}
