#include "platform/ProcessSetup.h"
#include "support/Files.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zorva::test;

namespace
{
/** Says when it is destroyed. */
struct Witness
{
    ~Witness()    { std::fputs ("a static object was destroyed\n", stderr); }
};

[[noreturn]] void endAsMainDoes (int exitCode)
{
    static const Witness witness;
    platform::endWithoutStaticDestruction (exitCode);
    std::exit (0);
}

struct End
{
    int exitCode = -1;
    std::string errors;     ///< what the process wrote to its stream for errors
};

/** How a process ends that does this last. */
End endOf (const std::function<void()>& last)
{
    const auto file = in (freshFolder ("end"), "errors");
    const auto child = ::fork();

    if (child == 0)
    {
        const auto handle = ::open (file.getFullPathName().toRawUTF8(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);

        if (handle >= 0 && ::dup2 (handle, STDERR_FILENO) >= 0)
            last();

        ::_exit (99);
    }

    int status = 0;
    EXPECT_EQ (::waitpid (child, &status, 0), child);
    EXPECT_TRUE (WIFEXITED (status));
    return { WEXITSTATUS (status), read (file) };
}
}

TEST (ProcessEnd, DestroysNoStaticObjectOfAPreparedProcess)
{
    const auto end = endOf ([] { platform::prepareProcess(); endAsMainDoes (7); });

    EXPECT_EQ (end.exitCode, 7);
    EXPECT_EQ (end.errors, "");
}

TEST (ProcessEnd, IsAsEverInAProcessThatWasNotPrepared)
{
    const auto end = endOf ([] { endAsMainDoes (7); });

    EXPECT_EQ (end.exitCode, 0) << "what main returned";
    EXPECT_NE (end.errors.find ("a static object was destroyed"), std::string::npos);
}

TEST (ProcessEnd, WritesOutWhatIsStillInABuffer)
{
    const auto end = endOf ([]
    {
        platform::prepareProcess();
        static char buffer[64];
        std::setvbuf (stderr, buffer, _IOFBF, sizeof (buffer));
        std::fputs ("last words", stderr);
        endAsMainDoes (0);
    });

    EXPECT_EQ (end.exitCode, 0);
    EXPECT_EQ (end.errors, "last words");
}

TEST (ProcessEnd, KnowsAPreparedProcess)
{
    EXPECT_FALSE (platform::isProcessPrepared());
    platform::prepareProcess();
    EXPECT_TRUE (platform::isProcessPrepared());
}
