#include "BrokerScene.h"
#include "support/GuiHarness.h"

#include <sys/stat.h>

using namespace zorva::test;

TEST (HubAiBrokerService, FileAndPipesArePrivate)
{
    const auto mask = ::umask (077);
    BrokerScene scene;
    scene.start();
    const auto found = scene.client.discover();
    ASSERT_TRUE (found.has_value());

    for (const auto& path : { BrokerClient::discoveryFile().getFullPathName(), "/tmp/" + found->pipeName + "_in",
                              "/tmp/" + found->pipeName + "_out" })
    {
        struct stat info {};
        // The file is anew every cycle: look until it is there.
        ASSERT_TRUE (pumpUntil ([&] { return ::stat (path.toRawUTF8(), &info) == 0; })) << path;
        EXPECT_EQ (info.st_mode & 0777, 0600u) << path;
    }

    ::umask (mask);
}
