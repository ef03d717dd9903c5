#include "platform/QueuedWindowEvents.h"

namespace platform
{
struct QueuedWindowEvents::Pimpl
{
};

QueuedWindowEvents::QueuedWindowEvents (juce::Component&) {}
QueuedWindowEvents::~QueuedWindowEvents() = default;
}
