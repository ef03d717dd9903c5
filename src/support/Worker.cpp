#include "support/Worker.h"

#include <juce_core/juce_core.h>

bool launchWorker (std::function<void()> job)
{
    // The framework's thread object deletes itself when its function ends, while launch() may still hold a lock inside it. A job
    // that ends at once would win that race, so none begins before launch() has returned.
    const auto launched = std::make_shared<juce::WaitableEvent> (true);

    const bool started = juce::Thread::launch ([work = std::move (job), launched]
    {
        launched->wait();
        work();
    });

    launched->signal();
    return started;
}
