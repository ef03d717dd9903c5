#include "platform/ProcessId.h"

#include <gtest/gtest.h>

TEST (ProcessId, IsTheNumberUnderWhichOthersKnowTheProcess)
{
    juce::ChildProcess child;
    ASSERT_TRUE (child.start (juce::StringArray { "/bin/sh", "-c", "echo $PPID" }));

    EXPECT_EQ (child.readAllProcessOutput().trim(), juce::String (platform::currentProcessId()));
}
