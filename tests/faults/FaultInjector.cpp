#include "FaultInjector.h"

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace faults
{
namespace
{
std::string watchedRoot;
Plan plan;
int seen = 0;
bool armed = false;
std::array<bool, 4096> watchedDescriptors {};

template <typename Function>
Function* real (const char* name)
{
    return reinterpret_cast<Function*> (::dlsym (RTLD_NEXT, name));
}

bool isWatched (int folder, const char* path)
{
    if (! armed || path == nullptr)
        return false;

    std::string full (path);

    if (full.empty() || full.front() != '/')
    {
        char target[PATH_MAX] {};
        const auto link = "/proc/self/fd/" + std::to_string (folder);

        if (folder < 0 || ::readlink (link.c_str(), target, sizeof (target) - 1) <= 0)
            return false;

        full = std::string (target) + "/" + full;
    }

    return full.compare (0, watchedRoot.size() + 1, watchedRoot + "/") == 0;
}

bool isWatched (int descriptor)
{
    return armed && descriptor >= 0 && descriptor < (int) watchedDescriptors.size() && watchedDescriptors[(size_t) descriptor];
}

/** Counts one operation; true when it is to fail, with errno set. */
bool mustFail()
{
    ++seen;
    const bool here = seen == plan.operation || (plan.kind == Kind::failFromThere && seen > plan.operation);

    if (plan.kind == Kind::none || ! here)
        return false;

    if (plan.kind == Kind::kill)
        ::kill (::getpid(), SIGKILL);

    errno = plan.error;
    return true;
}

bool isForWriting (int mode)
{
    return (mode & O_ACCMODE) != O_RDONLY || (mode & (O_CREAT | O_TRUNC)) != 0;
}

int noteOpened (int descriptor, bool watched)
{
    if (descriptor >= 0 && descriptor < (int) watchedDescriptors.size())
        watchedDescriptors[(size_t) descriptor] = watched;

    return descriptor;
}

using Open = int (const char*, int, ...);

int openWith (const char* name, const char* path, int mode, mode_t permissions)
{
    const bool watched = isForWriting (mode) && isWatched (AT_FDCWD, path);

    if (watched && mustFail())
        return -1;

    return noteOpened (real<Open> (name) (path, mode, permissions), watched);
}
}

void arm (const std::string& root, const Plan& planToUse)
{
    watchedRoot = root;
    plan = planToUse;
    seen = 0;
    watchedDescriptors.fill (false);
    armed = true;
}

int disarm()
{
    armed = false;
    return seen;
}
}

//==============================================================================
using namespace faults;

#define HUB_PERMISSIONS_OF(mode) \
    mode_t permissions = 0; \
    if (((mode) & O_CREAT) != 0) \
    { \
        va_list arguments; \
        va_start (arguments, mode); \
        permissions = (mode_t) va_arg (arguments, int); \
        va_end (arguments); \
    }

extern "C"
{
int open (const char* path, int mode, ...)
{
    HUB_PERMISSIONS_OF (mode)
    return openWith ("open", path, mode, permissions);
}

int open64 (const char* path, int mode, ...)
{
    HUB_PERMISSIONS_OF (mode)
    return openWith ("open64", path, mode, permissions);
}

int openat (int folder, const char* path, int mode, ...)
{
    HUB_PERMISSIONS_OF (mode)
    const bool watched = isForWriting (mode) && isWatched (folder, path);

    if (watched && mustFail())
        return -1;

    return noteOpened (real<int (int, const char*, int, ...)> ("openat") (folder, path, mode, permissions), watched);
}

int creat (const char* path, mode_t permissions)
{
    return openWith ("open", path, O_CREAT | O_WRONLY | O_TRUNC, permissions);
}

ssize_t write (int descriptor, const void* data, size_t size)
{
    const auto realWrite = real<ssize_t (int, const void*, size_t)> ("write");

    if (isWatched (descriptor))
    {
        if (plan.kind == Kind::kill && seen + 1 == plan.operation)
        {
            const auto torn = realWrite (descriptor, data, size / 2);
            (void) torn;
        }

        if (mustFail())
            return -1;
    }

    return realWrite (descriptor, data, size);
}

int rename (const char* from, const char* to)
{
    if ((isWatched (AT_FDCWD, from) || isWatched (AT_FDCWD, to)) && mustFail())
        return -1;

    return real<int (const char*, const char*)> ("rename") (from, to);
}

#define HUB_ONE_PATH(name) \
    int name (const char* path) \
    { \
        return isWatched (AT_FDCWD, path) && mustFail() ? -1 : real<int (const char*)> (#name) (path); \
    }

HUB_ONE_PATH (unlink)
HUB_ONE_PATH (remove)
HUB_ONE_PATH (rmdir)

#define HUB_PATH_AND_MODE(name) \
    int name (const char* path, mode_t mode) \
    { \
        return isWatched (AT_FDCWD, path) && mustFail() ? -1 : real<int (const char*, mode_t)> (#name) (path, mode); \
    }

HUB_PATH_AND_MODE (mkdir)
HUB_PATH_AND_MODE (chmod)

int unlinkat (int folder, const char* path, int mode)
{
    return isWatched (folder, path) && mustFail() ? -1 : real<int (int, const char*, int)> ("unlinkat") (folder, path, mode);
}

#define HUB_DESCRIPTOR(name) \
    int name (int descriptor) \
    { \
        return isWatched (descriptor) && mustFail() ? -1 : real<int (int)> (#name) (descriptor); \
    }

HUB_DESCRIPTOR (fsync)
HUB_DESCRIPTOR (fdatasync)

#define HUB_TRUNCATE(name) \
    int name (int descriptor, off_t size) \
    { \
        return isWatched (descriptor) && mustFail() ? -1 : real<int (int, off_t)> (#name) (descriptor, size); \
    }

HUB_TRUNCATE (ftruncate)
HUB_TRUNCATE (ftruncate64)

/** The pauses between repeated attempts prove nothing here and would take most of the time. */
int nanosleep (const timespec* wanted, timespec* left)
{
    return armed ? 0 : real<int (const timespec*, timespec*)> ("nanosleep") (wanted, left);
}
}
