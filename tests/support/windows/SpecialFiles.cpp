#include "support/SpecialFiles.h"

namespace zorva::test
{
juce::File specialFile (const juce::File& folder, const juce::String& ending)
{
    return juce::File (folder.getFullPathName() + "\\NUL" + ending);
}
}
