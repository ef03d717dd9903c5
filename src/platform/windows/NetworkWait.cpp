#include "platform/NetworkWait.h"

namespace platform
{
struct NetworkWait::Pimpl
{
};

NetworkWait::NetworkWait() = default;
NetworkWait::~NetworkWait() = default;

void NetworkWait::interrupt() const {}
}
