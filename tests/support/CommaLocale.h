#pragma once

namespace zorva::test
{
/** Makes this process write numbers with a comma from now on, by a locale made for it: none of the machine's can be relied on to be
    there. A failure fails the test at once. */
void writeNumbersWithAComma();
}
