#include "support/ThreadRefusal.h"

#include <gtest/gtest.h>

namespace zorva::test
{
void refuseNewThreads()    { ADD_FAILURE() << "This system offers no way to refuse a process its threads."; }
}
