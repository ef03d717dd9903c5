#pragma once

#include <memory>

namespace juce { class Component; }

namespace platform
{
/** Lets no event of the window system wait in its library's queue, for as long as this lives. On Linux that library also reads what
    arrives while it sends a picture or waits for an answer, and the framework looks into the queue only once still more arrives: a
    click, or the wish to close the window, would wait for the next move of the mouse. This looks at every frame, without a system
    call. Nothing on Windows, where the system keeps the queue. Message thread. */
class QueuedWindowEvents
{
public:
    /** The frames are those of the display that this window is on; it must outlive this. The events may be any window's. */
    explicit QueuedWindowEvents (juce::Component& window);
    ~QueuedWindowEvents();

private:
    struct Pimpl;
    const std::unique_ptr<Pimpl> pimpl;
};
}
