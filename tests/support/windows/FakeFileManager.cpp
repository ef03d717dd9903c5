#include "support/FakeFileManager.h"

#include <gtest/gtest.h>

namespace zorva::test
{
FakeFileManager::FakeFileManager()    { ADD_FAILURE() << "Nothing can stand in for the file manager of this system."; }

juce::String FakeFileManager::openedPath() const    { return {}; }
}
