#include "support/TestHome.h"

#include <cstdlib>

namespace zorva::test
{
TestHome::TestHome()
{
    juce::String pattern = juce::File::getSpecialLocation (juce::File::tempDirectory).getFullPathName() + "/zorva-hub-test-XXXXXX";
    std::vector<char> path (pattern.toRawUTF8(), pattern.toRawUTF8() + pattern.getNumBytesAsUTF8() + 1);

    if (::mkdtemp (path.data()) == nullptr)
        std::abort();

    home = juce::File (juce::String::fromUTF8 (path.data()));
    ::setenv ("HOME", path.data(), 1);

    for (const char* name : { "http_proxy", "https_proxy", "HTTP_PROXY", "HTTPS_PROXY", "ALL_PROXY", "all_proxy" })
        ::unsetenv (name);
}

TestHome::~TestHome()
{
    home.deleteRecursively (false);
}
}
