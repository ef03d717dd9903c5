#pragma once

namespace zorva::test
{
/** Knows how many threads the process had when it was made, and waits in its destructor until there are no more than that, ten
    seconds at most: a detached worker that is still ending while the process does would be taken for a leak. Make it before the
    framework, whose own threads end with it. */
class Workers
{
public:
    Workers();
    ~Workers();

private:
    const int numThreadsAtStart;
};
}
