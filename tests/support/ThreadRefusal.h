#pragma once

namespace zorva::test
{
/** From now on the calling thread can start no other thread: the system answers "try again". For the rest of the process, which
    every test has to itself. A failure to arrange that fails the test. */
void refuseNewThreads();
}
