#pragma once

#include <atomic>
#include <juce_core/juce_core.h>
#include <thread>

namespace zorva::test
{
/** A named pipe in a file's place, to which nobody writes: whoever opens it to read would wait for ever. It is watched as long as it
    lives; who opens it is let go after a moment and fails the test. What stood at the place before is removed at the beginning, and
    the pipe at the end. */
class RecordPipe
{
public:
    explicit RecordPipe (const juce::File& placeOfAFile);
    ~RecordPipe();

    /** The pipe is still at its place, neither removed nor replaced. */
    bool isStillThere() const;

    const juce::File place;

private:
    void watch();

    std::atomic<bool> wasOpened { false };
    juce::WaitableEvent ended { true };
    std::thread watcher;

    JUCE_DECLARE_NON_COPYABLE (RecordPipe)
};
}
