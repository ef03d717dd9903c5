#pragma once

namespace zorva::test
{
/** Gives this test process a /tmp of its own, in which named pipes can be made: all else but the HOME is read-only to it. The folders
    in the machine's /tmp, the HOME among them, are in it too, read-only as they were. To be called before any pipe is made; a
    failure fails the test. The tests of src/ai have it from the start. */
void makePipeFolderPrivate();
}
