#include "support/TestHome.h"
#include "support/Environment.h"
#include "support/PrivateMounts.h"

#include <cerrno>
#include <cstdlib>
#include <sys/stat.h>

namespace zorva::test
{
namespace
{
/** Where every test process mounts a disk of its own. The folder itself stays behind, empty. */
constexpr auto mountPoint = "/tmp/zorva-hub-tests";

juce::File makeFolder (const juce::String& path)
{
    if (::mkdir (path.toRawUTF8(), 0700) != 0 && errno != EEXIST)
        std::abort();

    return juce::File (path);
}

/** Without a disk of its own a test still gets a folder of its own; tests that could do harm refuse to run there. */
juce::File makeLooseFolder()
{
    char path[] = "/tmp/zorva-hub-test-XXXXXX";

    if (::mkdtemp (path) == nullptr)
        std::abort();

    return juce::File (path);
}
}

TestHome::TestHome()
{
    const auto disk = makeFolder (mountPoint);
    isConfined = PrivateMounts::confineTo (disk);
    folder = isConfined ? disk : makeLooseFolder();
    home = makeFolder (folder.getFullPathName() + "/home");

    setEnvironment ("HOME", home.getFullPathName());
    setEnvironment ("TMPDIR", makeFolder (folder.getFullPathName() + "/tmp").getFullPathName());

    for (const char* name : { "http_proxy", "https_proxy", "HTTP_PROXY", "HTTPS_PROXY", "ALL_PROXY", "all_proxy" })
        removeFromEnvironment (name);
}

TestHome::~TestHome()
{
    if (! isConfined)
        folder.deleteRecursively (false);
}
}
