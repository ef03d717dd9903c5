#include "platform/SecondInstance.h"

namespace platform
{
/** The framework's own message reaches the first instance here, so there is nothing to listen to. */
struct SecondInstance::Listener
{
};

SecondInstance::SecondInstance() = default;
SecondInstance::~SecondInstance() = default;

bool SecondInstance::listen (std::function<void()>)
{
    return true;
}

void SecondInstance::stop()
{
}

void SecondInstance::notifyFirst()
{
}
}
