#include "support/BoundedJson.h"
#include "support/Files.h"
#include "support/RecordPipe.h"

#include <gtest/gtest.h>

using namespace zorva::test;

TEST (BoundedJson, APipeIsVoidAndNotWaitedFor)
{
    const RecordPipe pipe (in (freshFolder ("json"), "record.json"));

    EXPECT_TRUE (BoundedJson::parseFile (pipe.place).isVoid());
    EXPECT_TRUE (BoundedJson::parseFile (link (in (pipe.place.getParentDirectory(), "link"), "record.json")).isVoid());
}
