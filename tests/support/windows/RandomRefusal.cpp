#include "support/RandomRefusal.h"

#include <gtest/gtest.h>

namespace zorva::test
{
void refuseRandomBytes()    { ADD_FAILURE() << "This system offers no way to refuse a process its random bytes."; }
}
