#pragma once

#include <juce_core/juce_core.h>
#include <memory>
#include <string>
#include <vector>

namespace zorva::test
{
/** Writes down what happens to the entries of one folder while it lives, in order and without missing anything in between. */
class FolderWatch
{
public:
    explicit FolderWatch (const juce::File& folder);
    ~FolderWatch();

    /** What happened so far, oldest first: "appeared NAME", "vanished NAME", and on Linux "read NAME" (closed after being open for
        reading only; for folders too, when they were listed). */
    const std::vector<std::string>& events();

    /** How often this event was written down. */
    int count (const std::string& event);

private:
    struct Pimpl;
    std::unique_ptr<Pimpl> pimpl;
    std::vector<std::string> collected;

    JUCE_DECLARE_NON_COPYABLE (FolderWatch)
};
}
