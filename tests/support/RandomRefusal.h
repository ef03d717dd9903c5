#pragma once

namespace zorva::test
{
/** From now on the system gives the calling thread, and those that it starts, no random bytes; libraries that know another source
    keep working. For the rest of the process, which every test has to itself. A failure to arrange that fails the test. */
void refuseRandomBytes();
}
