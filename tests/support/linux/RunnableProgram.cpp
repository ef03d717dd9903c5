#include "support/RunnableProgram.h"

namespace zorva::test
{
std::string programThatMakes (const juce::File& file)
{
    return "#!/bin/sh\n: > '" + file.getFullPathName().toStdString() + "'\n";
}
}
