#pragma once

#include <functional>
#include <juce_core/juce_core.h>

namespace zorva::test
{
/** A call to the system that is about to happen. */
struct JudgedCall
{
    enum class Kind
    {
        rename,
        remove,         ///< of a file or a folder
        changeMode      ///< of an open file; it has no path
    };

    Kind kind;
    juce::String path, newPath;    ///< as the caller names them; newPath is that of a rename
};

/** Runs the work on a thread of its own and asks before each call of these kinds that it makes whether it may: 0 lets the call
    happen, and any other number is the error that the caller gets instead. Asks on the calling thread, while the work waits, so that
    the question may look at the files as they are. Returns when the work has ended. What cannot be arranged fails the test, and the
    work is not done. */
void runJudged (const std::function<void()>& work, const std::function<int (const JudgedCall&)>& errorFor);
}
