#include "ForkedRun.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace faults
{
static std::string readAll (int descriptor)
{
    std::string text;
    char buffer[4096];

    for (ssize_t n; (n = ::read (descriptor, buffer, sizeof (buffer))) > 0;)
        text.append (buffer, (size_t) n);

    return text;
}

/** The child's side: never returns. The answer goes out as "operations success message". */
[[noreturn]] static void runChild (int out, const std::filesystem::path& home, const Plan& plan, const std::function<Answer()>& work)
{
    ::setenv ("HOME", home.c_str(), 1);

    // What the framework reports on the way, such as each failed step, is not what is judged.
    if (const int nowhere = ::open ("/dev/null", O_WRONLY); nowhere >= 0)
        ::dup2 (nowhere, STDERR_FILENO);

    arm (home.string(), plan);
    const auto answer = work();
    const int operations = disarm();

    const auto text = std::to_string (operations) + (answer.success ? " 1 " : " 0 ") + answer.message;
    const auto written = ::write (out, text.data(), text.size());
    ::_exit (written == (ssize_t) text.size() ? 0 : 1);
}

ForkedRun runForked (const std::filesystem::path& home, const Plan& plan, const std::function<Answer()>& work)
{
    int ends[2];

    if (::pipe (ends) != 0)
        return {};

    const auto child = ::fork();

    if (child == 0)
    {
        ::close (ends[0]);
        runChild (ends[1], home, plan, work);
    }

    ::close (ends[1]);
    const auto text = readAll (ends[0]);
    ::close (ends[0]);

    int status = 0;
    ForkedRun run;

    if (child < 0 || ::waitpid (child, &status, 0) != child || ! WIFEXITED (status) || WEXITSTATUS (status) != 0)
        return run;

    const auto first = text.find (' ');
    run.finished = true;
    run.operations = std::atoi (text.c_str());
    run.answer = { text.at (first + 1) == '1', text.substr (first + 3) };
    return run;
}

//==============================================================================
static void replaceTree (const std::filesystem::path& original, const std::filesystem::path& copy)
{
    std::filesystem::remove_all (copy);
    std::filesystem::copy (original, copy, std::filesystem::copy_options::recursive | std::filesystem::copy_options::copy_symlinks);
}

World::World()
{
    root = std::filesystem::path (scratchFolder) / "faults";
    homeDirectory = root / "home";
    clear();
}

World::~World()
{
    std::error_code error;
    std::filesystem::remove_all (root, error);
}

void World::clear() const
{
    std::filesystem::remove_all (homeDirectory);
    std::filesystem::create_directories (homeDirectory);
}

void World::keep (const std::string& name) const { replaceTree (homeDirectory, root / name); }
void World::load (const std::string& name) const { replaceTree (root / name, homeDirectory); }
}
