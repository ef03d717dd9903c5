#include "support/RunnableProgram.h"

#include <gtest/gtest.h>

namespace zorva::test
{
std::string programThatMakes (const juce::File& file)
{
    // The program finds the path, and its size, at its own end.
    const auto tests = juce::File::getSpecialLocation (juce::File::currentExecutableFile);
    const auto program = tests.getSiblingFile ("hub_test_program.exe");
    const auto path = file.getFullPathName().toStdString();
    juce::MemoryBlock bytes;
    EXPECT_TRUE (program.loadFileAsData (bytes)) << program.getFullPathName();

    const auto size = juce::ByteOrder::swapIfBigEndian ((juce::uint32) path.size());
    bytes.append (path.data(), path.size());
    bytes.append (&size, sizeof (size));
    return { static_cast<const char*> (bytes.getData()), bytes.getSize() };
}
}
