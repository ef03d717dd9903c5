#include "support/PipeFolder.h"

#include <gtest/gtest.h>

namespace
{
/** Every test of this program may start a broker. */
struct PipeFolderEnvironment final : public ::testing::Environment
{
    void SetUp() override    { zorva::test::makePipeFolderPrivate(); }
};

[[maybe_unused]] const auto* const registered = ::testing::AddGlobalTestEnvironment (new PipeFolderEnvironment);
}
