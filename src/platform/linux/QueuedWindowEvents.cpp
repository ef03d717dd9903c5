// The window system's own headers come with the framework's, so this is compiled without the precompiled one.
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>
#include <juce_events/native/juce_EventLoopInternal_linux.h>

#include "platform/QueuedWindowEvents.h"

namespace platform
{
namespace
{
void handleQueuedEvents()
{
    auto* const windowSystem = juce::XWindowSystem::getInstanceWithoutCreating();
    auto* const display = windowSystem != nullptr ? windowSystem->getDisplay() : nullptr;

    if (display == nullptr)
        return;

    const auto& library = *juce::X11Symbols::getInstance();

    // Released before the events are handled: only this thread takes any out.
    const auto count = [&]
    {
        const juce::XWindowSystemUtilities::ScopedXLock lock;
        return library.xEventsQueued (display, QueuedAlready);
    }();

    // What the framework does when the connection has something to read; it empties the queue.
    if (count > 0)
        juce::LinuxEventLoopInternal::invokeEventLoopCallbackForFd (library.xConnectionNumber (display));
}
}

struct QueuedWindowEvents::Pimpl
{
    explicit Pimpl (juce::Component& window) : frames (&window, [] { handleQueuedEvents(); }) {}

    const juce::VBlankAttachment frames;
};

QueuedWindowEvents::QueuedWindowEvents (juce::Component& window) : pimpl (std::make_unique<Pimpl> (window)) {}
QueuedWindowEvents::~QueuedWindowEvents() = default;
}
